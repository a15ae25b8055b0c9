#!/usr/bin/env bash
# run-in-prefix.sh ARCH PROGRAM ARGS...: runs a test program in the test prefix of ARCH (win64 or win32).
set -euo pipefail
arch=$1 program=$2
shift 2
root=${SMH_TEST_PREFIXES:-$(cd "$(dirname "$0")/.." && pwd)/build}
export WINEPREFIX=$root/test-$arch WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe,winemenubuilder.exe=d"
unset DISPLAY
"$(dirname "$0")/prefix.sh" "$arch" "$WINEPREFIX"
exec wine "$program" "$@"
