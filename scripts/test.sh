#!/usr/bin/env bash
# Installs what is missing, builds everything (library, qtatool, examples,
# tests, benchmarks) with warnings as errors and runs every test.
#
#   scripts/test.sh
#   QTA_BUILD_DIR=build-asan QTA_CMAKE_ARGS="-DQTA_SANITIZE=address,undefined" scripts/test.sh
#   QTA_CTEST_ARGS="-R ^Concurrent" scripts/test.sh    # only some tests
#
# A sanitizer report ends the process that made it with an abort, so no test
# that expects a failure status can pass over one.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QTA_BUILD_DIR:-$root/build}
export ASAN_OPTIONS=${ASAN_OPTIONS:-halt_on_error=1:detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:abort_on_error=1:print_stacktrace=1}
export TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1:abort_on_error=1:second_deadlock_stack=1}

"$root/scripts/install-deps.sh"
# shellcheck disable=SC2086  # QTA_CMAKE_ARGS and QTA_CTEST_ARGS are lists of arguments
cmake -S "$root" -B "$build" -DQTA_WERROR=ON ${QTA_CMAKE_ARGS:-} >/dev/null
cmake --build "$build" -j"$(nproc)"
# shellcheck disable=SC2086
ctest --test-dir "$build" --output-on-failure -j"$(nproc)" --timeout 600 ${QTA_CTEST_ARGS:-}
