#!/usr/bin/env bash
# Cross-builds for Windows x64 into build-win and runs every test there under wine.
# Installs what is missing first (the mingw-w64 compiler and wine64, scripts/setup.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

# The GPX plug-in's XML parser, built for the target from Debian's source (skipped once built).
bash scripts/build-expat-windows.sh build-win
bash scripts/build.sh build-win -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchain-mingw64.cmake" \
  -DEXPAT_INCLUDE_DIR="$PWD/build-win/expat/include" -DEXPAT_LIBRARY="$PWD/build-win/expat/lib/libexpat.a"

# One wine server for all the runs: each program then starts in a fraction of a second
# instead of seconds. It is stopped however the tests end.
export WINEPREFIX="$PWD/build-win/wine-prefix" WINEDEBUG=-all
mkdir -p "$WINEPREFIX"
# (status 2: a server for this prefix runs already). Its output is not ours to keep open.
# The server lives in wine's own folder (only the "wine" package puts one on the PATH); -p300
# takes its argument attached.
wineserver=/usr/lib/wine/wineserver64
"$wineserver" -p300 >/dev/null 2>&1 </dev/null || true
trap '"$wineserver" -k 2>/dev/null || true' EXIT
(cd build-win && ctest --output-on-failure --timeout 900)

# The Windows package: a zip with the DLL and its import library, the headers, the tool and
# the bundled plug-ins.
(cd build-win && rm -f palvex-*-win64.zip && cpack -G ZIP >/dev/null)
python3 - build-win/palvex-*-win64.zip <<'PY'
import sys, zipfile
names = {n.split("/", 1)[1] for n in zipfile.ZipFile(sys.argv[1]).namelist() if "/" in n}
wanted = ["bin/palvex.dll", "bin/palvex.exe", "lib/libpalvex.dll.a", "include/palvex/palvex.h",
          "include/palvex/plugin_kit.hpp", "lib/palvex/plugins/gust_logger.mgx",
          "lib/palvex/plugins/palvex_gpx.mgx", "lib/palvex/plugins/palvex_fit.mgx",
          "lib/cmake/Palvex/PalvexConfig.cmake", "lib/cmake/Palvex/PalvexPlugin.cmake"]
missing = [w for w in wanted if w not in names]
if missing:
    sys.exit("the Windows zip lacks: " + ", ".join(missing))
print("Windows zip: " + sys.argv[1])
PY
