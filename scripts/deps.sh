#!/bin/sh
# Installs the Debian packages the build, tests and benchmarks need, when any
# is missing. Runs apt-get as root (or through sudo), never interactively.
set -eu
packages="cmake ninja-build g++ pkg-config make qtbase5-dev libx11-dev libgtest-dev libgmock-dev libbenchmark-dev libssl-dev"

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
