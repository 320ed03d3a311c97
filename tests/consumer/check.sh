#!/usr/bin/env bash
# Builds and runs the consumer program against an installed qta.
#
#   check.sh find_package shared|static PREFIX WORKDIR
#   check.sh pkg-config shared|static PREFIX WORKDIR
#
# CXX and PKG_CONFIG name the compiler and pkg-config to use.
set -euo pipefail
how=$1 kind=$2 prefix=$3 work=$4
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$work" && mkdir -p "$work"

if [[ $how == find_package ]]; then
  target=qta::qta
  [[ $kind == static ]] && target=qta::qta_static
  cmake -S "$here" -B "$work" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$CXX" \
    -DQTA_CONSUMER_TARGET="$target" >/dev/null
  cmake --build "$work" >/dev/null
else
  pc=$(find "$prefix" -name qta.pc -print -quit)
  export PKG_CONFIG_PATH=${pc%/qta.pc}
  if [[ $kind == static ]]; then
    # --static adds the private dependencies; -l:libqta.a picks the archive
    # where the shared library lies beside it.
    libs=$("$PKG_CONFIG" --static --libs qta)
    libs=${libs/-lqta/-l:libqta.a}
  else
    libs="$("$PKG_CONFIG" --libs qta) -Wl,-rpath,$("$PKG_CONFIG" --variable=libdir qta)"
  fi
  # shellcheck disable=SC2046,SC2086  # flags are lists of words
  "$CXX" -std=c++20 $("$PKG_CONFIG" --cflags qta) "$here/main.cpp" -o "$work/consumer" $libs
fi

if [[ $kind == static ]]; then
  libraries=$(ldd "$work/consumer")
  if [[ $libraries == *libqta.so* ]]; then
    echo "the static consumer loads libqta.so" >&2
    exit 1
  fi
fi
"$work/consumer"
