#!/bin/sh
# Installs the Debian packages a make target needs, when any is missing.
# Runs apt-get as root (or through sudo), never interactively.
#
#   scripts/deps.sh [bench] [fuzz] [package] [tidy] [debian13] [arm64] [windows]
#
# Without arguments: what building and testing need (both Qt versions, the
# test tools). Each named group adds what its make target needs on top;
# debian13 is what makes the Debian 13 root of make test-debian13, arm64 the
# Debian 12 root of make test-arm64 (its cross tools and qemu-user live there);
# windows cross-builds for Windows x64 and runs the suite under Wine.
set -eu

build="cmake ninja-build g++ pkg-config make ccache
       qt6-base-dev qtbase5-dev libx11-dev
       libgtest-dev libgmock-dev libssl-dev libcli11-dev
       python3 python3-icalendar abigail-tools"
bench="libbenchmark-dev libre2-dev libpcre2-dev ripgrep hyperfine"
fuzz="clang libclang-rt-14-dev"
tidy="clang-tidy-14 clang-format-14"   # Debian 12's, as .clang-format and .clang-tidy expect
package="build-essential debhelper dpkg-dev fakeroot lintian"
debian13="mmdebstrap debian-archive-keyring"
arm64="mmdebstrap debian-archive-keyring"
windows="g++-mingw-w64-x86-64-posix wine64 googletest"

packages="$build"
for group in "$@"; do
    case "$group" in
        bench)   packages="$packages $bench" ;;
        fuzz)    packages="$packages $fuzz" ;;
        package) packages="$packages $package" ;;
        tidy)    packages="$packages $tidy" ;;
        debian13) packages="$packages $debian13" ;;
        arm64)   packages="$packages $arm64" ;;
        windows) packages="$packages $windows" ;;
        *) echo "deps: unknown group '$group' (bench, fuzz, package, tidy, debian13, arm64, windows)" >&2; exit 2 ;;
    esac
done

missing=""
for p in $packages; do
    dpkg-query -W -f='${Status}\n' "$p" 2>/dev/null | grep -q '^install ok installed$' || missing="$missing $p"
done
[ -z "$missing" ] && exit 0

echo "installing:$missing" >&2
if [ "$(id -u)" = 0 ]; then sudo=""; elif command -v sudo >/dev/null; then sudo="sudo -n"; else
    echo "deps: missing packages:$missing (run as root, or install them yourself)" >&2
    exit 1
fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq >&2
$sudo apt-get install -y -qq --no-install-recommends $missing >&2
