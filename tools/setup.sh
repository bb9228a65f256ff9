#!/bin/sh
# setup.sh build [test]: installs the Debian packages that building, and testing, need. Does nothing when all are there.
set -eu

build="build-essential cmake ninja-build libcli11-dev nlohmann-json3-dev libpng-dev"
test="libgtest-dev libgmock-dev python3 python3-jsonschema clang-format nodejs node-acorn"

packages=""
for set in "$@"; do
    case $set in
        build) packages="$packages $build" ;;
        test) packages="$packages $test" ;;
        *) echo "setup.sh: unknown set '$set'; there are: build test" >&2; exit 2 ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    echo "setup.sh: this is no Debian; install what these Debian packages hold, then go on:$packages" >&2
    exit 0
fi
missing=""
for package in $packages; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

echo "setup.sh: installing$missing"
as_root=""
[ "$(id -u)" = 0 ] || as_root="sudo"
$as_root apt-get update -qq
# shellcheck disable=SC2086  # a list of words
DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null
