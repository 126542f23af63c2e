#!/usr/bin/env bash
# The desktop entry and icon land in the user's own folders, pass desktop-file-validate and start
# the panel of a tree whose path has blanks and accents.
set -euo pipefail
source_dir="$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree="$work/été kovix"
mkdir -p "$tree" "$work/home"
HOME="$work/home" XDG_DATA_HOME= bash "$source_dir/scripts/install-desktop-entry.sh" "$tree" >/dev/null
entry="$work/home/.local/share/applications/kovix.desktop"
desktop-file-validate "$entry"
for size in 16 24 32 48 64; do
    test -s "$work/home/.local/share/icons/hicolor/${size}x${size}/apps/kovix.png"
done
grep -qxF "Exec=\"$tree/kovix\"" "$entry"
grep -qx "Icon=kovix" "$entry"
echo "desktop entry ok"
