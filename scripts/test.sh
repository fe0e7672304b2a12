#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test through CTest: first
# the engine tests in a build with AddressSanitizer and UndefinedBehaviorSanitizer,
# then the tests where threads meet in a build with ThreadSanitizer, then a
# short run of each fuzz target, then all tests in the normal build (whose
# CTest summary is printed last).
set -uo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc)
status=0

scripts/setup.sh build-asan -DREELWRIGHT_ENGINE_ONLY=ON -DREELWRIGHT_SANITIZE=ON || exit 1
( cd build-asan && ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest -j "$jobs" --output-on-failure ) || status=1

# The tests labelled "threads" (tests/CMakeLists.txt says which and why) under
# ThreadSanitizer; tests/tsan.supp holds what the uninstrumented Qt reports.
scripts/setup.sh build-tsan -DREELWRIGHT_TSAN=ON || exit 1
tsan_options="halt_on_error=1 second_deadlock_stack=1 suppressions=$PWD/tests/tsan.supp"
( cd build-tsan && TSAN_OPTIONS="$tsan_options" \
    ctest -j "$jobs" -L threads --output-on-failure ) || status=1

# Each route's fuzz target for a short while (bench/fuzz.sh runs them longer).
REELWRIGHT_EXTRA_PACKAGES="clang libclang-rt-dev" CC=clang CXX=clang++ \
  scripts/setup.sh build-fuzz -DREELWRIGHT_FUZZ=ON -DFUZZ_RUNS="${FUZZ_RUNS:-2000}" || exit 1
( cd build-fuzz && ctest -j "$jobs" --output-on-failure ) || status=1

scripts/setup.sh build || exit 1
( cd build && ctest -j "$jobs" --output-on-failure ) || status=1
exit $status
