#!/usr/bin/env bash
# Sets Kovix up (packages, build, stack tree) and runs every test through CTest. Window tests
# run on a virtual X server when there is no display. Then the Windows build is tested under Wine
# (scripts/test-windows.sh), and the fuzz targets get a short run in
# their own clang build ($build/fuzz), whose core is instrumented for libFuzzer.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_BUILD_DIR:-$here/build}"
"$here/scripts/setup.sh"

cd "$build"
run_ctest=(ctest --output-on-failure --timeout 900 "$@")
if [ -z "${DISPLAY:-}" ]; then
    xvfb-run -a -s "-screen 0 1280x1024x24" "${run_ctest[@]}"
else
    "${run_ctest[@]}"
fi

# The Windows build: cross-built with mingw-w64, tested under Wine (the first run also builds
# the cached Windows libraries).
"$here/scripts/test-windows.sh"

fuzz_build="$build/fuzz"
echo "== Fuzz targets in $fuzz_build"
CC=clang CXX=clang++ cmake -S "$here" -B "$fuzz_build" -DCMAKE_BUILD_TYPE=Release -DKOVIX_FUZZ=ON \
    >/dev/null
cmake --build "$fuzz_build" -j2 --target fuzz_targets
cd "$fuzz_build"
ctest --output-on-failure -L fuzz
