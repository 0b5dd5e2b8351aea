#!/bin/sh
# usage: check_abi.sh RECORD LIBRARY PUBLIC_HEADERS_DIR
# Compares the built library with the ABI recorded for its SONAME. Additions
# pass; a change that breaks existing callers (abidiff's bit 8) fails unless
# the SONAME was bumped with it. Exit 77 (skipped) without abidiff.
# Only the library's own interface counts: foreign.suppr beside this script
# leaves out what the library instantiates of the standard library and Qt,
# as make abi-record does.
set -u
record=$1 library=$2 headers=$3

if ! command -v abidiff >/dev/null 2>&1; then
    echo "abidiff is not installed (Debian: abigail-tools): ABI check skipped"
    exit 77
fi
if [ ! -f "$record" ]; then
    echo "no ABI record $record: make abi-record writes it" >&2
    exit 1
fi

# What foreign.suppr leaves out must not be exported either (foreign.map).
foreign=$(sed -n 's/^ *symbol_name_regexp = //p' "$(dirname "$0")/foreign.suppr" | head -n1)
leaked=$(nm -D --defined-only "$library" | awk '{ print $3 }' | grep -E "$foreign")
if [ -n "$leaked" ]; then
    echo "the library exports instantiations of the standard library or Qt:" >&2
    echo "$leaked" | c++filt >&2
    exit 1
fi

recorded=$(sed -n "1s/.*soname='\([^']*\)'.*/\1/p" "$record")
current=$(objdump -p "$library" | awk '$1 == "SONAME" { print $2 }')
if [ "$recorded" != "$current" ]; then
    echo "SONAME $recorded -> $current: a new ABI; record it with make abi-record"
    exit 0
fi

abidiff --suppressions "$(dirname "$0")/foreign.suppr" --headers-dir2 "$headers" "$record" "$library"
status=$?
if [ $((status & 3)) -ne 0 ]; then
    echo "abidiff failed (status $status)" >&2
    exit 1
fi
if [ $((status & 8)) -ne 0 ]; then
    echo "incompatible ABI change under the unchanged SONAME $current:" >&2
    echo "undo it, or bump the SONAME (the project's major version) and make abi-record" >&2
    exit 1
fi
[ $((status & 4)) -ne 0 ] && echo "compatible changes only: the check passes (the record may be refreshed)"
exit 0
