#!/bin/sh
# Runs a Windows program under Wine for the cross build's ctest:
#
#   scripts/wine-run.sh PREFIX PROGRAM.exe [ARGS...]
#   scripts/wine-run.sh PREFIX          (only makes the prefix)
#
# PREFIX is a private Wine prefix, made here on first use (quietly, without a
# display, serialised so that programs started in parallel do not both make
# it). A Wine server stays up for a minute after the last program, so that
# each program starts in a fraction of a second instead of several. Wine's own
# messages are off; the program's output and exit code are passed through.
set -eu

prefix=$1
shift
export WINEPREFIX="$prefix" WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY

wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver64 || command -v wineserver || echo /usr/lib/wine/wineserver64)
if [ ! -f "$prefix/system.reg" ]; then
    mkdir -p "$prefix"
    flock "$prefix.lock" sh -c '[ -f "$WINEPREFIX/system.reg" ] || "$1" wineboot --init >/dev/null 2>&1' sh "$wine"
fi
# Started here with its output elsewhere, or it would hold the program's
# output open for its minute, and whoever reads that output (ctest, the
# build's test discovery) would wait for it; it exits at once when one is
# running.
"$wineserver" -p 60 </dev/null >/dev/null 2>&1 || true
[ $# -gt 0 ] || exit 0
exec "$wine" "$@"
