#!/usr/bin/env bash
# Runs the real kovix.exe under Wine on a virtual display against the Windows tree skeleton, in
# English and in French: waits for its main window, takes its picture (windows-kovix-LANG.png in
# SHOTS_DIR) and closes it as a user would, then checks that the program ended by itself with
# status 0 and saved its settings on the way out. English is closed by its close box (the test
# child posts the system menu's Close to the window), French by a plain taskkill, which sends
# WM_CLOSE to every top-level window of the program, hidden ones included.
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
child="$build/tests/windows/windows_child.exe"
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

close_by_box() { "$here/scripts/wine-run.sh" "$prefix" "$child" close "$1"; }
close_by_taskkill() { WINEPREFIX="$prefix" WINEDEBUG=-all wine taskkill /im kovix.exe >/dev/null 2>&1; }

for language in en fr; do
    printf 'CURRENT_LANG = "%s"\nSTART_ON_START = "0"\n\n' "$language" >"$tree/kovix.ini"
    "$here/scripts/wine-run.sh" "$prefix" "$tree/kovix.exe" &
    wine_pid=$!
    for _ in $(seq 600); do window_shown && break; sleep 0.1; done
    window_shown || fail "no main window of kovix.exe ($language) within 60 s"
    sleep 8 # the first paint is slow under Wine
    # The largest X window named Kovix is the main window (Wine also makes small helper ones).
    read -r window title < <(xwininfo -root -tree | grep '"Kovix[^"]*": ("kovix.exe"' |
        sed -E 's/^ *(0x[0-9a-f]+) "([^"]*)".* ([0-9]+)x([0-9]+)\+.*/\3 \4 \1 \2/' |
        sort -n -k1,1 -k2,2 | tail -n 1 | cut -d' ' -f3-)
    geometry=$(xwininfo -id "$window" | awk '/Absolute upper-left X/ {x=$4} /Absolute upper-left Y/ {y=$4}
        /Width:/ {w=$2} /Height:/ {h=$2} END {printf "%dx%d+%d+%d", w, h, x, y}')
    import -window root -crop "$geometry" +repage "$shots/windows-kovix-$language.png"

    if [ "$language" = en ]; then
        how="its close box"
        close_by_box "$title" || fail "no window \"$title\" to close"
    else
        how="taskkill"
        close_by_taskkill || fail "taskkill found no kovix.exe"
    fi
    for _ in $(seq 300); do kill -0 "$wine_pid" 2>/dev/null || break; sleep 0.1; done
    kill -0 "$wine_pid" 2>/dev/null && fail "kovix.exe ($language) still runs 30 s after $how"
    status=0
    wait "$wine_pid" || status=$?
    [ "$status" = 0 ] || fail "kovix.exe ($language) ended with status $status after $how"
    grep -q '^PHP_CURRENT_VERSION = ' "$tree/kovix.ini" ||
        fail "kovix.exe ($language) did not save its settings on closing"
    echo "windows-panel: kovix.exe ($language) showed \"$title\" ($geometry) and closed by $how"
done
