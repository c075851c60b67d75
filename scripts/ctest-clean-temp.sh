#!/usr/bin/env bash
# Runs a build's tests with the temporary directory pointed at a fresh, empty folder, and
# fails when anything is left in it afterwards: every temporary file the library, the tool
# or a test makes must be gone when they are done.
#   scripts/ctest-clean-temp.sh BUILD_DIR [ctest options...]
set -euo pipefail
build=$(cd "$1" && pwd)
shift
temp=$(mktemp -d "${TMPDIR:-/tmp}/palvex-ctest.XXXXXX")
status=0
(cd "$build" && TMPDIR="$temp" ctest --output-on-failure "$@") || status=$?
left=$(find "$temp" -mindepth 1 | head -n 20)
if [ -n "$left" ]; then
  echo "left in the temporary directory after the tests of $build:" >&2
  echo "$left" >&2
  status=1
fi
rm -rf "$temp"
exit "$status"
