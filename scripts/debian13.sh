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
# in a private mount namespace with its own /proc, /dev and /tmp: the host's
# mounts stay as they are and its device nodes are never opened. The build
# folders stay in the root (/build) between runs.
set -eu

# The part that runs inside the namespace: mount, then make in the root.
if [ "${1:-}" = --inside ]; then
    root=$2
    shift 2
    mount -t proc -o nosuid,nodev,noexec proc "$root/proc"
    mount -t tmpfs -o nosuid,mode=1777 tmpfs "$root/tmp"
    # A /dev of fresh nodes on a tmpfs, not the host's.
    mount -t tmpfs -o nosuid,noexec,mode=0755 tmpfs "$root/dev"
    while read -r name major minor; do
        mknod -m 0666 "$root/dev/$name" c "$major" "$minor"
    done <<EOF
null 1 3
zero 1 5
full 1 7
random 1 8
urandom 1 9
tty 5 0
EOF
    mkdir "$root/dev/pts" "$root/dev/shm"
    mount -t devpts -o newinstance,nosuid,noexec,ptmxmode=0666,mode=0620 devpts "$root/dev/pts"
    mount -t tmpfs -o nosuid,nodev,mode=1777 tmpfs "$root/dev/shm"
    ln -s pts/ptmx "$root/dev/ptmx"
    ln -s /proc/self/fd "$root/dev/fd"
    ln -s /proc/self/fd/0 "$root/dev/stdin"
    ln -s /proc/self/fd/1 "$root/dev/stdout"
    ln -s /proc/self/fd/2 "$root/dev/stderr"
    # git's index stands in for the clone: make package copies what git lists.
    exec chroot "$root" /usr/bin/env -i \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root LANG=C.UTF-8 CI="${CI:-}" \
        CCACHE_BASEDIR=/src CCACHE_NOHASHDIR=1 \
        /bin/sh -euc '
            cd /src
            git -c init.defaultBranch=main init -q
            git add -A
            echo "Debian $(cat /etc/debian_version), $(g++ --version | head -n1)" >&2
            exec make BUILD=/build/qt6 ASAN_BUILD=/build/asan QT5_BUILD=/build/qt5 TSAN_BUILD=/build/tsan \
                      DEB_BUILD=/build/deb "$@"' sh "$@"
fi

if [ $# -lt 2 ]; then
    echo "usage: $0 WORKDIR MAKE_TARGET..." >&2
    exit 2
fi
if [ "$(id -u)" != 0 ]; then
    # Making a root and mounting need root; sudo only when it asks nothing.
    command -v sudo >/dev/null && sudo -n true 2>/dev/null && exec sudo -n "$0" "$@"
    echo "debian13: mmdebstrap and unshare need root (or sudo without a password)" >&2
    exit 1
fi

self=$(cd "$(dirname "$0")" && pwd)/$(basename "$0")
mkdir -p "$1"
work=$(cd "$1" && pwd)
root=$work/root
shift
cd "$(dirname "$self")/.."

if [ ! -d "$root" ]; then
    mirror=${DEBIAN13_MIRROR:-$(sed -n 's/^URIs:[[:space:]]*\([^[:space:]]*\).*/\1/p' \
        /etc/apt/sources.list.d/debian.sources 2>/dev/null | head -n1)}
    mirror=${mirror:-http://deb.debian.org/debian}
    echo "debian13: making the Debian 13 root in $root from $mirror" >&2
    # Made aside and renamed when complete, so a broken run leaves no half root.
    rm -rf --one-file-system "$root.new"
    mmdebstrap --variant=apt --include=make,git --quiet \
        --customize-hook='copy-in scripts/deps.sh /tmp' \
        --customize-hook='chroot "$1" sh /tmp/deps.sh package' \
        --customize-hook='rm "$1/tmp/deps.sh"' \
        trixie "$root.new" "deb $mirror trixie main" "deb $mirror trixie-updates main"
    mv "$root.new" "$root"
fi

# The tracked files as they are in the work tree, as make package takes them.
rm -rf --one-file-system "$root/src"
mkdir "$root/src"
git ls-files -z | tar --null -T - -cf - | tar -xf - -C "$root/src"
# Name resolution for apt, should scripts/deps.sh want more than the root has.
cp /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true

exec unshare --mount --propagation private --pid --fork "$self" --inside "$root" "$@"
