#!/usr/bin/env bash
# Installs what is missing, builds everything (library, qtatool, examples,
# tests, benchmarks) and runs every test.
#
#   scripts/test.sh
#   QTA_BUILD_DIR=build-asan QTA_CMAKE_ARGS="-DQTA_SANITIZE=address,undefined" scripts/test.sh
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QTA_BUILD_DIR:-$root/build}

"$root/scripts/install-deps.sh"
# shellcheck disable=SC2086  # QTA_CMAKE_ARGS is a list of arguments
cmake -S "$root" -B "$build" ${QTA_CMAKE_ARGS:-} >/dev/null
cmake --build "$build" -j"$(nproc)"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)" --timeout 600
