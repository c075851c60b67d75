#!/bin/sh
# Runs a Windows x64 program under wine: run-under-wine.sh PREFIX PROGRAM [ARGUMENTS...]
# PREFIX is a private wine prefix, made on first use. Its set-up runs once, under a lock,
# so that parallel first runs do not race and its messages never reach a program's output.
set -e
prefix=$1
shift
# Wine turns the arguments and the file names it passes between the two systems from and
# into the locale's character set: make that UTF-8 whatever the caller's locale is.
export WINEPREFIX="$prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LC_ALL=C.UTF-8
wine=/usr/lib/wine/wine64
ready="$prefix/.palvex-ready"
if [ ! -f "$ready" ]; then
  mkdir -p "$prefix"
  flock "$prefix/.lock" sh -c '[ -f "$1" ] || { "$2" wineboot.exe -i >/dev/null 2>&1 && touch "$1"; }' \
    sh "$ready" "$wine"
fi
exec "$wine" "$@"
