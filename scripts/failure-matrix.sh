#!/usr/bin/env bash
# Runs the allocation-failure and I/O-fault drivers to completion (no limit per scenario,
# unlike CI) and prints their figures as a table for docs/testing.md.
#   scripts/failure-matrix.sh [BUILD_DIR] [GTEST_FILTER]   (default build, every scenario)
# Use a sanitizer build (-DPALVEX_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug) to have leaks fail
# the run too; it is several times slower.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
filter=${2:-*}
cmake --build "$build" --target palvex_failure_tests >/dev/null
log=$(mktemp "${TMPDIR:-/tmp}/palvex-failure-matrix.XXXXXX")
trap 'rm -f "$log"' EXIT
status=0
env -u PALVEX_FAILURE_LIMIT ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1} \
  "$build/tests/failure/palvex_failure_tests" --gtest_color=no "--gtest_filter=$filter" >"$log" 2>&1 || status=$?
grep -E '^\[  (FAILED|SKIPPED) |^\[ skipped  \]' "$log" || true
echo
echo "| driver | scenario | failures injected and survived | complete | seconds |"
echo "|---|---|---:|---|---:|"
# "[ figures  ] memory ConvertCsv survived=812 complete=yes seconds=3.1 ..."
sed -n 's/^\[ figures  \] \([a-z]*\) \([A-Za-z0-9]*\) survived=\([0-9]*\) complete=\([a-z]*\) seconds=\([0-9.]*\).*/| \1 | \2 | \3 | \4 | \5 |/p' "$log"
if [ "$status" -ne 0 ]; then
  echo "failure-matrix: the drivers failed (status $status); the log follows" >&2
  grep -B2 -A8 'Failure$' "$log" >&2 || true
fi
exit "$status"
