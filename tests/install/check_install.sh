#!/bin/sh
# usage: check_install.sh BUILD_DIR CONSUMER_DIR CXX
set -eu
build=$1 consumer=$2 cxx=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
test -f "$prefix/include/KzBasicServices/CrossPlatformApi.h"

# Through the CMake package.
cmake -S "$consumer" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
      -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
expected=$("$work/cmake-build/app")

# Through pkg-config.
PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --exists KzBasicServices
"$cxx" -std=c++17 "$consumer/app.cpp" -o "$work/app-pc" \
    $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs KzBasicServices)
test "$("$work/app-pc")" = "$expected"
echo "installed library works through find_package and pkg-config"
