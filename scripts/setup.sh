#!/usr/bin/env bash
# Installs the Debian packages Kovix needs (only those missing), builds it in Release and
# assembles the stack tree in build/tree. Safe to run again: it redoes only what is needed.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${KOVIX_BUILD_DIR:-$here/build}"

packages=(
    # build
    build-essential cmake pkg-config ccache libwxgtk3.2-dev nlohmann-json3-dev libgtest-dev
    clang libclang-rt-14-dev
    # the stack
    apache2 libapache2-mod-php8.2 php8.2-cli php8.2-mysql php8.2-sqlite3 php8.2-mbstring
    php8.2-xml php8.2-curl php8.2-gd php8.2-zip php8.2-intl php8.2-bcmath
    mariadb-server mariadb-client phpmyadmin sqlitebrowser
    # local HTTPS: the certificate authority, and adding it to the browsers' NSS databases
    mkcert libnss3-tools openssl
    # the portable folder (scripts/bundle.sh)
    patchelf zstd
    # running and testing the window without a desktop
    xvfb xauth x11-utils imagemagick fonts-dejavu-core shared-mime-info xdg-utils curl procps
    locales desktop-file-utils libx11-dev
    # the Windows build (mingw-w64, wxWidgets and libpng from Debian's sources) and Wine
    g++-mingw-w64-x86-64-posix mingw-w64-tools libz-mingw-w64-dev dpkg-dev wine wine64 zip
)

# Debian's source packages of wxWidgets and libpng feed the Windows build (scripts/mingw-deps.sh).
# The deb-src entry gets a file of its own; the system's sources list is never edited.
deb_src_file=/etc/apt/sources.list.d/kovix-deb-src.sources

missing_packages() {
    for package in "${packages[@]}"; do
        dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' ||
            echo "$package"
    done
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

add_deb_src() {
    apt-cache showsrc wxwidgets3.2 2>/dev/null | grep -q '^Package:' && return 0
    echo "== Adding the Debian source entry $deb_src_file"
    local suite
    suite="$(. /etc/os-release && echo "$VERSION_CODENAME")"
    printf '%s\n' 'Types: deb-src' 'URIs: http://deb.debian.org/debian' \
        "Suites: $suite $suite-updates" 'Components: main' \
        'Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg' | as_root tee "$deb_src_file" >/dev/null
    as_root apt-get update -q
}

install_missing() {
    local missing
    missing=$(missing_packages)
    [ -z "$missing" ] && return 0
    echo "== Installing:" $missing
    export DEBIAN_FRONTEND=noninteractive
    # phpMyAdmin's package must not ask questions nor configure a system web server.
    printf '%s\n' 'phpmyadmin phpmyadmin/dbconfig-install boolean false' \
        'phpmyadmin phpmyadmin/reconfigure-webserver multiselect' | as_root debconf-set-selections
    # Keep the system's own apache2 and mariadb services from starting: the tree runs its own.
    local policy=/usr/sbin/policy-rc.d created_policy=0
    if [ ! -e "$policy" ]; then
        printf '#!/bin/sh\nexit 101\n' | as_root tee "$policy" >/dev/null
        as_root chmod +x "$policy"
        created_policy=1
    fi
    as_root apt-get update -q
    # shellcheck disable=SC2086
    as_root apt-get install -y -q --no-install-recommends $missing </dev/null
    [ "$created_policy" = 1 ] && as_root rm -f "$policy"
    disable_system_services $missing
    return 0
}

# Debian enables the services of the servers it installs; at the next boot they would hold the
# ports the tree's own servers use. Only services of packages installed just now are disabled:
# a system Apache or MariaDB that was there before is left as it was.
disable_system_services() {
    local package service services=()
    for package in "$@"; do
        case "$package" in
        apache2) services+=(apache2) ;;
        mariadb-server) services+=(mariadb) ;;
        esac
    done
    [ "${#services[@]}" -eq 0 ] && return 0
    if [ ! -d /run/systemd/system ]; then
        return 0 # no systemd running: nothing starts these services
    fi
    for service in "${services[@]}"; do
        echo "== Disabling the system's $service service (Kovix runs its own server)"
        as_root systemctl disable --now "$service.service" || true
    done
}

# The tests start the servers under a French locale, which exists only once generated.
generate_locale() {
    locale -a 2>/dev/null | grep -qix 'fr_FR.utf8' && return 0
    echo "== Generating the fr_FR.UTF-8 locale"
    as_root localedef -i fr_FR -f UTF-8 fr_FR.UTF-8
}

build_project() {
    echo "== Building in $build"
    cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
    cmake --build "$build" -j2
}

assemble_tree() {
    if [ -x "$here/scripts/assemble-tree.sh" ]; then
        echo "== Assembling the stack tree in $build/tree"
        "$here/scripts/assemble-tree.sh" "$build/tree" "$build"
    fi
}

install_missing
generate_locale
add_deb_src
build_project
assemble_tree
