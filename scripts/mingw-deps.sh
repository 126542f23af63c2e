#!/usr/bin/env bash
# Builds the Windows libraries Kovix links with mingw-w64 from Debian's own source packages:
# libpng (libpng1.6), wxWidgets 3.2 as static wxMSW (wxwidgets3.2) and GoogleTest
# (/usr/src/googletest); zlib comes from libz-mingw-w64-dev and nlohmann-json is copied.
# Everything goes into a cache outside the clone, ~/.cache/kovix/mingw-<wx version>-r<recipe>,
# which is reused as long as it is complete. Prints the cache folder as its last line.
# Needs: g++-mingw-w64-x86-64-posix libz-mingw-w64-dev dpkg-dev, a deb-src entry (setup.sh).
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
recipe=1 # bump when the build options below change
triple=x86_64-w64-mingw32
wx_version="$(dpkg-query -W -f='${source:Version}' libwxbase3.2-1 2>/dev/null || true)"
[ -n "$wx_version" ] || { echo "mingw-deps: libwxbase3.2-1 is not installed" >&2; exit 1; }
cache_root="${KOVIX_CACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/kovix}"
prefix="$cache_root/mingw-${wx_version}-r$recipe"
jobs="${KOVIX_JOBS:-2}"

mkdir -p "$cache_root"
exec 9>"$cache_root/mingw.lock"
flock 9 # a second run waits for the first instead of building the same thing twice

if [ -e "$prefix/.complete" ]; then
    echo "$prefix"
    exit 0
fi

work="$cache_root/mingw-work"
log="$cache_root/mingw-build.log"
rm -rf "$prefix" "$work"
mkdir -p "$prefix" "$work"
echo "mingw-deps: building the Windows libraries into $prefix (log: $log)" >&2
: >"$log"

export CC="$triple-gcc-posix" CXX="$triple-g++-posix"
export CPPFLAGS="-I$prefix/include" LDFLAGS="-L$prefix/lib"
quiet() { nice -n 10 "$@" >>"$log" 2>&1 || { tail -n 40 "$log" >&2; exit 1; }; }

src=""
fetch() { # package version -> $src, the unpacked source folder
    (cd "$work" && quiet apt-get source -q "$1=$2")
    src="$(find "$work" -maxdepth 1 -mindepth 1 -type d -name "$1-*" | head -n 1)"
    [ -d "$src" ] || { echo "mingw-deps: apt-get source $1 gave no folder" >&2; exit 1; }
}

build_png() {
    local version
    version="$(apt-cache showsrc libpng1.6 | sed -n 's/^Version: //p' | sort -V | tail -n 1)"
    [ -n "$version" ] || { echo "mingw-deps: no deb-src entry for libpng1.6" >&2; exit 1; }
    echo "mingw-deps: libpng $version" >&2
    fetch libpng1.6 "$version"
    (cd "$src" && quiet ./configure --host=$triple --prefix="$prefix" --disable-shared \
        --enable-static && quiet make -j"$jobs" && quiet make install)
}

build_wx() {
    fetch wxwidgets3.2 "$wx_version"
    echo "mingw-deps: wxWidgets $wx_version (static wxMSW; the longest step)" >&2
    mkdir -p "$src/build-msw"
    (cd "$src/build-msw" && quiet ../configure --host=$triple --prefix="$prefix" \
        --disable-shared --with-msw --with-zlib=sys --with-libpng=sys --with-libjpeg=no \
        --with-libtiff=no --with-regex=builtin --without-expat --without-liblzma \
        --without-libcurl --without-opengl --disable-html --disable-xrc --disable-aui \
        --disable-stc --disable-richtext --disable-ribbon --disable-propgrid --disable-webview \
        --disable-mediactrl --disable-precomp-headers &&
        quiet make -j"$jobs" && quiet make install)
    # wx 3.2.2's install forgets a header that wx/msw/private.h includes.
    cp "$src/include/wx/msw/init.h" "$prefix/include/wx-3.2/wx/msw/init.h"
}

build_gtest() {
    echo "mingw-deps: GoogleTest" >&2
    quiet cmake -S /usr/src/googletest -B "$work/gtest" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_TOOLCHAIN_FILE="$here/cmake/mingw-w64-x86_64.cmake" \
        -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_GMOCK=OFF -Dgtest_disable_pthreads=OFF
    quiet cmake --build "$work/gtest" -j"$jobs"
    quiet cmake --install "$work/gtest"
}

copy_json() {
    mkdir -p "$prefix/include" "$prefix/share/cmake"
    cp -r /usr/include/nlohmann "$prefix/include/"
    cp -r /usr/share/cmake/nlohmann_json "$prefix/share/cmake/"
}

started=$SECONDS
copy_json
build_png
build_gtest
build_wx
rm -rf "$work"
date -u +%FT%TZ >"$prefix/.complete"
echo "mingw-deps: done in $((SECONDS - started)) s" >&2
echo "$prefix"
