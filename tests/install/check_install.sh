#!/bin/sh
# usage: check_install.sh BUILD_DIR CONSUMER_DIR CXX
# Installs the build into a scratch prefix, runs the installed kzbs there and
# after moving the prefix (its rpath is relative), and builds a consumer
# through find_package and through pkg-config.
set -eu
. "$(dirname "$0")/scratch_install.sh"
test -f "$prefix/include/KzBasicServices/CrossPlatformApi.h"
test -f "$prefix/share/man/man1/kzbs.1"
test -f "$prefix/share/bash-completion/completions/kzbs"

# The installed tool finds its library and its helper for ini and folders
# from any prefix; it needs the core library alone.
objdump -p "$prefix/bin/kzbs" >"$work/kzbs-needed"
grep -q 'NEEDED *libKzBasicServicesCore\.so\.1$' "$work/kzbs-needed"
if grep -E 'libQt|libKzBasicServices\.so' "$work/kzbs-needed"; then exit 1; fi
test "$("$prefix/bin/kzbs" easter 2024)" = "2024-03-31"
test "$("$prefix/bin/kzbs" folders | tail -n 1)" = "application          $(cd "$prefix/bin" && pwd -P)"
mv "$prefix" "$work/moved"
test "$("$work/moved/bin/kzbs" easter 2025)" = "2025-04-20"
test "$("$work/moved/bin/kzbs" folders | tail -n 1)" = "application          $(cd "$work/moved/bin" && pwd -P)"
mv "$work/moved" "$prefix"

# Through the CMake package.
cmake -S "$consumer" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
      -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
expected=$("$work/cmake-build/app")

# Through pkg-config.
pc() { PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config "$@" KzBasicServices; }
pc --exists
"$cxx" -std=c++17 "$consumer/app.cpp" -o "$work/app-pc" $(pc --cflags --libs)
test "$("$work/app-pc")" = "$expected"

# Both name the library's Qt. A consumer that uses the same Qt builds; one
# that links the other major version is stopped when CMake generates.
qt=$(pc --variable=qt_major_version)
case "$qt" in 5) other=6 ;; 6) other=5 ;; *) echo "qt_major_version is '$qt'" >&2; exit 1 ;; esac
pc --print-requires-private | grep -q "^Qt${qt}Core"
cmake -S "$consumer" -B "$work/same-qt" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
      -DCMAKE_CXX_COMPILER="$cxx" -DCONSUMER_QT="$qt" >/dev/null
if cmake -S "$consumer" -B "$work/other-qt" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
         -DCMAKE_CXX_COMPILER="$cxx" -DCONSUMER_QT="$other" >"$work/other-qt.log" 2>&1; then
    echo "a consumer linking Qt $other with the Qt $qt library was not stopped" >&2
    exit 1
fi
# (CMake names QT_MAJOR_VERSION; Qt 6 after Qt 5 trips over its own Qt:: names
# first. Without the other Qt installed there is nothing to mix.)
grep -Eq "QT_MAJOR_VERSION|targets in this export set were already defined|Could not find.*Qt${other}" \
    "$work/other-qt.log"
echo "installed kzbs runs from any prefix; the library serves find_package and pkg-config with Qt $qt"
