#!/usr/bin/env bash
# Import throughput and peak memory of `corrtool import` against
# `xmllint --stream --noout` on the same large Valgrind XML file (recorded
# memcheck errors repeated with fresh ids), side by side.
#   bench/import_bench.sh [MEGABYTES] [RUNS]      (default 200 MB, 3 runs)
#   bench/import_bench.sh --hostile [SCALE]       (default 1)
# --hostile imports inputs built to hurt (bench/make_hostile_inputs.py: a
# thread name shared by 100k errors, 10^6 thread ids in one error, a huge
# XML comment and attribute, 300k one-line sanitizer reports, a 1 GB line,
# "ERROR: " repeated without a newline) and prints time, peak memory and
# outcome of each; SCALE shrinks them all (0.1 = a tenth).
# Uses $CORRTOOL or build/apps/corrtool/corrtool (built when missing). The
# figures are the best of RUNS runs (the machine may be shared); wall time
# gives the throughput, /usr/bin/time -v the peak resident memory.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
megabytes=${1:-200}
runs=${2:-3}
corrtool=${CORRTOOL:-$root/build/apps/corrtool/corrtool}
if [ ! -x "$corrtool" ]; then
  cmake -S "$root" -B "$root/build" -G Ninja >/dev/null
  cmake --build "$root/build" --target corrtool
  corrtool=$root/build/apps/corrtool/corrtool
fi
for tool in xmllint /usr/bin/time; do
  command -v "$tool" >/dev/null || { echo "missing $tool: run scripts/setup" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if [ "${1:-}" = "--hostile" ]; then
  scale=${2:-1}
  python3 "$root/bench/make_hostile_inputs.py" "$work/in" "$scale" >/dev/null
  printf '%-26s %10s %10s %16s  %s\n' "case (scale $scale)" "MB" "seconds" "peak RSS (MB)" "outcome"
  for f in "$work"/in/*; do
    rm -rf "$work/result"
    status=0
    /usr/bin/time -v "$corrtool" import "$f" --result "$work/result" >"$work/out.log" 2>"$work/time.log" || status=$?
    elapsed=$(sed -n 's/.*Elapsed (wall clock) time.*: //p' "$work/time.log")
    kb=$(sed -n 's/.*Maximum resident set size (kbytes): //p' "$work/time.log")
    s=$(echo "$elapsed" | awk -F: '{ t = 0; for (i = 1; i <= NF; i++) t = t * 60 + $i; print t }')
    outcome=$( (grep -o '[0-9]* problems\? from' "$work/out.log" || true) | head -1)
    [ "$status" -eq 0 ] || outcome="exit $status: $( (grep -m1 '^corrtool' "$work/time.log" || true) | cut -c1-70)"
    awk -v n="$(basename "$f")" -v b="$(stat -c %s "$f")" -v s="$s" -v kb="$kb" -v o="$outcome" \
      'BEGIN { printf "%-26s %10.1f %10.2f %16.1f  %s\n", n, b / 1048576, s, kb / 1024, o }'
    rm -f "$f"
  done
  exit 0
fi
xml=$work/big.xml
recorded=$root/samples/recorded
"$root/bench/make_big_valgrind_xml.sh" "$xml" "$megabytes" \
  "$recorded/memcheck_use_after_free.xml" "$recorded/memcheck_overflow.xml" "$recorded/memcheck_leaks.xml" \
  "$recorded/memcheck_mismatched_delete.xml" "$recorded/memcheck_uninit.xml"
bytes=$(stat -c %s "$xml")
errors=$(grep -c '<error>' "$xml")
cat "$xml" >/dev/null # both tools start from the page cache

# measure NAME COMMAND...: prints "seconds kilobytes" of the best run.
measure() {
  local best_s="" best_kb="" log=$work/time.log
  for _ in $(seq "$runs"); do
    rm -rf "$work/result"
    /usr/bin/time -v "$@" >"$work/out.log" 2>"$log" || { cat "$work/out.log" "$log" >&2; exit 1; }
    local elapsed kb s
    elapsed=$(sed -n 's/.*Elapsed (wall clock) time.*: //p' "$log")
    kb=$(sed -n 's/.*Maximum resident set size (kbytes): //p' "$log")
    # h:mm:ss or m:ss.ss
    s=$(echo "$elapsed" | awk -F: '{ t = 0; for (i = 1; i <= NF; i++) t = t * 60 + $i; print t }')
    if [ -z "$best_s" ] || awk -v a="$s" -v b="$best_s" 'BEGIN { exit !(a < b) }'; then best_s=$s; fi
    if [ -z "$best_kb" ] || [ "$kb" -lt "$best_kb" ]; then best_kb=$kb; fi
  done
  echo "$best_s $best_kb"
}

read -r ours_s ours_kb < <(measure "$corrtool" import "$xml" --result "$work/result")
imported=$(grep -o '[0-9]* problems' "$work/out.log" | head -1)
read -r lint_s lint_kb < <(measure xmllint --stream --noout "$xml")

mb=$(awk -v b="$bytes" 'BEGIN { printf "%.1f", b / 1048576 }')
printf '\nValgrind XML: %s MB, %s errors (corrtool imported %s); best of %s runs\n\n' "$mb" "$errors" "$imported" "$runs"
printf '%-28s %10s %12s %16s\n' "" "seconds" "MB/s" "peak RSS (MB)"
row() { awk -v n="$1" -v s="$2" -v kb="$3" -v b="$bytes" \
  'BEGIN { printf "%-28s %10.2f %12.1f %16.1f\n", n, s, (s > 0 ? b / 1048576 / s : 0), kb / 1024 }'; }
row "corrtool import" "$ours_s" "$ours_kb"
row "xmllint --stream --noout" "$lint_s" "$lint_kb"
echo
awk -v o="$ours_s" -v l="$lint_s" -v kb="$ours_kb" -v b="$bytes" 'BEGIN {
  printf "corrtool / xmllint throughput: %.2fx (target >= 1)\n", (o > 0 ? l / o : 0)
  printf "corrtool peak memory / file size: %.3f (target < 0.5)\n", kb * 1024 / b
}'
