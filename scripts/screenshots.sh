#!/usr/bin/env bash
#
# Takes the screenshots of the panel under Xvfb:
#
#   screenshots.sh [OUT_DIR]
#
# The window test ScreenshotTest opens the real panel against a real tree (assembled by
# scripts/assemble-tree.sh like build/tree, copied into a temporary folder with free ports),
# starts Apache and MariaDB, puts some page load on them and writes, in English (en) and French
# (fr): main-LANG-stopped.png, main-LANG-running.png, stats-LANG.png and prefs-LANG.png. Every
# server it starts is stopped again. ConfigDialogScreenshotTest adds the Apache and PHP
# configuration dialogs in English, both pages each: apache-hosts-en.png, apache-modules-en.png,
# php-extensions-en.png and php-settings-en.png, and the sites dialog: sites-en.png. Without
# OUT_DIR the pictures go to docs/screenshots/, and the English running main window, the Apache
# dialog's virtual-host page and the sites dialog are copied to docs/screenshot-main.png,
# docs/apache-dialog.png and docs/sites-dialog.png for the README. The tool window tests add the
# log viewer, the Databases and the Mail windows: log-viewer-en.png, databases-en.png, mail-en.png
# (copied to docs/ too).
#
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_BUILD_DIR:-$here/build}"
out="${1:-$here/docs/screenshots}"

for program in xvfb-run import curl; do
    command -v "$program" >/dev/null ||
        { echo "screenshots: $program is missing; run scripts/setup.sh first" >&2; exit 1; }
done

cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" -j2 --target gui_tests
mkdir -p "$out"
out="$(cd "$out" && pwd)"

KOVIX_SCREENSHOTS_DIR="$out" xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/tests/gui_tests" --gtest_filter='ScreenshotTest.*:ConfigDialogScreenshotTest.*:ToolWindows.*'

if [ -z "${1:-}" ]; then
    cp "$out/main-en-running.png" "$here/docs/screenshot-main.png"
    cp "$out/apache-hosts-en.png" "$here/docs/apache-dialog.png"
    cp "$out/sites-en.png" "$here/docs/sites-dialog.png"
    for tool in log-viewer databases mail; do
        cp "$out/$tool-en.png" "$here/docs/$tool-window.png"
    done
fi
echo "Screenshots in $out"
