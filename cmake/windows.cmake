# The same tree for 64-bit Windows, built where Debian's cross compiler stands:
#   cmake -S . -B build-windows -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/windows.cmake
# What the build runs of its own, and the tests, go through Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(cross x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${cross}-gcc-posix)
set(CMAKE_CXX_COMPILER ${cross}-g++-posix)
set(CMAKE_RC_COMPILER ${cross}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${cross})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# What pkg-config knows is of the system that builds.
set(CMAKE_DISABLE_FIND_PACKAGE_PkgConfig ON)

# Nothing is needed at run time but what comes with the system.
set(ZLIB_USE_STATIC_LIBS ON)
foreach(kind IN ITEMS EXE MODULE SHARED)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static")
endforeach()

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/wine.sh")
# The test library has no package for this compiler: it is built from its Debian source package.
set(ZELK_GTEST_SOURCE /usr/src/googletest CACHE PATH "Where the sources of GoogleTest lie")
