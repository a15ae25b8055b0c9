#!/usr/bin/env bash
# prefix.sh ARCH FOLDER [SCRIPT ARGS...]: makes a Wine prefix (ARCH: win64 or win32) unless FOLDER holds one.
# SCRIPT runs while the prefix is made, with WINEPREFIX set. Prints only to stderr.
#
# A prefix is made beside its folder and renamed at the end, so an interrupted run leaves none that is half
# made. Wine fills the first one of an architecture, which takes ten seconds; others are copies of it.
set -euo pipefail
arch=$1 folder=$(realpath -m "$2")
shift 2
made_by=$(wine --version)
# One of another Wine is made anew: an update would go through the links below into the installed files.
if [ -e "$folder/.made-by" ] && [ "$(cat "$folder/.made-by")" != "$made_by" ]; then rm -rf "$folder"; fi
if [ -e "$folder/system.reg" ]; then exit 0; fi

build=$(cd "$(dirname "$0")/.." && pwd)/build
pristine=$build/prefix-pristine-$arch
mkdir -p "$build" "$(dirname "$folder")"
# Every process below keeps the lock: an orphan of an interrupted run is waited for.
if [ "${PREFIX_LOCKED:-}" != "$folder" ]; then
  if [ -d "$folder" ] && [ -n "$(ls -A "$folder")" ]; then
    echo "$folder is not empty and not a Wine prefix" >&2
    exit 1
  fi
  exec env PREFIX_LOCKED="$folder" flock "$folder.lock" "$0" "$arch" "$folder" "$@"
fi

export WINEARCH=$arch WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe,winemenubuilder.exe=d"
unset DISPLAY

# Windows' own modules are copied into a prefix; links to the installed ones save a gigabyte.
link_modules() {
  local folder=$1 original
  for original in /usr/lib/*/wine/*-windows; do
    # "Files A and B are identical"
    LC_ALL=C diff -qs "$original" "$folder" 2>/dev/null |
      sed -n "s|^Files \(.*\) and .* are identical\$|\1|p" | xargs -r -d '\n' ln -sf -t "$folder" || true
  done
}

make_pristine() {
  local new=$pristine.new
  rm -rf "$new"
  export WINEPREFIX=$new
  wine wineboot -i </dev/null >/dev/null 2>&1
  # No X server is needed from here on.
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f </dev/null >/dev/null 2>&1
  stop_session
  # Wine links Desktop, Documents and the like into the real home.
  local link
  find "$new/drive_c/users" -mindepth 2 -type l | while read -r link; do
    rm "$link"
    mkdir "$link"
  done
  local modules
  for modules in "$new"/drive_c/windows/{system32,syswow64}; do
    if [ -d "$modules" ]; then link_modules "$modules"; fi
  done
  echo disable >"$new/.update-timestamp"
  echo "$made_by" >"$new/.made-by"
  mv "$new" "$pristine"
}

stop_session() {
  wineserver -k || true
  wineserver -w || true
}

if [ "$folder" != "$pristine" ]; then
  "$0" "$arch" "$pristine"
  echo "Making the $arch prefix $folder" >&2
  new=$folder.new
  rm -rf "$new"
  cp -a "$pristine" "$new"
  export WINEPREFIX=$new
  if [ $# -gt 0 ]; then
    "$@" >&2
    stop_session
  fi
  if [ -d "$folder" ]; then rmdir "$folder"; fi
  mv "$new" "$folder"
else
  echo "Letting Wine fill a $arch prefix" >&2
  make_pristine
fi
rm -f "$folder.lock"
