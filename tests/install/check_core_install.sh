#!/bin/sh
# usage: check_core_install.sh BUILD_DIR CONSUMER_DIR CXX
# Installs the build into a scratch prefix and builds a consumer of the core
# library through find_package and through pkg-config: neither command line
# may name Qt or X11, nor may the library or the program need them.
set -eu
. "$(dirname "$0")/scratch_install.sh"
expected="workdays BY 2026: 252
AES-128: 69 c4 e0 d8 6a 7b 04 30 d8 cd b7 80 70 b4 c5 5a"

no_gui() { # what a line or a file list must not name
    if grep -E 'libQt|/qt[56]/|Qt[56]::|libX11|-lX11' "$@"; then
        echo "the core library's consumer meets Qt or X11 (above)" >&2
        exit 1
    fi
}
objdump -p "$prefix/lib/libKzBasicServicesCore.so" >"$work/needed"
grep -q 'SONAME *libKzBasicServicesCore\.so\.1$' "$work/needed"
no_gui "$work/needed"

# Through the CMake package.
cmake -S "$consumer" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
      -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/cmake-build" --verbose >"$work/cmake-lines"
no_gui "$work/cmake-lines"
test "$("$work/cmake-build/app")" = "$expected"

# Through pkg-config.
pc() { PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config "$@" KzBasicServicesCore; }
test -z "$(pc --print-requires --print-requires-private)"
flags=$(pc --cflags --libs)
echo "$flags" | no_gui
"$cxx" -std=c++17 "$consumer/app.cpp" -o "$work/app-pc" $flags
test "$("$work/app-pc")" = "$expected"
objdump -p "$work/app-pc" | no_gui
echo "the core library serves find_package and pkg-config without Qt"
