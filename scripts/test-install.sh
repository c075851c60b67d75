#!/usr/bin/env bash
# Installs a built tree into a fresh prefix and builds a small consumer project against it,
# once through find_package(Palvex) and once through pkg-config; both must open a file.
#   scripts/test-install.sh BUILD_DIR
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

cmake --install "$build" --prefix "$prefix/usr" >/dev/null
example=$PWD/examples/run_v2_utc.mgjson

echo "-- consumer through find_package"
cmake -S tests/install/consumer -B "$prefix/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix/usr" >/dev/null
cmake --build "$prefix/consumer" >/dev/null
LD_LIBRARY_PATH="$prefix/usr/lib:$(find "$prefix/usr/lib" -name 'libpalvex.so.*' -printf '%h\n' | head -1)" \
  "$prefix/consumer/consumer" "$example"

echo "-- consumer through pkg-config"
pcdir=$(dirname "$(find "$prefix/usr" -name palvex.pc | head -1)")
flags=$(PKG_CONFIG_PATH="$pcdir" pkg-config --define-prefix --cflags --libs palvex)
# shellcheck disable=SC2086
g++ -std=c++20 tests/install/consumer/consumer.cpp $flags -o "$prefix/consumer-pc"
libdir=$(PKG_CONFIG_PATH="$pcdir" pkg-config --define-prefix --variable=libdir palvex)
LD_LIBRARY_PATH="$libdir" "$prefix/consumer-pc" "$example"

echo "-- installed tool"
"$prefix/usr/bin/palvex" validate "$example"
man -l "$(find "$prefix/usr" -name palvex.1 | head -1)" >/dev/null 2>&1 || test -s "$(find "$prefix/usr" -name palvex.1 | head -1)"
echo "-- example plug-in built against the installed kit"
cmake -S examples/plugins/gust_logger -B "$prefix/gust" -G Ninja -DCMAKE_PREFIX_PATH="$prefix/usr" >/dev/null
cmake --build "$prefix/gust" >/dev/null
"$prefix/usr/bin/palvex" --plugins "$prefix/gust" convert -o "$prefix/pier_wind.mgjson" examples/pier_wind.gust
"$prefix/usr/bin/palvex" info "$prefix/pier_wind.mgjson" | grep -q "^Creator *org.palvex.example.gustlog$"
echo "-- bundled plug-in, found by the installed tool without being told where"
"$prefix/usr/bin/palvex" formats | grep -q "^gust"$'\t'
"$prefix/usr/bin/palvex" info examples/pier_wind.gust | grep -q "^Creator *org.palvex.example.gustlog$"
for bundled in ride.gpx logger.csv drone_bracketed.srt action_cam.mp4 ride.fit; do
  "$prefix/usr/bin/palvex" validate "examples/$bundled" | grep -q "^ok"
done
echo "-- Debian package"
(cd "$build" && cpack -G DEB -B "$prefix/package" >/dev/null)
deb=$(find "$prefix/package" -maxdepth 1 -name 'palvex_*.deb' | head -1)
dpkg-deb -f "$deb" Depends | grep -q libstdc++
dpkg-deb -x "$deb" "$prefix/unpacked"
"$prefix/unpacked/usr/bin/palvex" validate "$example"
# The stripped plug-in keeps its texts.
"$prefix/unpacked/usr/bin/palvex" info examples/pier_wind.gust | grep -q "^Creator *org.palvex.example.gustlog$"
# Installed with apt as a user would (its dependencies are the C and C++ runtimes, already
# there), used, and removed again so that the machine is as before.
if [ "$(id -u)" = 0 ] && command -v apt-get >/dev/null; then
  trap 'dpkg -r palvex >/dev/null 2>&1 || true' EXIT
  apt-get install -y --no-install-recommends "$deb" >/dev/null
  /usr/bin/palvex --version | grep -q "^palvex $(dpkg-deb -f "$deb" Version)$"
  /usr/bin/palvex convert -o "$prefix/apt_bike.mgjson" examples/bike_ride.csv
  /usr/bin/palvex validate "$prefix/apt_bike.mgjson" | grep -q "^ok"
  dpkg -r palvex >/dev/null
  trap - EXIT
fi
echo "install checks passed"
