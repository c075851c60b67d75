#!/bin/sh
# Runs a Windows x64 program under wine: run-under-wine.sh PREFIX PROGRAM [ARGUMENTS...]
# PREFIX is a private wine prefix, made on first use. Its set-up runs once, under a lock,
# so that parallel first runs do not race and its messages never reach a program's output.
set -e
prefix=$1
shift
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
wine=/usr/lib/wine/wine64
ready="$prefix/.palvex-ready"
if [ ! -f "$ready" ]; then
  mkdir -p "$prefix"
  flock "$prefix/.lock" sh -c '[ -f "$1" ] || { "$2" wineboot.exe -i >/dev/null 2>&1 && touch "$1"; }' \
    sh "$ready" "$wine"
fi
exec "$wine" "$@"
