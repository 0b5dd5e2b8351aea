#!/bin/sh
# Runs a Windows program under Wine for the cross build's ctest:
#
#   scripts/wine-run.sh PREFIX PROGRAM.exe [ARGS...]
#   scripts/wine-run.sh PREFIX          (only makes the prefix)
#
# PREFIX is a private Wine prefix, made here on first use (quietly, without a
# display, serialised so that programs started in parallel do not both make
# it). Wine's own messages are off; the program's output and exit code are
# passed through.
set -eu

prefix=$1
shift
export WINEPREFIX="$prefix" WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY

wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver64 || command -v wineserver || echo /usr/lib/wine/wineserver64)
mkdir -p "$prefix"
# One at a time: make the prefix if it is missing, and start the Wine server
# (to stay a minute after the last program, so that each program starts in
# a fraction of a second) with Wine's own processes (services, devices),
# all with their output elsewhere and without the lock. Started by a test
# program instead, they would hold its output open as long as they live, and
# whoever reads that output (ctest, the build's test discovery) would wait.
flock -o "$prefix.lock" sh -c '
    wine=$1 wineserver=$2
    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        "$wine" wineboot --init
        "$wineserver" --wait
    fi
    if "$wineserver" -p 60; then # 0: started; else one is running
        "$wine" cmd.exe /c exit 0
    fi
' sh "$wine" "$wineserver" </dev/null >/dev/null 2>&1
[ $# -gt 0 ] || exit 0
exec "$wine" "$@"
