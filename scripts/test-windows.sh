#!/usr/bin/env bash
# The Windows part of the tests: cross-builds kovix.exe and kovixctl.exe with mingw-w64 against
# the libraries of scripts/mingw-deps.sh (built once, then cached), runs the Windows tests under
# Wine through CTest (label "windows"), shows the panel under Wine and packs kovix-win64.zip.
# Fails, saying why, when the cross tools or Wine are missing; it never skips.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_WINDOWS_BUILD_DIR:-$here/build-mingw}"
started=$SECONDS

missing=""
for tool in x86_64-w64-mingw32-g++-posix wine wineserver xvfb-run zip; do
    command -v "$tool" >/dev/null || missing="$missing $tool"
done
[ -e /usr/x86_64-w64-mingw32/lib/libz.a ] || missing="$missing libz-mingw-w64-dev"
if [ -n "$missing" ]; then
    echo "Windows part: missing$missing; scripts/setup.sh installs them" >&2
    exit 1
fi

prefix="$("$here/scripts/mingw-deps.sh" | tail -n 1)"
echo "== Windows build in $build (libraries: $prefix)"
cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$here/cmake/mingw-w64-x86_64.cmake" -DKOVIX_MINGW_PREFIX="$prefix" \
    -DCMAKE_CROSSCOMPILING_EMULATOR="$here/scripts/wine-run.sh;$build/wine" >/dev/null
cmake --build "$build" -j2

echo "== Windows tests under Wine"
run_ctest=(ctest --output-on-failure --timeout 300 -L windows)
if [ -z "${DISPLAY:-}" ]; then
    (cd "$build" && xvfb-run -a -s "-screen 0 1280x1024x24" "${run_ctest[@]}")
else
    (cd "$build" && "${run_ctest[@]}")
fi

echo "== The panel under Wine"
"$here/scripts/windows-panel.sh" "$build" "$build/screenshots"

echo "== Windows package"
"$here/scripts/package-windows.sh" "$build"
echo "== Windows part done in $((SECONDS - started)) s"
