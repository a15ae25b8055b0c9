#!/usr/bin/env bash
# display-seed.sh SIZE: gives the Wine prefix WINEPREFIX a screen: the driver of X servers, and a desktop of its own there,
# so that no window manager is needed.
set -euo pipefail
add() { wine reg add "HKCU\\Software\\Wine\\$1" /v "$2" /d "$3" /f </dev/null >/dev/null 2>&1; }
wine reg delete 'HKCU\Software\Wine\Drivers' /v Graphics /f </dev/null >/dev/null 2>&1
add Explorer Desktop Default
add 'Explorer\Desktops' Default "$1"
