#!/usr/bin/env bash
# Installs what building and testing need on Debian 12, only what is missing.
set -euo pipefail

packages=(build-essential cmake ninja-build ccache rapidjson-dev libgtest-dev libgmock-dev clang-14 libclang-rt-14-dev
          libbenchmark-dev googletest python3 pkgconf file dpkg-dev valgrind libexpat1-dev)
if [ "${PALVEX_WINDOWS:-1}" = 1 ]; then
  packages+=(g++-mingw-w64-x86-64-posix wine64)
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
if [ "${#missing[@]}" -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
