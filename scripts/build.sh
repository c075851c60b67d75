#!/usr/bin/env bash
# Configures and builds one configuration: scripts/build.sh BUILD_DIR [cmake options...]
set -euo pipefail
dir=$1
shift
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
  # Paths relative to the checkout, and the build folder left out of the hash, so that
  # every clone and every build folder of the same configuration shares the cache.
  export CCACHE_BASEDIR="$(cd "$(dirname "$0")/.." && pwd)" CCACHE_NOHASHDIR=1
fi
cmake -S "$(dirname "$0")/.." -B "$dir" -G Ninja "${launcher[@]}" "$@" >/dev/null
cmake --build "$dir"
