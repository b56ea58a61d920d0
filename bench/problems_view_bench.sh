#!/usr/bin/env bash
# The viewer on a result of about 100,000 problems: a large Valgrind XML
# file of recorded memcheck errors repeated with fresh ids,
# imported with corrtool, then opened by build/bench/problems_view_bench
# (first paint of the main window, the filter bar's search key by key).
#   bench/problems_view_bench.sh [PROBLEMS] [TEXT]   (default 100000, print_record)
# Runs under xvfb-run when there is no display.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
problems=${1:-100000}
text=${2:-print_record}
build=${BUILD_DIR:-$root/build}
for target in corrtool problems_view_bench; do
  cmake --build "$build" --target "$target" >/dev/null
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
recorded=$root/samples/recorded
inputs=("$recorded/memcheck_use_after_free.xml" "$recorded/memcheck_overflow.xml"
  "$recorded/memcheck_leaks.xml" "$recorded/memcheck_mismatched_delete.xml"
  "$recorded/memcheck_uninit.xml")
# The size that gives the number of problems asked for, from one megabyte's worth.
"$root/bench/make_big_valgrind_xml.sh" "$work/probe.xml" 1 "${inputs[@]}"
per_mb=$(grep -c '<error>' "$work/probe.xml")
megabytes=$(( (problems + per_mb - 1) / per_mb ))
"$root/bench/make_big_valgrind_xml.sh" "$work/big.xml" "$megabytes" "${inputs[@]}"
"$build/apps/corrtool/corrtool" import "$work/big.xml" --result "$work/result" | tail -1

run=("$build/bench/problems_view_bench" "$work/result" "$text")
if [ -z "${DISPLAY:-}" ]; then
  run=(xvfb-run -a -s "-screen 0 1600x1200x24" "${run[@]}")
fi
/usr/bin/time -f "peak resident memory: %M kB" "${run[@]}"
