#!/bin/sh
# windows_libraries.sh [test]: puts into build/windows-libraries what Debian has no package of for the cross compiler:
# libpng, built from Debian's source package; the libraries that are headers only; with "test" GoogleTest as well.
set -eu
cd "$(dirname "$0")/.."
root=$PWD
prefix=$root/build/windows-libraries
work=$prefix/work
mkdir -p "$work"

# The files of an installed package whose headers and CMake files fit any compiler.
copy_headers() {
    # A package that is there for several architectures must be asked for by one.
    files=$(dpkg -L "$1" 2>/dev/null || dpkg -L "$1:$(dpkg --print-architecture)")
    for file in $(echo "$files" | grep -E '^/usr/(include|share/cmake)/'); do
        [ ! -f "$file" ] || install -D -m 644 "$file" "$prefix/${file#/usr/}"
    done
}

# apt-get that also knows the source packages, whatever the system's own lists say.
apt_source() {
    apt-get indextargets --format 'deb-src $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' \
        'Origin: Debian' | sort -u >"$work/sources.list"
    mkdir -p "$work/lists/partial"
    options="-qq -o Dir::Etc::SourceList=$work/sources.list -o Dir::Etc::SourceParts=- -o Dir::State::Lists=$work/lists
             -o APT::Sandbox::User=root"
    # shellcheck disable=SC2086  # a list of words
    "$@" $options
}

# The newest version that the archive really has: its lists may be ahead of it.
fetch_source() {
    apt_source apt-get update
    versions=$(apt_source apt-cache showsrc "$1" | sed -n 's/^Version: //p' | sort -rV)
    for version in $versions; do
        rm -rf "$work/$1" && mkdir "$work/$1"
        if (cd "$work/$1" && apt_source apt-get source "$1=$version") >"$work/$1.log" 2>&1; then
            echo "windows_libraries.sh: $1 $version"
            return
        fi
    done
    cat "$work/$1.log" >&2
    echo "windows_libraries.sh: the source of $1 could not be fetched; is there a network?" >&2
    exit 1
}

# build NAME SOURCE OPTION...
build() {
    name=$1 source=$2
    shift 2
    cmake -S "$source" -B "$work/build-$name" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_POLICY_DEFAULT_CMP0077=NEW \
        "$@" >"$work/$name.log" 2>&1 &&
        cmake --build "$work/build-$name" --target install >>"$work/$name.log" 2>&1 || {
        tail -30 "$work/$name.log" >&2
        echo "windows_libraries.sh: $name did not build" >&2
        exit 1
    }
}

copy_headers libcli11-dev
copy_headers nlohmann-json3-dev
copy_headers libxxhash-dev
if [ ! -f "$prefix/lib/libpng.a" ]; then
    fetch_source libpng1.6
    build libpng "$(echo "$work"/libpng1.6/libpng1.6-*)" -DPNG_SHARED=OFF -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF
fi
if [ "${1:-}" = test ] && [ ! -f "$prefix/lib/libgtest.a" ]; then
    build googletest /usr/src/googletest
fi
