#!/usr/bin/env bash
# Writes a large Valgrind XML file made of recorded errors repeated with fresh
# <unique> ids: the preamble of the first input, then its errors and those of
# the other inputs over and over until the file reaches the size asked for,
# then the first input's closing part.
#   make_big_valgrind_xml.sh OUT MEGABYTES INPUT.xml...
set -euo pipefail
if [ $# -lt 3 ]; then
  echo "usage: $0 OUT MEGABYTES INPUT.xml..." >&2
  exit 2
fi
out=$1 megabytes=$2
shift 2
awk -v target=$((megabytes * 1024 * 1024)) '
  FNR == 1 { file++ }
  file == 1 && !seen_error && !/<error>/ { header[++nh] = $0 }
  /<error>/ { seen_error = 1; inside = 1 }
  inside { body[++nb] = $0 }
  /<\/error>/ { inside = 0; if (file == 1) nf = 0; next }
  file == 1 && seen_error && !inside { footer[++nf] = $0 }
  END {
    size = 0
    for (i = 1; i <= nh; i++) { print header[i]; size += length(header[i]) + 1 }
    id = 0
    while (size < target) {
      for (i = 1; i <= nb; i++) {
        line = body[i]
        if (line ~ /<unique>/) line = sprintf("  <unique>0x%x</unique>", id++)
        print line
        size += length(line) + 1
      }
    }
    for (i = 1; i <= nf; i++) print footer[i]
  }' "$@" >"$out"
