# Cross build for Windows x64 with Debian's mingw-w64 (posix threads):
#   cmake -S . -B build-win -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw64.cmake
# Test programs run under wine64 through cmake/run-under-wine.sh, in a private wine
# prefix inside the build folder.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(_mingw x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${_mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${_mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${_mingw}-windres)

# Headers and libraries come from the target's own tree only; build tools from the host.
set(CMAKE_FIND_ROOT_PATH /usr/${_mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The runtime is linked statically (see the top-level CMakeLists.txt), so the programs
# run under wine without any mingw DLL beside them.
set(CMAKE_CROSSCOMPILING_EMULATOR sh ${CMAKE_CURRENT_LIST_DIR}/run-under-wine.sh ${CMAKE_BINARY_DIR}/wine-prefix)
