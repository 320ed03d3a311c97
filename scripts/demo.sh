#!/usr/bin/env bash
# Installs what is missing, builds everything and runs `qtatool demo`.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QTA_BUILD_DIR:-$root/build}

"$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -DQTA_WERROR=ON >/dev/null
cmake --build "$build" -j"$(nproc)" >/dev/null
"$build/tools/qtatool/qtatool" demo
