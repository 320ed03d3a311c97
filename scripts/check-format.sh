#!/usr/bin/env bash
# Fails when a tracked C++ file differs from what clang-format makes of it
# (.clang-format holds the style). With --fix, formats them in place.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h')
if [[ "${1:-}" == "--fix" ]]; then
  clang-format -i "${files[@]}"
else
  clang-format --dry-run --Werror "${files[@]}"
fi
