#!/bin/sh
# setup.sh SET...: installs the Debian packages that a set of tasks needs. Does nothing when all are there.
set -eu

build="build-essential cmake ninja-build libcli11-dev nlohmann-json3-dev libpng-dev libopenexr-dev libtiff-dev libxxhash-dev"
[ "$(uname -m)" != x86_64 ] || build="$build libisal-dev"
test="libgtest-dev libgmock-dev python3 python3-jsonschema clang-format nodejs node-acorn"
sanitize="clang-14 libclang-rt-14-dev"
arm64="g++-aarch64-linux-gnu qemu-user libstdc++6:arm64 libpng-dev:arm64 libtiff-dev:arm64
    libopenexr-3-1-30:arm64 libgtest-dev:arm64 libgmock-dev:arm64"
macos="lld-14 llvm-14 python3"
command -v npm >/dev/null || macos="$macos npm"
farm="slurmctld slurmd slurm-client munge python3 python3-yaml"
windows="g++-mingw-w64-x86-64-posix libz-mingw-w64-dev dpkg-dev"
wine="wine wine64 googletest"

sets="build test sanitize arm64 macos farm windows wine"

packages=""
for set in "$@"; do
    case " $sets " in
        *" $set "*) eval "packages=\"\$packages \$$set\"" ;;
        *) echo "setup.sh: unknown set '$set'; there are: $sets" >&2; exit 2 ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    echo "setup.sh: this is no Debian; install what these Debian packages hold, then go on:$packages" >&2
    exit 0
fi
native=$(dpkg --print-architecture)
missing=""
for package in $packages; do
    case $package in *:*) architecture=${package#*:} ;; *) architecture=$native ;; esac
    dpkg-query -W -f '${Architecture} ${Status}\n' "${package%:*}" 2>/dev/null |
        grep -qE "^($architecture|all) install ok installed" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

echo "setup.sh: installing$missing"
as_root=""
[ "$(id -u)" = 0 ] || as_root="sudo"
case $missing in *:arm64*) $as_root dpkg --add-architecture arm64 ;; esac
$as_root apt-get update -qq
# shellcheck disable=SC2086  # a list of words
DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq --no-install-recommends $missing >/dev/null
