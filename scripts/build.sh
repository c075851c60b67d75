#!/usr/bin/env bash
# Configures and builds one configuration: scripts/build.sh BUILD_DIR [cmake options...]
set -euo pipefail
dir=$1
shift
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
cmake -S "$(dirname "$0")/.." -B "$dir" -G Ninja "${launcher[@]}" "$@" >/dev/null
cmake --build "$dir"
