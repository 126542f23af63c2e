#!/usr/bin/env bash
# Sets Kovix up (packages, build, stack tree) and starts the panel from the tree.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_BUILD_DIR:-$here/build}"
"$here/scripts/setup.sh"

tree="$build/tree"
if [ ! -x "$tree/kovix" ]; then
    echo "Built. The panel's window is not part of this build yet; use $tree/kovixctl."
    exit 0
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display: the panel needs a desktop. Use the command line instead:"
    echo "  $tree/kovixctl status | start | stop | ...   (see README.md)"
    exit 0
fi
exec "$tree/kovix"
