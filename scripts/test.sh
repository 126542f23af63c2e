#!/usr/bin/env bash
# Sets Kovix up (packages, build, stack tree) and runs every test through CTest. Window tests
# run on a virtual X server when there is no display.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_BUILD_DIR:-$here/build}"
"$here/scripts/setup.sh"

cd "$build"
run_ctest=(ctest --output-on-failure --timeout 900 "$@")
if [ -z "${DISPLAY:-}" ]; then
    exec xvfb-run -a -s "-screen 0 1280x1024x24" "${run_ctest[@]}"
fi
exec "${run_ctest[@]}"
