#!/usr/bin/env bash
# Runs the real kovix.exe under Wine on a virtual display against the Windows tree skeleton, in
# English and in French: waits for its main window, takes its picture (windows-kovix-LANG.png in
# SHOTS_DIR), asks it to close as Windows does (WM_CLOSE, through taskkill without /f) and checks
# that it ended by itself and wrote kovix.ini on the way out.
#   windows-panel.sh BUILD_DIR [SHOTS_DIR]      (BUILD_DIR: the mingw build)
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$(cd "${1:?usage: windows-panel.sh BUILD_DIR [SHOTS_DIR]}" && pwd)"
shots="${2:-$build/screenshots}"
if [ -z "${DISPLAY:-}" ]; then
    exec xvfb-run -a -s "-screen 0 1280x1024x24" "$0" "$build" "$shots"
fi

prefix="$build/wine-x11"
tree="$build/kovix-exe-tree"
export KOVIX_WINE_GRAPHICS=x11
fail() {
    echo "windows-panel: $*" >&2
    exit 1
}
stop_prefix() { WINEPREFIX="$prefix" wineserver -k 2>/dev/null || true; }
trap stop_prefix EXIT

rm -rf "$tree"
"$here/scripts/windows-tree.sh" "$tree"
cp "$build/src/gui/kovix.exe" "$tree/"
mkdir -p "$shots"

window_shown() { xwininfo -root -tree 2>/dev/null | grep -q '"Kovix": ("kovix.exe"'; }

for language in en fr; do
    printf 'CURRENT_LANG = "%s"\nSTART_ON_START = "0"\n\n' "$language" >"$tree/kovix.ini"
    "$here/scripts/wine-run.sh" "$prefix" "$tree/kovix.exe" &
    wine_pid=$!
    for _ in $(seq 600); do window_shown && break; sleep 0.1; done
    window_shown || fail "no main window of kovix.exe ($language) within 60 s"
    sleep 2 # the first paint
    geometry=$(xwininfo -name Kovix | awk '/Absolute upper-left X/ {x=$4} /Absolute upper-left Y/ {y=$4}
        /Width:/ {w=$2} /Height:/ {h=$2} END {printf "%dx%d+%d+%d", w, h, x, y}')
    import -window root -crop "$geometry" +repage "$shots/windows-kovix-$language.png"
    WINEPREFIX="$prefix" WINEDEBUG=-all wine taskkill /im kovix.exe >/dev/null 2>&1 || true
    for _ in $(seq 300); do kill -0 "$wine_pid" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$wine_pid" 2>/dev/null && fail "kovix.exe ($language) did not close within 30 s"
    wait "$wine_pid" || fail "kovix.exe ($language) ended with an error"
    grep -q '^APACHE_PORT = "' "$tree/kovix.ini" || fail "kovix.exe ($language) did not save kovix.ini"
    echo "windows-panel: kovix.exe ($language) showed its window ($geometry) and closed"
done
