#!/bin/sh
# One end-to-end case of kzbs, run through an emulator (Wine):
#   end_to_end.sh CASE KZBS.exe EMULATOR [EMULATOR ARGS...]
set -eu
case_name=$1 kzbs=$2
shift 2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"

run() { # run EXPECTED_STATUS ARGS...: stdout to out, stderr to err
    want=$1
    shift
    status=0
    "$@" >out 2>err </dev/null || status=$?
    if [ "$status" != "$want" ]; then
        echo "exit $status, not $want: $*" >&2
        cat err >&2
        exit 1
    fi
}
expect() { # expect FILE TEXT: FILE holds exactly TEXT (printf format)
    printf "$2" >expected
    cmp "$1" expected || { od -c "$1" | head >&2; exit 1; }
}

case "$case_name" in
easter)
    run 0 "$@" "$kzbs" easter 2024 2025
    expect out '2024-03-31\n2025-04-20\n' ;;
no-holiday) # a "no" answer is exit 1, with the answer on stdout
    run 1 "$@" "$kzbs" is-holiday 2024-12-24 --state BY
    expect out '2024-12-24 Dienstag: no public holiday\n' ;;
refusal) # one English line on stderr, exit 2, nothing on stdout
    run 2 "$@" "$kzbs" easter 20x4
    expect out ''
    expect err "kzbs: not a year: '20x4'\n" ;;
crypt-round-trip) # OUT exists and is replaced whole
    printf 'Zeile 1\r\nZeile 2\n\344\n' >plain
    echo old >sealed
    export KZBS_TEST_KEY=geheim1234567890
    run 0 "$@" "$kzbs" encrypt --key-env KZBS_TEST_KEY plain sealed
    [ "$(head -c 4 sealed)" = RCBC ] || { echo "sealed is no RCBC stream" >&2; exit 1; }
    run 0 "$@" "$kzbs" decrypt --key-env KZBS_TEST_KEY sealed back
    cmp plain back
    [ -z "$(ls | grep kzbs-)" ] || { echo "a temporary file was left: $(ls)" >&2; exit 1; } ;;
*)
    echo "end_to_end.sh: unknown case $case_name" >&2
    exit 2 ;;
esac
