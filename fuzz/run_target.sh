#!/usr/bin/env bash
# Runs one fuzz target for SECONDS on a scratch copy of its seed corpus.
#   run_target.sh TARGET SEED_DIR SECONDS [extra libFuzzer flags]
set -euo pipefail
target=$1 seeds=$2 seconds=$3; shift 3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/corpus"
cp -r "$seeds"/. "$work/corpus/" 2>/dev/null || true
cd "$work"
# The fixed samples of the scanner routes, kept between runs (see fuzz_harness.cpp).
export REELWRIGHT_FUZZ_SAMPLES=${REELWRIGHT_FUZZ_SAMPLES:-$(dirname "$target")/../fuzz-samples}
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:allocator_may_return_null=1}
exec "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=1048576 \
    -print_final_stats=1 "$@" corpus
