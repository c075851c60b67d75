#!/usr/bin/env bash
# Sets up, builds and runs every test: the release build (with the install checks and the
# tool under valgrind), the same suite under AddressSanitizer and UndefinedBehaviorSanitizer,
# bounded fuzzing, and the Windows build under wine. The suites run with a fresh temporary
# folder that must be empty afterwards.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

echo "== release build"
bash scripts/build.sh build
bash scripts/ctest-clean-temp.sh build -j2
bash scripts/test-install.sh build
echo "== memcheck of the tool"
bash scripts/memcheck.sh build

echo "== sanitizer build"
bash scripts/build.sh build-asan -DPALVEX_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
bash scripts/ctest-clean-temp.sh build-asan -j2

echo "== thread sanitizer stress"
bash scripts/test-threads.sh

echo "== fuzzing (bounded)"
bash scripts/fuzz.sh "${PALVEX_FUZZ_SECONDS:-15}"

echo "== Windows build under wine"
bash scripts/test-windows.sh
