#!/usr/bin/env bash
# Runs every fuzz target for SECONDS each (default 60) on a copy of its seeds.
#   bench/fuzz.sh [SECONDS] [TARGET-NAME-FILTER]
# Crashes, hangs (>10 s per input) and their inputs are left in bench/fuzz-out/.
# Besides libFuzzer's executions per second it prints them per CPU second,
# which a machine shared with other work changes less.
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
  # Its seeds: fuzz_hevc_lpcm_scan's are in hevc-lpcm, fuzz_aac_syntax's in aac.
  route=${name#fuzz_}; route=${route%_reference}; route=${route%_scan}; route=${route%_syntax}; route=${route//_/-}
  echo "== $name ($seconds s)"
  TIMEFORMAT='%U %S'
  if ! { time fuzz/run_target.sh "$PWD/$target" "$PWD/build-fuzz/fuzz-seeds/$route" "$seconds" \
           -artifact_prefix="$out/$name-" 2>"$out/$name.log"; } 2>"$out/$name.cpu"; then
    echo "   FAILED: see $out/$name.log"; status=1
  fi
  grep -E 'stat::(number_of_executed_units|average_exec_per_sec)' "$out/$name.log" | sed 's/^/   /'
  runs=$(awk '/number_of_executed_units/ {print $2}' "$out/$name.log")
  awk -v runs="${runs:-0}" '{ cpu = $1 + $2; printf "   cpu seconds: %.1f, executions per cpu second: %d\n", cpu, (cpu > 0 ? runs / cpu : 0) }' "$out/$name.cpu"
done
exit $status
