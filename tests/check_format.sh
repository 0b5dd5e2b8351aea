#!/bin/sh
# format.check: the tracked C++ sources read as .clang-format lays them out.
# Only clang-format 14 (Debian 12's) is asked: other versions lay out some
# constructs differently. Exit 77 (skipped) where it is absent, or where the
# sources are not a git work tree (a package build's copy).
# Usage: check_format.sh SOURCE_DIR
set -u
src=$1
skip() { echo "format.check skipped: $1"; exit 77; }

format=
for candidate in clang-format-14 clang-format; do
    if command -v "$candidate" >/dev/null 2>&1; then
        case $("$candidate" --version 2>/dev/null) in
        *"clang-format version 14."*) format=$candidate; break ;;
        esac
    fi
done
[ -n "$format" ] || skip "no clang-format 14"
command -v git >/dev/null 2>&1 || skip "no git"
git -C "$src" rev-parse --is-inside-work-tree >/dev/null 2>&1 || skip "$src is not a git work tree"

cd "$src" || exit 2
git ls-files -z -- '*.cpp' '*.h' | xargs -0 -r "$format" --dry-run --Werror
