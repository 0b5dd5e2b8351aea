# Sourced by the install checks, with BUILD_DIR CONSUMER_DIR CXX as their
# arguments: installs the build into $prefix, a scratch folder under $work
# that is removed on exit, and leaves the consumer in $consumer and the
# compiler in $cxx. Nothing from the build tree's environment is used.
set -eu
build=$1 consumer=$2 cxx=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
unset LD_LIBRARY_PATH
cmake --install "$build" --prefix "$prefix" >/dev/null
