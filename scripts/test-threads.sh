#!/usr/bin/env bash
# Builds the library and the stress program with ThreadSanitizer (build-tsan/, only what
# the program needs) and runs it; any report of the sanitizer fails the step.
#   scripts/test-threads.sh [THREADS] [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
dir=build-tsan
threads=${1:-8}
rounds=${2:-8}
launcher=()
if command -v ccache >/dev/null; then
  # As scripts/build.sh does, so the cache is shared with every other build folder.
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
  export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
fi
# RelWithDebInfo: optimised enough to run quickly, with the lines in every report.
cmake -S . -B "$dir" -G Ninja "${launcher[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPALVEX_SANITIZE_THREAD=ON >/dev/null
cmake --build "$dir" --target palvex_stress_tests

# halt_on_error ends the run at the first report with status 66; the output is also
# searched, so a report can never pass unnoticed.
export TSAN_OPTIONS="halt_on_error=1:second_deadlock_stack=1:suppressions=$PWD/tests/stress/tsan.supp"
log=$dir/stress.log
status=0
"$dir/tests/palvex_stress_tests" --threads "$threads" --iterations "$rounds" >"$log" 2>&1 || status=$?
cat "$log"
if [ "$status" -ne 0 ] || grep -q "ThreadSanitizer" "$log"; then
  echo "thread sanitizer stress failed (status $status)" >&2
  exit 1
fi
