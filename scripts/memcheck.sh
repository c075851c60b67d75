#!/usr/bin/env bash
# Runs the tool under valgrind's memcheck over every bundled example and over broken copies
# of them (cut in half, and garbage under the example's name); fails on any memory error or
# leak, whatever the tool's own exit status.
#   scripts/memcheck.sh [BUILD_DIR]     (default build; the tool finds BUILD_DIR/plugins)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
tool="$build/palvex"
command -v valgrind >/dev/null || { echo "memcheck: valgrind is not installed" >&2; exit 1; }
scratch=$(mktemp -d "${TMPDIR:-/tmp}/palvex-memcheck.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
readonly valgrind_error=99
runs=0

# One run of the tool; its own status may be anything but valgrind's.
check() {
  local status=0
  valgrind --quiet --error-exitcode=$valgrind_error --leak-check=full --show-leak-kinds=all \
    --errors-for-leak-kinds=definite,indirect,possible "$tool" "$@" >/dev/null 2>"$scratch/log" || status=$?
  runs=$((runs + 1))
  if [ "$status" -eq "$valgrind_error" ]; then
    echo "memcheck: errors in: palvex $*" >&2
    cat "$scratch/log" >&2
    exit 1
  fi
}

for example in examples/*.*; do
  name=${example##*/}
  extension=${name##*.}
  [ -f "$example" ] || continue
  check info "$example"
  check validate "$example"
  check convert -o "$scratch/out.mgjson" "$example"
  size=$(stat -c %s "$example")
  head -c $((size / 2)) "$example" >"$scratch/half.$extension"
  check info "$scratch/half.$extension"
  head -c 4096 /dev/urandom >"$scratch/garbage.$extension"
  check info "$scratch/garbage.$extension"
  rm -f "$scratch"/*.mgjson "$scratch"/half.* "$scratch"/garbage.*
done
echo "memcheck: $runs runs of palvex clean (no memory errors, no leaks)"
