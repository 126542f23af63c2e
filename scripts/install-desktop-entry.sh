#!/usr/bin/env bash
# Installs, for the current user only, the panel's desktop entry and icon (freedesktop.org
# conventions), so Kovix appears in the application menu and the task bar with its own icon.
# Usage: install-desktop-entry.sh TREE   (the folder holding the kovix executable)
# Remove with: rm ~/.local/share/applications/kovix.desktop \
#                 ~/.local/share/icons/hicolor/*/apps/kovix.png
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
tree="$(cd "$1" && pwd)"
data="${XDG_DATA_HOME:-$HOME/.local/share}"

for size in 16 24 32 48 64; do
    mkdir -p "$data/icons/hicolor/${size}x${size}/apps"
    cp "$here/res/icon_$size.png" "$data/icons/hicolor/${size}x${size}/apps/kovix.png"
done

# Exec takes the path quoted, as desktop entries ask for paths with blanks;
# inside quotes, backslash, quote, dollar and backquote are escaped (twice for the backslash).
quoted=$(printf '%s' "$tree/kovix" | sed -e 's/\\/\\\\\\\\/g' -e 's/["`$]/\\\\&/g')
mkdir -p "$data/applications"
entry="$data/applications/kovix.desktop"
cat >"$entry.tmp" <<ENTRY
[Desktop Entry]
Type=Application
Name=Kovix
GenericName=Local web server
GenericName[fr]=Serveur web local
Comment=Apache, MariaDB and PHP for web development on this computer
Comment[fr]=Apache, MariaDB et PHP pour développer des sites sur cet ordinateur
Exec="$quoted"
Path=$tree
Icon=kovix
Terminal=false
Categories=Development;WebDevelopment;
StartupWMClass=kovix
ENTRY
mv "$entry.tmp" "$entry"
command -v update-desktop-database >/dev/null && update-desktop-database -q "$data/applications" || true
echo "== Installed $entry and the kovix icon for $(id -un)"
