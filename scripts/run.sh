#!/usr/bin/env bash
# Sets Kovix up (packages, build, stack tree) and starts the panel from the tree.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_BUILD_DIR:-$here/build}"
"$here/scripts/setup.sh"

tree="$build/tree"
if [ ! -x "$tree/kovix" ]; then
    echo "The panel (kovix) is missing from $tree; use $tree/kovixctl." >&2
    exit 1
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display: the panel needs a desktop. Use the command line instead:"
    echo "  $tree/kovixctl status | start | stop | ...   (see README.md)"
    exit 0
fi
"$here/scripts/install-desktop-entry.sh" "$tree"
exec "$tree/kovix"
