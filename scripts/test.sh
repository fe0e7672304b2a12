#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through CTest: first
# the engine tests in a build with AddressSanitizer and UndefinedBehaviorSanitizer,
# then a short run of each fuzz target, then all tests in the normal build
# (whose CTest summary is printed last).
set -uo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
status=0

scripts/setup.sh build-asan -DREELWRIGHT_ENGINE_ONLY=ON -DREELWRIGHT_SANITIZE=ON || exit 1
( cd build-asan && ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest -j "$jobs" --output-on-failure ) || status=1

# Each route's fuzz target for a short while (bench/fuzz.sh runs them longer).
REELWRIGHT_EXTRA_PACKAGES="clang libclang-rt-dev" CC=clang CXX=clang++ \
  scripts/setup.sh build-fuzz -DREELWRIGHT_FUZZ=ON -DFUZZ_RUNS="${FUZZ_RUNS:-2000}" || exit 1
( cd build-fuzz && ctest -j "$jobs" --output-on-failure ) || status=1

scripts/setup.sh build || exit 1
( cd build && ctest -j "$jobs" --output-on-failure ) || status=1
exit $status
