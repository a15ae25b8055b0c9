#!/usr/bin/env bash
# prefix.sh ARCH FOLDER: makes a Wine prefix (ARCH: win64 or win32) unless it exists. Prints only to stderr.
set -euo pipefail
arch=$1 folder=$2
mkdir -p "$(dirname "$folder")"
folder=$(cd "$(dirname "$folder")" && pwd)/$(basename "$folder")
exec 9>"$folder.lock"
flock 9
if [ -e "$folder/system.reg" ]; then exit 0; fi

echo "Making the $arch prefix $folder" >&2
new="$folder.new"
rm -rf "$new"
# An empty home: Wine links Desktop and Documents of a new prefix into the real one otherwise.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home WINEARCH=$arch WINEPREFIX=$new WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"
unset DISPLAY
wine wineboot -i </dev/null >/dev/null 2>&1
# No X server is needed from here on.
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f </dev/null >/dev/null 2>&1
wineserver -k || true
wineserver -w || true

# A prefix holds unstripped copies of Wine's own modules; links to the installed ones save a gigabyte.
for file in "$new"/drive_c/windows/{system32,syswow64}/*; do
  [ -f "$file" ] && [ ! -L "$file" ] || continue
  for original in /usr/lib/*/wine/*-windows/"${file##*/}"; do
    if cmp -s "$file" "$original"; then ln -sf "$original" "$file"; break; fi
  done
done
mv "$new" "$folder"
