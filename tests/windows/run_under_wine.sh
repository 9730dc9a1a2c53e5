#!/bin/sh
# Runs a Windows program under wine with settings of its own, kept beside the program unless WINEPREFIX is set: no
# question is asked, no window opened, no debugger started, and the user's own wine stays as it is. What the programs of
# a folder share is made once, before the first of them starts.
#
#   run_under_wine.sh PROGRAM [ARGUMENT...]
folder=$(cd "$(dirname "$1")" && pwd) || exit 1
export WINEPREFIX="${WINEPREFIX:-$folder/wine}"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml,winedbg.exe=}"
unset DISPLAY WAYLAND_DISPLAY

mkdir -p "$WINEPREFIX"
(
    flock 9
    if [ ! -e "$WINEPREFIX/is_made" ]; then
        wine wineboot --init >/dev/null 2>&1 9>&-
        wineserver -w 9>&-
        touch "$WINEPREFIX/is_made"
    fi
) 9>"$WINEPREFIX.lock"
exec wine "$@"
