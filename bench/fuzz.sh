#!/usr/bin/env bash
# Runs every fuzz target for SECONDS each (default 60) on a copy of its seeds.
#   bench/fuzz.sh [SECONDS] [TARGET-NAME-FILTER]
# Crashes, hangs (>10 s per input) and their inputs are left in bench/fuzz-out/.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
filter=${2:-}
REELWRIGHT_EXTRA_PACKAGES="clang libclang-rt-dev" CC=clang CXX=clang++ \
  scripts/setup.sh build-fuzz -DREELWRIGHT_FUZZ=ON
out=$PWD/bench/fuzz-out
mkdir -p "$out"
status=0
for target in build-fuzz/fuzz-bin/fuzz_*; do
  name=$(basename "$target")
  [[ -z "$filter" || "$name" == *"$filter"* ]] || continue
  route=${name#fuzz_}; route=${route%_reference}
  echo "== $name ($seconds s)"
  if ! fuzz/run_target.sh "$PWD/$target" "$PWD/build-fuzz/fuzz-seeds/$route" "$seconds" \
        -artifact_prefix="$out/$name-" 2>"$out/$name.log"; then
    echo "   FAILED: see $out/$name.log"; status=1
  fi
  grep -E 'stat::(number_of_executed_units|average_exec_per_sec)' "$out/$name.log" | sed 's/^/   /'
done
exit $status
