#!/usr/bin/env bash
# Sets up, builds and runs every test: the release build, the same suite under
# AddressSanitizer and UndefinedBehaviorSanitizer, and the Windows build under wine.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

echo "== release build"
bash scripts/build.sh build
(cd build && ctest --output-on-failure -j2)
bash scripts/test-install.sh build

echo "== sanitizer build"
bash scripts/build.sh build-asan -DPALVEX_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
(cd build-asan && ctest --output-on-failure -j2)

echo "== fuzzing (bounded)"
bash scripts/fuzz.sh "${PALVEX_FUZZ_SECONDS:-15}"

echo "== Windows build under wine"
bash scripts/test-windows.sh
