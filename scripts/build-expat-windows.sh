#!/usr/bin/env bash
# Builds a static expat for Windows x64 from Debian's own source package, with the mingw-w64
# toolchain, into a prefix inside a Windows build folder (the GPX plug-in links it):
#   scripts/build-expat-windows.sh BUILD_DIR    -> BUILD_DIR/expat/{include,lib}
# Does nothing when the prefix is complete. Debian ships expat built for Linux only.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build_dir=$(realpath -m "$1")
prefix="$build_dir/expat"
if [[ -f "$prefix/lib/libexpat.a" && -f "$prefix/include/expat.h" ]]; then
  exit 0
fi
work="$build_dir/expat-source"
rm -rf "$work"
mkdir -p "$work/lists/partial"

# A private source list and private package lists: the system's binary lists stay as they are.
sed 's/^Types: deb$/Types: deb-src/' /etc/apt/sources.list.d/debian.sources >"$work/sources.sources"
apt_options=(-o "Dir::Etc::SourceList=$work/sources.sources" -o Dir::Etc::SourceParts=/dev/null
             -o "Dir::State::Lists=$work/lists" -o Debug::NoLocking=1)
apt-get "${apt_options[@]}" update -qq
# The newest source the mirror serves: a version the lists name may be missing from its pool.
fetched=
for version in $(apt-cache "${apt_options[@]}" showsrc expat | sed -n 's/^Version: //p' | sort -rV); do
  if (cd "$work" && apt-get "${apt_options[@]}" source -qq "expat=$version" >/dev/null 2>&1); then
    fetched=$version
    break
  fi
done
[[ -n "$fetched" ]] || { echo "build-expat-windows: no expat source could be fetched" >&2; exit 1; }
source_dir=$(find "$work" -mindepth 1 -maxdepth 1 -type d -name 'expat-*' | head -n 1)
# The release tarball keeps the library's CMake project at its top or in expat/.
[[ -f "$source_dir/CMakeLists.txt" ]] || source_dir="$source_dir/expat"

cmake -S "$source_dir" -B "$work/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-mingw64.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DEXPAT_SHARED_LIBS=OFF \
  -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_EXAMPLES=OFF -DEXPAT_BUILD_TESTS=OFF -DEXPAT_BUILD_DOCS=OFF \
  -DEXPAT_BUILD_PKGCONFIG=OFF -DEXPAT_BUILD_FUZZERS=OFF >/dev/null
# Debian's security patches test "#if XML_DTD == 1", as its autotools build defines it;
# the CMake build defines it empty.
sed -i 's/^#define XML_DTD$/#define XML_DTD 1/' "$work/build/expat_config.h"
cmake --build "$work/build" >/dev/null
cmake --install "$work/build" >/dev/null
# Whatever suffix the project gives a static Windows build, the plug-in looks for one name.
library=$(find "$prefix/lib" -maxdepth 1 -name 'libexpat*.a' | head -n 1)
[[ "$library" == "$prefix/lib/libexpat.a" ]] || cp "$library" "$prefix/lib/libexpat.a"
rm -rf "$work"
