#!/usr/bin/env bash
# Builds the libFuzzer harnesses with clang and runs one or all of them.
#
#   scripts/run-fuzzer.sh NAME [SECONDS]   run fuzz/NAME.cpp for SECONDS (default 60)
#   scripts/run-fuzzer.sh --all [SECONDS]  run every harness in turn
#   scripts/run-fuzzer.sh --list           list the harnesses
#
# The build goes to build-fuzz/ (override with QTA_FUZZ_BUILD_DIR). Seeds in
# fuzz/corpus/NAME/ are copied into a scratch corpus, so the tree stays clean.
# A finding stops the run with a non-zero status and leaves the crashing input
# in the current directory.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QTA_FUZZ_BUILD_DIR:-$root/build-fuzz}

harnesses() {
  local file
  for file in "$root"/fuzz/*.cpp; do
    if [[ -e $file ]]; then basename "$file" .cpp; fi
  done
}

case "${1:-}" in
  ""|-h|--help) sed -n '2,11p' "$0" | sed 's/^# \{0,1\}//'; exit 2 ;;
  --list) harnesses; exit 0 ;;
esac

"$root/scripts/install-deps.sh" --minimal
CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQTA_WERROR=ON \
  -DQTA_BUILD_FUZZERS=ON -DQTA_BUILD_TESTS=OFF -DQTA_BUILD_BENCHMARKS=OFF \
  -DQTA_BUILD_TOOLS=OFF -DQTA_BUILD_EXAMPLES=OFF >/dev/null

seconds=${2:-60}
if [[ $1 == --all ]]; then names=$(harnesses); else names=$1; fi

for name in $names; do
  cmake --build "$build" --target "fuzz_$name" -j"$(nproc)" >/dev/null
  corpus=$(mktemp -d)
  trap 'rm -rf "$corpus"' EXIT
  if [[ -d $root/fuzz/corpus/$name ]]; then cp -r "$root/fuzz/corpus/$name/." "$corpus/"; fi
  echo "== fuzz_$name for ${seconds}s"
  log=$corpus.log
  status=0
  "$build/fuzz/fuzz_$name" -max_total_time="$seconds" -rss_limit_mb=4096 -print_final_stats=1 \
    "$corpus" >"$log" 2>&1 || status=$?
  if [[ $status -ne 0 ]]; then tail -n 60 "$log"; else grep -E '^(#[0-9]+.*DONE|stat::number_of_executed_units)' "$log" || true; fi
  rm -f "$log"
  rm -rf "$corpus"
  if [[ $status -ne 0 ]]; then
    echo "fuzz_$name found a problem (exit $status)" >&2
    exit 1
  fi
done
