#!/usr/bin/env bash
# run-on-display.sh ARCH PROGRAM ARGS...: runs a test program on a screen of its own, in the display prefix of ARCH
# (win64 or win32), or, for sample-win64 and sample-win32, in a prefix that is made the sample machine anew. Wine lacks
# a program that Windows has in its system folders: the starter of the registry editor. The one in stand_ins beside
# PROGRAM is put there.
set -euo pipefail
arch=${1#sample-} program=$2
here=$(cd "$(dirname "$0")" && pwd)
root=${SMH_TEST_PREFIXES:-$here/../build}
is_sample=$([ "$arch" = "$1" ] || echo yes)
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
export WINEPREFIX=$root/display-$1

if [ -z "${SMH_ON_DISPLAY:-}" ]; then
  if [ -n "$is_sample" ]; then
    rm -rf "$WINEPREFIX"
    built=$(dirname "$program")/../samples/drive_c
    "$here/prefix.sh" "$arch" "$WINEPREFIX" bash -c '"$0/display-seed.sh" 1600x1200 && "$0/seed.sh" "$0/../samples" "$1"' \
      "$here" "$built"
  else
    "$here/prefix.sh" "$arch" "$WINEPREFIX" "$here/display-seed.sh" 1024x768
  fi
  # Two runs that begin at once must not look for a free screen number in the same place.
  exec env SMH_ON_DISPLAY=1 xvfb-run -a -n $((100 + $$ % 800)) \
    -s "-screen 0 $([ -n "$is_sample" ] && echo 1600x1200 || echo 1024x768)x24 -nolisten tcp" "$0" "$@"
fi
shift 2

end_session() {
  wineserver -k || true
  wineserver -w || true
}
# A session that began without this screen cannot use it.
end_session
trap end_session EXIT
for folder in "$WINEPREFIX"/drive_c/windows/{system32,syswow64}; do
  if [ -d "$folder" ]; then cp "$(dirname "$program")/stand_ins/regedt32.exe" "$folder"; fi
done
# The services that the first process starts must not hold a pipe of ours. The start of a session would run the
# entries of the sample machine.
if [ -n "$is_sample" ]; then export WINEDLLOVERRIDES="$WINEDLLOVERRIDES;wineboot.exe=d"; fi
wineserver -p >/dev/null 2>&1
wine wineboot </dev/null >/dev/null 2>&1 || true
wine "$program" "$@"
