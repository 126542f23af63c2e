#!/usr/bin/env bash
# Packs kovix-win64.zip from a mingw build: kovix.exe, kovixctl.exe and the Windows tree skeleton
# (templates with Windows names, www, empty logs and sessions folders) in one kovix folder. The
# Apache, PHP and MariaDB programs are not included: see "Kovix on Windows" in the README.
#   package-windows.sh BUILD_DIR [ZIP]      (ZIP defaults to BUILD_DIR/kovix-win64.zip)
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="$(cd "${1:?usage: package-windows.sh BUILD_DIR [ZIP]}" && pwd)"
zip_file="${2:-$build/kovix-win64.zip}"
stage="$build/package"

rm -rf "$stage" "$zip_file"
"$here/scripts/windows-tree.sh" "$stage/kovix"
for program in src/gui/kovix.exe src/cli/kovixctl.exe; do
    x86_64-w64-mingw32-strip -o "$stage/kovix/$(basename "$program")" "$build/$program"
done
(cd "$stage" && zip -q -r -X "$zip_file" kovix)
echo "package-windows: $zip_file ($(du -k "$zip_file" | cut -f1) KiB)"
