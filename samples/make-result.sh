#!/usr/bin/env bash
# Rebuilds the ready sample result samples/result/ from a representative
# subset of samples/recorded/ with corrtool: memcheck, helgrind and drd XML,
# and AddressSanitizer, LeakSanitizer, ThreadSanitizer and UBSan reports.
#   samples/make-result.sh [path/to/corrtool]
# Without an argument it uses $CORRTOOL or build/apps/corrtool/corrtool,
# building that first when it is missing.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
corrtool=${1:-${CORRTOOL:-$root/build/apps/corrtool/corrtool}}
if [ ! -x "$corrtool" ]; then
  cmake -S "$root" -B "$root/build" -G Ninja >/dev/null
  cmake --build "$root/build" --target corrtool
  corrtool=$root/build/apps/corrtool/corrtool
fi

recorded=$root/samples/recorded
files=(
  memcheck_use_after_free.xml
  memcheck_overflow.xml
  memcheck_leaks.xml
  memcheck_libbuggy.xml
  helgrind_race_counter.xml
  helgrind_lock_order.xml
  drd_template_race.xml
  asan_use_after_free.txt
  asan_double_free.txt
  lsan_leaks.txt
  tsan_race_counter.txt
  ubsan_multi.txt
)

# Built beside the old one and swapped in only when the import worked.
new=$root/samples/.result.new
rm -rf "$new"
"$corrtool" import "${files[@]/#/$recorded/}" --result "$new" --name sample
touch "$new/suppressions/.gitkeep"
rm -rf "$root/samples/result"
mv "$new" "$root/samples/result"
echo "samples/result rebuilt"
