#!/bin/sh
# The part the scripts that run this tree inside a Debian root of their own
# (debian13.sh, arm64.sh) share. They set root_sh to this file's path and
# source it, then call:
#
#   root_need_root NAME "$@"      re-runs the calling script through sudo when
#                                 not root (making a root and mounting need it)
#   root_make ROOT SUITE OPTION...  makes ROOT once with mmdebstrap (OPTIONs go
#                                 to it), from the package source the host
#                                 uses (ROOT_MIRROR overrides it); made aside
#                                 and renamed when complete
#   root_copy_tree ROOT           the tracked files of the work tree to
#                                 ROOT/src, as make package takes them (the
#                                 times of unchanged files kept)
#   root_enter ROOT SCRIPT ARG... runs `sh -euc SCRIPT sh ARG...` in ROOT/src
#
# root_enter runs in a private mount namespace with its own /proc, /dev and
# /tmp: the host's mounts stay as they are and its device nodes are never
# opened. With ROOT_BINFMT=aarch64 it also runs in a user namespace of its
# own (every id mapped to itself) with a binfmt_misc instance that hands arm64
# programs to qemu-aarch64, so programs the tests start run as well; the
# host's binfmt_misc (Linux 6.7 and later keep one per user namespace) is
# left alone. Device nodes cannot be made in that namespace.
set -eu

root_need_root() {
    root_name=$1
    shift
    [ "$(id -u)" = 0 ] && return 0
    command -v sudo >/dev/null && sudo -n true 2>/dev/null && exec sudo -n "$0" "$@"
    echo "$root_name: mmdebstrap and unshare need root (or sudo without a password)" >&2
    exit 1
}

root_make() {
    root=$1 suite=$2
    shift 2
    [ -d "$root" ] && return 0
    mirror=${ROOT_MIRROR:-$(sed -n 's/^URIs:[[:space:]]*\([^[:space:]]*\).*/\1/p' \
        /etc/apt/sources.list.d/debian.sources 2>/dev/null | head -n1)}
    mirror=${mirror:-http://deb.debian.org/debian}
    echo "making the Debian $suite root in $root from $mirror" >&2
    rm -rf --one-file-system "$root.new"
    mmdebstrap --variant=apt --quiet "$@" \
        "$suite" "$root.new" "deb $mirror $suite main" "deb $mirror $suite-updates main"
    mv "$root.new" "$root"
}

root_copy_tree() {
    # Copied with the time of copying, then files whose bytes did not change
    # take back the time of the copy before: the build folders in the root
    # rebuild exactly what changed, whatever the work tree's times say.
    rm -rf --one-file-system "$1/src.new"
    mkdir "$1/src.new"
    git ls-files -z | tar --null -T - -cf - | tar -xmf - -C "$1/src.new"
    if [ -d "$1/src" ]; then
        (cd "$1/src.new" && find . -type f) | while IFS= read -r file; do
            if cmp -s "$1/src.new/$file" "$1/src/$file"; then
                touch -r "$1/src/$file" "$1/src.new/$file"
            fi
        done
    fi
    rm -rf --one-file-system "$1/src"
    mv "$1/src.new" "$1/src"
    # Name resolution for apt, should a script want more than the root has.
    cp /etc/resolv.conf "$1/etc/resolv.conf" 2>/dev/null || true
}

root_enter() {
    exec unshare --mount --propagation private --pid --fork sh "$root_sh" --inside "$@"
}

# Run by root_enter (not when sourced): inside the namespaces, mount, then run
# the script in the root.
[ "$(basename "$0")" = root.sh ] || return 0
root_sh=$0

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
    if [ -n "${ROOT_BINFMT:-}" ]; then
        # Every id mapped to itself (tests chown files to other owners), the
        # maps written from here once the child has its namespace.
        sync=$root/tmp/.userns
        mkfifo "$sync.ready" "$sync.mapped"
        unshare --user --mount --propagation private sh -c \
            'echo >"$1.ready"; read -r _ <"$1.mapped"; shift; exec sh "$@"' \
            sh "$sync" "$root_sh" --binfmt "$root" "$@" &
        child=$!
        read -r _ <"$sync.ready"
        echo "0 0 4294967295" >"$root/proc/$child/uid_map"
        echo "0 0 4294967295" >"$root/proc/$child/gid_map"
        echo >"$sync.mapped"
        rm "$sync.ready" "$sync.mapped"
        status=0
        wait "$child" || status=$?
        exit "$status"
    fi
    set -- --chroot "$root" "$@"
fi

if [ "${1:-}" = --binfmt ]; then
    root=$2
    shift 2
    [ "$ROOT_BINFMT" = aarch64 ] || { echo "root.sh: no binfmt for '$ROOT_BINFMT'" >&2; exit 2; }
    binfmt=$root/proc/sys/fs/binfmt_misc
    if ! mount -t binfmt_misc binfmt_misc "$binfmt" 2>/dev/null; then
        echo "root.sh: no binfmt_misc of this run's own (it needs Linux 6.7 or later, this is $(uname -r))" >&2
        exit 1
    fi
    # ELF, 64-bit, little-endian, executable or shared object, machine 183
    # (AArch64); F opens the emulator now, so the root's copy serves.
    printf '%s' ':qemu-aarch64:M::\x7fELF\x02\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\xb7\x00:\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff:'"$root"'/usr/bin/qemu-aarch64:F' \
        >"$binfmt/register"
    set -- --chroot "$root" "$@"
fi

if [ "${1:-}" = --chroot ]; then
    root=$2 script=$3
    shift 3
    exec chroot "$root" /usr/bin/env -i \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root LANG=C.UTF-8 CI="${CI:-}" \
        CCACHE_BASEDIR=/src CCACHE_NOHASHDIR=1 \
        /bin/sh -euc "cd /src; $script" sh "$@"
fi
