#!/usr/bin/env bash
# native-tests.sh [FUZZ-ARGS...]: builds the shell link parser and the journal's reader for this machine under the
# address and undefined behaviour sanitizers, runs their tests, then lets the fuzzer try 200,000 variations of each:
# of the links' corpus, and of nothing for the journal.
#
# FUZZ-ARGS go to the link parser's fuzzer and win over the defaults: `-runs=-1 -max_total_time=7200` fuzzes for two
# hours. `SMH_FUZZ=journal` sends them to the journal's.
# Inputs that reach new code stay in build/native/corpus for the next run; a failing input lands in build/native.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
build=$root/build/native
mkdir -p "$build"

if [ ! -f "$build/build.ninja" ]; then
  cmake -S "$root/tests/native" -B "$build" -G Ninja \
    -DCMAKE_C_COMPILER="clang$llvm" -DCMAKE_CXX_COMPILER="clang++$llvm" >&2
fi
flock -o "$build/.lock" ninja -C "$build" --quiet >&2
"$build/lnk_native_test" --gtest_brief=1
"$build/journal_native_test" --gtest_brief=1

# Copies, because the fuzzer adds to its corpus. The bounded run starts from the same one every time.
cd "$build"
journal=(./journal_fuzz -seed=1 -runs=200000 -max_len=1024 -use_value_profile=1 -print_final_stats=1)
if [ $# -gt 0 ] && [ "${SMH_FUZZ:-}" = journal ]; then
  mkdir -p corpus-journal
  exec "${journal[@]}" "$@" corpus-journal
fi
fuzz=(./lnk_fuzz -seed=1 -runs=200000 -max_len=4096 -print_final_stats=1)
if [ $# -gt 0 ]; then
  mkdir -p corpus
  cp "$root"/tests/data/lnk/*.lnk corpus/
  exec "${fuzz[@]}" "$@" corpus
fi
rm -rf corpus-bounded
mkdir corpus-bounded
cp "$root"/tests/data/lnk/*.lnk corpus-bounded/
run_bounded() {
  if ! "$@" >fuzz.log 2>&1; then
    cat fuzz.log >&2
    exit 1
  fi
  grep number_of_executed_units fuzz.log
}
run_bounded "${fuzz[@]}" corpus-bounded
run_bounded "${journal[@]}"
