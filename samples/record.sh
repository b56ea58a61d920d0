#!/usr/bin/env bash
# Build the sample programs in src/ and record what the analysers report
# about them into recorded/.
#
# Usage: samples/record.sh            (from anywhere)
#
# Needs gcc/g++, clang, valgrind and (for symbolised sanitizer frames)
# llvm-symbolizer. Programs are built into build/ (not committed); the
# recorded output is kept exactly as the tools wrote it.
set -euo pipefail

HERE="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
SRC="$HERE/src"
BUILD="$HERE/build"
OUT="$HERE/recorded"

CC_GCC=${CC_GCC:-gcc}
CXX_GCC=${CXX_GCC:-g++}
CC_CLANG=${CC_CLANG:-clang}
CXX_CLANG=${CXX_CLANG:-clang++}

SYMBOLIZER=""
for s in /usr/bin/llvm-symbolizer /usr/bin/llvm-symbolizer-*; do
    if [ -x "$s" ]; then SYMBOLIZER="$s"; break; fi
done
if [ -z "$SYMBOLIZER" ]; then
    echo "warning: llvm-symbolizer not found, clang sanitizer frames will be unsymbolised" >&2
fi
export ASAN_SYMBOLIZER_PATH="$SYMBOLIZER"
export LSAN_SYMBOLIZER_PATH="$SYMBOLIZER"
export TSAN_SYMBOLIZER_PATH="$SYMBOLIZER"
export UBSAN_SYMBOLIZER_PATH="$SYMBOLIZER"

# Valgrind options shared by all runs.
VG_COMMON=(--xml=yes --num-callers=30)

