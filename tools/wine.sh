#!/bin/sh
# wine.sh PROGRAM ARGUMENT...: runs a Windows program, with a Windows folder of this working copy's own in build/wine.
here=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$here/build/wine"
export WINEPREFIX="$here/build/wine" WINEARCH=win64 WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="mscoree=;mshtml="  # no browser, no .NET: Wine would ask for them
# The first program starts Wine's services, which outlive it by seconds: they must not hold on to this one's output.
wine cmd /c exit </dev/null >/dev/null 2>&1
exec wine "$@"
