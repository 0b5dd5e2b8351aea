#!/bin/sh
# usage: scripts/arm64.sh WORKDIR [CTEST_ARG...]
#
# Cross-builds the library, its Qt platform layer, kzbs and the suite for
# Linux on ARM64 and runs the suite under qemu-user, in a Debian 12 root with
# the arm64 architecture added (multiarch): the cross compiler, the :arm64
# development packages, the build machine's Qt tools and qemu-user. The host
# keeps its own architectures and packages. The root is made once with
# mmdebstrap and kept in WORKDIR/root (root-qt5 for Qt 5; delete it to start
# afresh); the build
# folder (/build/arm64) and ccache's cache stay in it between runs.
#
# ARM64_QT=5 builds on Qt 5 instead of Qt 6; JOBS sets the parallel jobs.
# Programs the tests start (kzbs, the bundle probe) run under qemu-user too,
# through a binfmt_misc of the run's own (see root.sh).
set -eu

here=$(cd "$(dirname "$0")" && pwd)
root_sh=$here/root.sh
. "$root_sh"

if [ $# -lt 1 ]; then
    echo "usage: $0 WORKDIR [CTEST_ARG...]" >&2
    exit 2
fi
root_need_root arm64 "$@"

qt=${ARM64_QT:-6}
mkdir -p "$1"
root=$(cd "$1" && pwd)/root
shift
[ "$qt" = 6 ] || root=$root-qt$qt
jobs=${JOBS:-$(nproc)}
cd "$here/.."

case "$qt" in
    6) qt_packages="qt6-base-dev:arm64 qt6-base-dev-tools" ;;
    5) qt_packages="qtbase5-dev:arm64 qtbase5-dev-tools" ;;
    *) echo "arm64: ARM64_QT is 5 or 6, not '$qt'" >&2; exit 2 ;;
esac
# Built on the host's architecture (tools, qemu) with arm64 beside it.
packages="cmake ninja-build ccache pkg-config python3 python3-icalendar qemu-user
          crossbuild-essential-arm64 libcli11-dev
          libgtest-dev:arm64 libgmock-dev:arm64 libssl-dev:arm64 libx11-dev:arm64 $qt_packages"
root_make "$root" bookworm --architectures="$(dpkg --print-architecture),arm64" \
    --include="$(echo $packages | tr ' ' ,)"

root_copy_tree "$root"
export ROOT_BINFMT=aarch64
root_enter "$root" '
    qt=$1 jobs=$2
    shift 2
    echo "Debian $(cat /etc/debian_version) arm64 leg: $(aarch64-linux-gnu-g++ --version | head -n1)," \
         "$(qemu-aarch64 --version | head -n1), Qt $qt" >&2
    cmake -S . -B /build/arm64 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake \
          -DKZBS_QT_VERSION="$qt" >&2
    nice -n 10 cmake --build /build/arm64 -j "$jobs" >&2
    # The install checks build consumers with pkg-config: the target'"'"'s files.
    export PKG_CONFIG_LIBDIR=/usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig
    ctest --test-dir /build/arm64 --output-on-failure -j "$jobs" "$@"' "$qt" "$jobs" "$@"
