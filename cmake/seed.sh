#!/usr/bin/env bash
# seed.sh SAMPLES BUILT: makes WINEPREFIX the sample machine: the programs that lie below BUILT as on drive C:, the
# start-up entries and default programs of the folder SAMPLES in both registry views, and what the program sample_entries beside BUILT
# puts into the Startup folders.
set -euo pipefail
samples=$1 built=$2
# At its start Wine would run the entries and delete those that run once.
export WINEDLLOVERRIDES="$WINEDLLOVERRIDES;wineboot.exe=d"
cp -R "$built"/. "$WINEPREFIX/drive_c/"

# import FILE [VIEW]
import() { wine reg import "$(winepath -w "$1" 2>/dev/null)" "${@:2}" </dev/null >/dev/null 2>&1; }

for entries in startup clients; do
  if [ -d "$WINEPREFIX/drive_c/windows/syswow64" ]; then
    import "$samples/$entries.reg" /reg:64
    import "$samples/$entries-32bit.reg" /reg:32
  else
    import "$samples/$entries.reg"
    import "$samples/$entries-32bit.reg"
  fi
done

wine "$built/../sample_entries.exe" </dev/null
