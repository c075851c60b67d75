#!/usr/bin/env bash
# Sets up, builds, and shows the tool at work on the bundled samples.
set -euo pipefail
cd "$(dirname "$0")/.."
PALVEX_WINDOWS=0 bash scripts/setup.sh
bash scripts/build.sh build
set -x
./build/palvex formats
./build/palvex --locale fr_FR message '$$$/PXError/FileNotExist=File not exist at input path:^1.' examples/missing.csv
