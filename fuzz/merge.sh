#!/bin/bash
# Adds to the seed corpora the inputs a campaign found that reach code the
# seeds do not, keeping each corpus small: libFuzzer's merge picks them (the
# seeds count first), and of those only the smallest are kept, up to
# FUZZ_CORPUS_MAX files per corpus (default 40).
#
#   fuzz/merge.sh BUILD_DIR [TARGET...]     (no TARGET: every fuzz_* built)
set -eu
build=$1; shift
here=$(cd "$(dirname "$0")" && pwd)
most=${FUZZ_CORPUS_MAX:-40}
if [ $# -eq 0 ]; then
    set -- $(for f in "$build"/fuzz/fuzz_*; do [ -x "$f" ] && basename "$f"; done)
fi
for name in "$@"; do
    work="$build/fuzz/work/$name"; seeds="$here/corpus/$name"
    [ -d "$work" ] || continue
    mkdir -p "$seeds"
    merged=$(mktemp -d)
    cp "$seeds"/* "$merged"/ 2>/dev/null || true
    before=$(ls "$merged" | wc -l)
    "$build/fuzz/$name" -merge=1 -rss_limit_mb=2048 "$merged" "$work" > "$build/fuzz/logs/$name.merge.log" 2>&1
    room=$((most - before))
    added=0
    if [ "$room" -gt 0 ]; then
        for f in $(cd "$merged" && ls -S -r); do
            [ -e "$seeds/$f" ] && continue
            [ "$added" -lt "$room" ] || break
            cp "$merged/$f" "$seeds/$f"
            added=$((added + 1))
        done
    fi
    echo "$name: $before seeds, $(($(ls "$merged" | wc -l) - before)) inputs with new features, $added added"
    rm -rf "$merged"
done
