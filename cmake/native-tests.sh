#!/usr/bin/env bash
# native-tests.sh [FUZZ-ARGS...]: builds the readers of foreign bytes (shell links, version records, the journal) for
# this machine under the address and undefined behaviour sanitizers, runs their tests, then lets the fuzzer try 200,000
# variations for each, or what a busy machine manages in 15 seconds: of the corpus in tests/data, and of nothing for the
# journal.
#
# FUZZ-ARGS go to one fuzzer and win over the defaults: `-runs=-1 -max_total_time=7200` fuzzes for two hours. SMH_FUZZ
# names it: lnk (the default), version or journal.
# Inputs that reach new code stay in build/native/corpus-NAME for the next run; a failing input lands in build/native.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
build=$root/build/native
mkdir -p "$build"

if [ ! -f "$build/build.ninja" ]; then
  cmake -S "$root/tests/native" -B "$build" -G Ninja \
    -DCMAKE_C_COMPILER="clang$llvm" -DCMAKE_CXX_COMPILER="clang++$llvm" >&2
fi
flock -o "$build/.lock" ninja -C "$build" --quiet >&2
"$build/reader_tests" --gtest_brief=1

cd "$build"
# fuzz NAME CORPUS ARGS...: starts the fuzzer from a folder of its own, because it adds to its corpus.
fuzz() {
  local name=$1 corpus=$2 options=()
  shift 2
  mkdir -p "$corpus"
  case $name in
    journal) options=(-max_len=1024 -use_value_profile=1) ;;
    *)
      options=(-max_len=4096)
      cp "$root/tests/data/$name"/* "$corpus/"
      ;;
  esac
  "./${name}_fuzz" -seed=1 -runs=200000 "${options[@]}" -print_final_stats=1 "$@" "$corpus"
}
if [ $# -gt 0 ]; then
  fuzz "${SMH_FUZZ:-lnk}" "corpus-${SMH_FUZZ:-lnk}" "$@"
  exit
fi
# The bounded run starts from the same corpus every time.
for name in lnk version journal; do
  rm -rf corpus-bounded
  if ! fuzz "$name" corpus-bounded -max_total_time=15 >fuzz.log 2>&1; then
    cat fuzz.log >&2
    exit 1
  fi
  grep number_of_executed_units fuzz.log
done