mkdir -p "$BUILD" "$OUT"
rm -rf "${BUILD:?}"/* "${OUT:?}"/*

CFLAGS=(-g -O0 -Wall -Wno-uninitialized -Wno-maybe-uninitialized)
CLANG_CFLAGS=(-g -O0 -Wall -Wno-uninitialized)
CXXFLAGS=(-g -O0 -Wall -std=c++17)
SAN_EXTRA=(-fno-omit-frame-pointer)

# Compile from absolute source paths so debug info names samples/src/*.c.
build_c()   { local out=$1; shift; echo "  CC   $out"; "$CC_GCC" "${CFLAGS[@]}" "$@" -o "$BUILD/$out"; }
build_cxx() { local out=$1; shift; echo "  CXX  $out"; "$CXX_GCC" "${CXXFLAGS[@]}" "$@" -o "$BUILD/$out"; }
build_clang()   { local out=$1; shift; echo "  CLANG $out"; "$CC_CLANG" "${CLANG_CFLAGS[@]}" "${SAN_EXTRA[@]}" "$@" -o "$BUILD/$out"; }
build_clangxx() { local out=$1; shift; echo "  CLANG++ $out"; "$CXX_CLANG" "${CXXFLAGS[@]}" "${SAN_EXTRA[@]}" "$@" -o "$BUILD/$out"; }

# Run a command whose non-zero exit status is expected (the programs are
# buggy, and sanitizers exit with 1 after a report).
run() {
    local rc=0
    "$@" >/dev/null || rc=$?
    echo "       exit status $rc"
}

# Run with stderr captured into a file (sanitizer text reports).
run_stderr() {
    local out=$1; shift
    local rc=0
    echo "  RUN  $(basename "$out")"
    "$@" >/dev/null 2>"$out" || rc=$?
    echo "       exit status $rc"
}

vg() {
    local tool=$1 out=$2; shift 2
    echo "  VG   $tool -> $(basename "$out")"
    run valgrind --tool="$tool" "${VG_COMMON[@]}" --xml-file="$out" "$@"
}

# ThreadSanitizer needs a memory layout that high-entropy ASLR can break;
# run it with address randomisation off when setarch allows that.
NOASLR=()
if setarch "$(uname -m)" -R true 2>/dev/null; then
    NOASLR=(setarch "$(uname -m)" -R)
fi

echo "== building (gcc, plain -g -O0)"
build_c   mem_overflow         "$SRC/mem_overflow.c"
build_c   mem_use_after_free   "$SRC/mem_use_after_free.c"
build_c   mem_double_free      "$SRC/mem_double_free.c"
build_cxx mem_mismatched_delete "$SRC/mem_mismatched_delete.cpp"
build_c   mem_uninit           "$SRC/mem_uninit.c"
build_c   mem_leaks            "$SRC/mem_leaks.c"
build_c   res_fd_leak          "$SRC/res_fd_leak.c"
build_c   libbuggy.so          -shared -fPIC "$SRC/libbuggy.c"
build_c   use_libbuggy         "$SRC/use_libbuggy.c" -L"$BUILD" -lbuggy -Wl,-rpath,"$BUILD"
build_c   thr_race_counter     "$SRC/thr_race_counter.c" -pthread
build_c   thr_lock_order       "$SRC/thr_lock_order.c" -pthread
build_cxx thr_template_race    "$SRC/thr_template_race.cpp" -pthread

echo "== building (clang sanitizers)"
mkdir -p "$BUILD/asan"
build_clang   asan_overflow          -fsanitize=address "$SRC/mem_overflow.c"
build_clang   asan_overflow_recover  -fsanitize=address -fsanitize-recover=address "$SRC/mem_overflow.c"
build_clang   asan_use_after_free    -fsanitize=address "$SRC/mem_use_after_free.c"
build_clang   asan_double_free       -fsanitize=address "$SRC/mem_double_free.c"
build_clangxx asan_mismatched_delete -fsanitize=address "$SRC/mem_mismatched_delete.cpp"
build_clang   asan_leaks             -fsanitize=address "$SRC/mem_leaks.c"
build_clang   asan/libbuggy.so       -fsanitize=address -shared -fPIC "$SRC/libbuggy.c"
build_clang   asan_libbuggy          -fsanitize=address "$SRC/use_libbuggy.c" -L"$BUILD/asan" -lbuggy -Wl,-rpath,"$BUILD/asan"
build_clang   lsan_leaks             -fsanitize=leak "$SRC/mem_leaks.c"
mkdir -p "$BUILD/lsan"
build_clang   lsan/libbuggy.so       -fsanitize=leak -shared -fPIC "$SRC/libbuggy.c"
build_clang   lsan_libbuggy          -fsanitize=leak "$SRC/use_libbuggy.c" -L"$BUILD/lsan" -lbuggy -Wl,-rpath,"$BUILD/lsan"
build_clang   tsan_race_counter      -fsanitize=thread "$SRC/thr_race_counter.c" -pthread
build_clang   tsan_lock_order        -fsanitize=thread "$SRC/thr_lock_order.c" -pthread
build_clangxx tsan_template_race     -fsanitize=thread "$SRC/thr_template_race.cpp" -pthread
build_clang   ubsan_multi            -fsanitize=undefined "$SRC/ub_multi.c"
build_clang   ubsan_null             -fsanitize=undefined "$SRC/ub_null.c"

echo "== building (gcc sanitizers, for the gcc flavour of the reports)"
build_c   gcc_asan_use_after_free -fsanitize=address "${SAN_EXTRA[@]}" "$SRC/mem_use_after_free.c"
build_c   gcc_ubsan_multi         -fsanitize=undefined "${SAN_EXTRA[@]}" "$SRC/ub_multi.c"

echo "== memcheck"
MC=(--leak-check=full --track-origins=yes)
vg memcheck "$OUT/memcheck_overflow.xml"          "${MC[@]}" "$BUILD/mem_overflow"
vg memcheck "$OUT/memcheck_use_after_free.xml"    "${MC[@]}" "$BUILD/mem_use_after_free"
vg memcheck "$OUT/memcheck_double_free.xml"       "${MC[@]}" "$BUILD/mem_double_free"
vg memcheck "$OUT/memcheck_mismatched_delete.xml" "${MC[@]}" "$BUILD/mem_mismatched_delete"
vg memcheck "$OUT/memcheck_uninit.xml"            "${MC[@]}" "$BUILD/mem_uninit"
vg memcheck "$OUT/memcheck_leaks.xml"             "${MC[@]}" "$BUILD/mem_leaks"
vg memcheck "$OUT/memcheck_libbuggy.xml"          "${MC[@]}" "$BUILD/use_libbuggy"
# Valgrind 3.19 writes --track-fds findings only to its text output, so the
# fd leak is recorded twice: XML (no fd error in it) and plain text.
vg memcheck "$OUT/memcheck_fd_leak.xml"           "${MC[@]}" --track-fds=yes "$BUILD/res_fd_leak"
# Plain-text memcheck output for two programs: it carries the heap, leak and
# error summaries (and fd stacks) that 3.19 leaves out of the XML.
run_stderr "$OUT/memcheck_leaks.txt" \
    valgrind --tool=memcheck "${MC[@]}" --num-callers=30 "$BUILD/mem_leaks"
run_stderr "$OUT/memcheck_fd_leak.txt" \
    valgrind --tool=memcheck "${MC[@]}" --num-callers=30 --track-fds=yes "$BUILD/res_fd_leak"

# With Valgrind's own suppression text for every error (kept by the importer
# with the problem; C++ names mangled, leak kinds on their own line).
vg memcheck "$OUT/memcheck_leaks_gensupp.xml"             "${MC[@]}" --gen-suppressions=all "$BUILD/mem_leaks"
vg memcheck "$OUT/memcheck_mismatched_delete_gensupp.xml" "${MC[@]}" --gen-suppressions=all "$BUILD/mem_mismatched_delete"

echo "== helgrind"
vg helgrind "$OUT/helgrind_race_counter.xml"  "$BUILD/thr_race_counter"
vg helgrind "$OUT/helgrind_lock_order.xml"    "$BUILD/thr_lock_order"
vg helgrind "$OUT/helgrind_template_race.xml" "$BUILD/thr_template_race"
vg helgrind "$OUT/helgrind_race_counter_gensupp.xml" --gen-suppressions=all "$BUILD/thr_race_counter"

echo "== drd"
vg drd "$OUT/drd_race_counter.xml"  "$BUILD/thr_race_counter"
vg drd "$OUT/drd_lock_order.xml"    "$BUILD/thr_lock_order"
vg drd "$OUT/drd_template_race.xml" "$BUILD/thr_template_race"

echo "== AddressSanitizer / LeakSanitizer"
ASAN="symbolize=1:detect_leaks=1"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/asan_overflow.txt"          "$BUILD/asan_overflow"
ASAN_OPTIONS=$ASAN:halt_on_error=0 \
               run_stderr "$OUT/asan_overflow_recover.txt"  "$BUILD/asan_overflow_recover"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/asan_use_after_free.txt"    "$BUILD/asan_use_after_free"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/asan_double_free.txt"       "$BUILD/asan_double_free"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/asan_mismatched_delete.txt" "$BUILD/asan_mismatched_delete"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/asan_leaks.txt"             "$BUILD/asan_leaks"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/asan_libbuggy.txt"          "$BUILD/asan_libbuggy"
LSAN_OPTIONS=symbolize=1 \
               run_stderr "$OUT/lsan_leaks.txt"             "$BUILD/lsan_leaks"
LSAN_OPTIONS=symbolize=1 \
               run_stderr "$OUT/lsan_libbuggy.txt"          "$BUILD/lsan_libbuggy"
ASAN_OPTIONS=$ASAN run_stderr "$OUT/gcc_asan_use_after_free.txt" "$BUILD/gcc_asan_use_after_free"

echo "== ThreadSanitizer"
TSAN="symbolize=1:halt_on_error=0"
TSAN_OPTIONS=$TSAN run_stderr "$OUT/tsan_race_counter.txt"  "${NOASLR[@]}" "$BUILD/tsan_race_counter"
TSAN_OPTIONS=$TSAN run_stderr "$OUT/tsan_lock_order.txt"    "${NOASLR[@]}" "$BUILD/tsan_lock_order"
TSAN_OPTIONS=$TSAN run_stderr "$OUT/tsan_template_race.txt" "${NOASLR[@]}" "$BUILD/tsan_template_race"

echo "== UndefinedBehaviorSanitizer"
UBSAN="symbolize=1:print_stacktrace=1:halt_on_error=0"
UBSAN_OPTIONS=$UBSAN run_stderr "$OUT/ubsan_multi.txt"     "$BUILD/ubsan_multi"
UBSAN_OPTIONS=$UBSAN run_stderr "$OUT/ubsan_null.txt"      "$BUILD/ubsan_null"
UBSAN_OPTIONS=$UBSAN run_stderr "$OUT/gcc_ubsan_multi.txt" "$BUILD/gcc_ubsan_multi"

echo "== truncated copy"
# Simulate a run killed part-way through writing its XML: keep everything
# up to the middle of the second <error> (inside its first <stack>).
truncate_in_error() {
    local in=$1 out=$2 nth=$3
    awk -v nth="$nth" '
        /<error>/ { n++ }
        n == nth && /<\/stack>/ { exit }
        n == nth && /<frame>/ { f++; if (f == 3) { print; exit } }
        { print }
    ' "$in" > "$out"
}
truncate_in_error "$OUT/memcheck_leaks.xml" "$OUT/memcheck_leaks_truncated.xml" 2

echo "== done; recorded files:"
ls -l "$OUT"
