#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs what the build needs (Debian packages, only those missing), then
# configures and builds one preset: default (the default) or asan; with
# targets, only those and what they need.
#   bash scripts/setup.sh [default|asan] [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-default}"
targets=("${@:2}")

packages=(cmake ninja-build g++ qt6-base-dev libgl-dev libgtest-dev libgmock-dev libbenchmark-dev
          nlohmann-json3-dev clang-14 libclang-rt-14-dev libinih-dev pkg-config fonts-dejavu-core
          python3-jsonschema doxygen libsnmp-dev snmpd snmp clang-format universal-ctags)
# Real MIB text for the tests only (erlang's SNMP modules); KEL never needs it.
[[ "${KEL_WITH_TEST_DATA:-}" == 1 ]] && packages+=(erlang-snmp)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  echo "setup: installing ${missing[*]}"
  sudo=""
  [[ $(id -u) -eq 0 ]] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

cmake --preset "$preset" >/dev/null
if ((${#targets[@]})); then
  cmake --build --preset "$preset" --target "${targets[@]}"
else
  cmake --build --preset "$preset"
fi
