# Cross-building for Linux on ARM64 on a Debian system with the arm64
# architecture added (dpkg multiarch): crossbuild-essential-arm64 and the
# :arm64 development packages. Programs and tests run under qemu-user, so
# ctest and GoogleTest's test discovery work as on a native build.
#
#   cmake -S . -B build-arm64 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake
#
# Qt 6's own tools (moc, rcc, uic) are the build machine's, found through
# QT_HOST_PATH (Debian: qt6-base-dev-tools); Qt 5 finds them by itself.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(KZBS_TRIPLET aarch64-linux-gnu)

set(CMAKE_C_COMPILER ${KZBS_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${KZBS_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${KZBS_TRIPLET})

# Multiarch keeps the target's libraries and CMake packages in the triplet's
# folders of the ordinary prefix; the build machine's programs stay usable.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# The dynamic loader and libraries of arm64 are installed at their usual
# places, so the emulator's prefix is the root itself.
find_program(KZBS_QEMU_AARCH64 qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${KZBS_QEMU_AARCH64} -L /)

# pkg-config reads the target's .pc files, as a cross pkg-config would.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${KZBS_TRIPLET}/pkgconfig:/usr/share/pkgconfig)

if(NOT DEFINED QT_HOST_PATH)
  set(QT_HOST_PATH /usr CACHE PATH "Where the build machine's Qt tools are")
endif()
if(NOT DEFINED QT_HOST_PATH_CMAKE_DIR)
  set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${KZBS_TRIPLET}/cmake CACHE PATH "Qt's CMake packages naming the tools")
endif()
