#!/usr/bin/env bash
# Runs the real kovix.exe under Wine on a virtual display against the Windows tree skeleton, in
# English and in French: waits for its main window, takes its picture (windows-kovix-LANG.png in
# SHOTS_DIR) and ends it (taskkill /f). Under Wine a WM_CLOSE from taskkill does not reach the
# window (its tray icon keeps the program), so the orderly close is the window test's business.
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

window_shown() { xwininfo -root -tree 2>/dev/null | grep -q '"Kovix[^"]*": ("kovix.exe"'; }

for language in en fr; do
    printf 'CURRENT_LANG = "%s"\nSTART_ON_START = "0"\n\n' "$language" >"$tree/kovix.ini"
    "$here/scripts/wine-run.sh" "$prefix" "$tree/kovix.exe" &
    wine_pid=$!
    for _ in $(seq 600); do window_shown && break; sleep 0.1; done
    window_shown || fail "no main window of kovix.exe ($language) within 60 s"
    sleep 8 # the first paint is slow under Wine
    # The largest X window named Kovix is the main window (Wine also makes small helper ones).
    window=$(xwininfo -root -tree | grep '"Kovix[^"]*": ("kovix.exe"' |
        sed -E 's/^ *(0x[0-9a-f]+) .* ([0-9]+)x([0-9]+)\+.*/\2 \3 \1/' | sort -n -k1,1 -k2,2 | tail -n 1 |
        cut -d' ' -f3)
    geometry=$(xwininfo -id "$window" | awk '/Absolute upper-left X/ {x=$4} /Absolute upper-left Y/ {y=$4}
        /Width:/ {w=$2} /Height:/ {h=$2} END {printf "%dx%d+%d+%d", w, h, x, y}')
    import -window root -crop "$geometry" +repage "$shots/windows-kovix-$language.png"
    WINEPREFIX="$prefix" WINEDEBUG=-all wine taskkill /f /im kovix.exe >/dev/null 2>&1 || true
    for _ in $(seq 300); do kill -0 "$wine_pid" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$wine_pid" 2>/dev/null && fail "kovix.exe ($language) did not close within 30 s"
    wait "$wine_pid" || true
    echo "windows-panel: kovix.exe ($language) showed its main window ($geometry)"
done
