#!/usr/bin/env bash
# Builds the fuzz targets with clang's libFuzzer and runs each for a bounded time:
#   scripts/fuzz.sh [SECONDS_PER_TARGET]   (default 15)
# A crash, leak, hang or sanitizer report fails the run; findings land in build-fuzz/findings.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-15}
CC=clang-14 CXX=clang++-14 bash scripts/build.sh build-fuzz -DPALVEX_FUZZ=ON -DPALVEX_BUILD_TESTS=OFF \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo
mkdir -p build-fuzz/findings
for program in build-fuzz/fuzz/fuzz_*; do
  target=${program##*/fuzz_}
  work=$(mktemp -d)
  cp -r "fuzz/corpus/$target/." "$work/"
  echo "== fuzzing $target for ${seconds}s"
  "$program" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
    -artifact_prefix=build-fuzz/findings/ -print_final_stats=1 "$work" 2>&1 | tail -n 12
  rm -rf "$work"
done
