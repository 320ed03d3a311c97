#!/usr/bin/env bash
# Installs the Debian 12 packages that qta needs to build, test, fuzz and benchmark.
# Non-interactive and idempotent: packages already present are left alone, and
# apt-get is only called when something is missing.
#
#   scripts/install-deps.sh            library + tests + tooling + benchmark peers
#   scripts/install-deps.sh --minimal  library + tests only
set -euo pipefail

library=(cmake g++ make pkg-config locales liblog4cxx-dev libapr1-dev libaprutil1-dev libssl-dev
         libboost1.81-dev libidn11-dev)
testing=(googletest libgtest-dev libbenchmark-dev)
tooling=(clang libclang-rt-14-dev clang-format clang-tidy)
peers=(nlohmann-json3-dev rapidjson-dev libsimdjson-dev liburiparser-dev libboost-url1.81-dev
       libb64-dev libutfcpp-dev libicu-dev libjwt-dev libglib2.0-dev)

wanted=("${library[@]}" "${testing[@]}")
if [[ "${1:-}" != "--minimal" ]]; then
  wanted+=("${tooling[@]}" "${peers[@]}")
fi

missing=()
for pkg in "${wanted[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$pkg")
  fi
done

sudo=()
if [[ $(id -u) -ne 0 ]]; then sudo=(sudo); fi

if ((${#missing[@]} > 0)); then
  echo "install-deps: installing ${missing[*]}" >&2
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -qq
  "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# The locale-independence tests switch to a locale whose decimal point is a comma.
if ! locale -a 2>/dev/null | grep -qix 'de_DE.utf8'; then
  echo "install-deps: generating the de_DE.UTF-8 locale" >&2
  "${sudo[@]}" localedef -i de_DE -f UTF-8 de_DE.UTF-8
fi
