#!/usr/bin/env bash
# Runs a Windows program under Wine:  wine-run.sh PREFIX PROGRAM [ARGS...]
# CTest uses it as the cross-compiling emulator. PREFIX is a Wine prefix of the build's own,
# created on first use (about 30 s) without Mono and Gecko. Its graphics driver is Wine's null
# driver, so that console programs never wait for a display (wxExecute and sockets hang without
# one); KOVIX_WINE_GRAPHICS=x11 when the prefix is created keeps the X11 driver for windows.
set -euo pipefail
prefix="$1"
shift
export WINEPREFIX="$prefix" WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES="mscoree,mshtml="

if [ ! -e "$prefix/.kovix-ready" ]; then
    mkdir -p "$(dirname "$prefix")"
    exec 9>"$prefix.lock"
    flock 9
    if [ ! -e "$prefix/.kovix-ready" ]; then
        rm -rf "$prefix"
        wineboot --init >/dev/null 2>&1
        graphics="${KOVIX_WINE_GRAPHICS:-null}"
        if [ "$graphics" = null ]; then
            wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null 2>&1
        fi
        wineserver -w
        echo "$graphics" >"$prefix/.kovix-ready"
    fi
    exec 9>&-
fi
exec wine "$@"
