#!/bin/sh
# usage: scripts/debian13.sh WORKDIR MAKE_TARGET...
#
# Runs make targets of this tree inside a Debian 13 ("trixie") root, so the
# suite and the packages are tried on the current stable release next to the
# host's own. The root is made once with mmdebstrap, from the package source
# the host uses (DEBIAN13_MIRROR overrides it), with everything scripts/deps.sh
# installs, and kept in WORKDIR/root: delete that folder to start afresh.
#
# Each run copies the tracked files to /src in the root and runs make there
# in a private mount namespace with its own /proc, /dev and /tmp (see
# root.sh). The build folders stay in the root (/build) between runs.
set -eu

here=$(cd "$(dirname "$0")" && pwd)
root_sh=$here/root.sh
. "$root_sh"

if [ $# -lt 2 ]; then
    echo "usage: $0 WORKDIR MAKE_TARGET..." >&2
    exit 2
fi
root_need_root debian13 "$@"

mkdir -p "$1"
root=$(cd "$1" && pwd)/root
shift
cd "$here/.."

ROOT_MIRROR=${DEBIAN13_MIRROR:-${ROOT_MIRROR:-}}
root_make "$root" trixie --include=make,git \
    --customize-hook='copy-in scripts/deps.sh /tmp' \
    --customize-hook='chroot "$1" sh /tmp/deps.sh package' \
    --customize-hook='rm "$1/tmp/deps.sh"'

root_copy_tree "$root"
# git's index stands in for the clone: make package copies what git lists.
root_enter "$root" '
    git -c init.defaultBranch=main init -q
    git add -A
    echo "Debian $(cat /etc/debian_version), $(g++ --version | head -n1)" >&2
    exec make BUILD=/build/qt6 ASAN_BUILD=/build/asan QT5_BUILD=/build/qt5 TSAN_BUILD=/build/tsan \
              DEB_BUILD=/build/deb "$@"' "$@"
