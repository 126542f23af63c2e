#!/usr/bin/env bash
#
# The portable folder on a machine without the stack: the archive of scripts/bundle.sh is
# unpacked by an ordinary account into a folder with an accent and a blank, inside a mount
# namespace where every file of the stack's Debian packages (and of wxWidgets and mkcert) is
# hidden behind an empty file. There the servers start, serve phpinfo with the folder's php.ini,
# answer over HTTPS with a certificate of the folder's mkcert, take a MariaDB connection, let
# phpMyAdmin sign in, back a database up with the folder's client, map no library from outside
# the folder but glibc, and leave nothing behind when stopped; moved to a second folder, the
# folder keeps its databases.
#
#   bundle_test.sh SOURCE_DIR BINARY_DIR KOVIX KOVIXCTL
#
# The bundle is built once into BINARY_DIR/bundle and rebuilt only when its inputs change.
# Needs root (for the namespace); exits 77 (skipped) otherwise.
#
set -uo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/../support/stack_checks.sh"

readonly HIDDEN_PACKAGES='^(apache2.*|libapache2-mod-php8\.2|php8\.2-.*|php-.*|mariadb-.*|mysql-common|phpmyadmin|mkcert|libwxbase3\.2-1|libwxgtk3\.2-1|media-types)$'

# ---- outside the namespace: the bundle, the archive, then the run inside -----------------------

bundle_is_stale() {
    local stamp=$1
    shift
    [[ ! -e $stamp ]] || [[ -n $(find "$@" -newer "$stamp" -print -quit) ]]
}

# The bundle of the build's tree (assembled here when the build has none), made again only when
# the scripts, the templates or the programs are newer than the last one.
build_bundle() {
    local tree="$binary_dir/tree"
    if [[ ! -e $tree/apache/conf/httpd_initial.conf ]]; then
        tree="$binary_dir/bundle-tree"
        "$source_dir/scripts/assemble-tree.sh" "$tree" >/dev/null || return 1
    fi
    local stamp="$binary_dir/bundle/.made"
    if bundle_is_stale "$stamp" "$source_dir/scripts" "$source_dir/stack" "$tree/apache/conf" \
        "$kovix" "$kovixctl"; then
        "$source_dir/scripts/bundle.sh" --archive "$binary_dir/bundle/kovix" "$tree" "$kovix" \
            "$kovixctl" >"$work/bundle.out" 2>&1 || {
            cat "$work/bundle.out" >&2
            return 1
        }
        touch "$stamp"
    fi
    archive=$(find "$binary_dir/bundle" -maxdepth 1 -name 'kovix-linux-x86_64.tar.*' -print -quit)
    [[ -n $archive ]]
}

outside() {
    source_dir=$1 binary_dir=$2 kovix=$3 kovixctl=$4
    [[ $(id -u) -eq 0 ]] || {
        echo 'bundle test: needs root for its mount namespace; skipped'
        exit 77
    }
    work=$(mktemp -d)
    chmod 755 "$work"
    trap 'stop_leftovers; rm -rf "$work"' EXIT
    failures=0
    build_bundle || {
        echo 'FAIL: the bundle could not be made' >&2
        exit 1
    }
    unshare --mount --propagation private "${BASH_SOURCE[0]}" --inside "$work" "$archive" \
        "$(free_port)" "$(free_port)" "$(free_port)"
    local status=$?
    stop_leftovers
    exit "$status"
}

# ---- inside the namespace ---------------------------------------------------------------------

hide_packages() {
    local empty="$work/empty" file count=0
    : >"$empty"
    chmod 644 "$empty"
    while IFS= read -r file; do
        [[ -f $file && ! -L $file ]] || continue
        mount --bind "$empty" "$file" && count=$((count + 1))
    done < <(dpkg-query -W -f='${Package}\n' | grep -E "$HIDDEN_PACKAGES" | xargs dpkg -L | sort -u)
    ((count > 1000)) || fail "only $count files hidden"
    check 'Apache of the system is hidden' test ! -s /usr/sbin/apache2
}

# Runs a command as nobody in FOLDER, with a bare environment. The servers of other trees on
# this machine do not count (the scope is the work folder, whose name is plain ASCII).
as_user_in() {
    local folder=$1
    shift
    (cd "$folder" && setpriv --reuid=nobody --regid=nogroup --clear-groups \
        env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME=/nonexistent KOVIX_PROCESS_SCOPE="$work" "$@")
}

as_user() { as_user_in "$bundle" "$@"; }

# The client program runs by its own run path, without LD_LIBRARY_PATH.
sql() {
    as_user ./mysql/bin/mysql --defaults-file="$bundle/mysql/my.ini" -u root -N -B -e "$1"
}

server_pids() {
    cat "$bundle/apache/logs/httpd.pid" "$bundle/mysql/data/mysqld.pid" 2>/dev/null
}

# Libraries mapped by the servers: the folder's own, or glibc's.
check_mapped_libraries() {
    local pid foreign
    local -a pids
    local tries
    for ((tries = 0; tries < 50; tries++)); do
        mapfile -t pids < <(server_pids)
        ((${#pids[@]} == 2)) && break
        sleep 0.1
    done
    check "both servers wrote their pid files (${pids[*]})" test "${#pids[@]}" -eq 2
    for pid in "${pids[@]}"; do
        foreign=$(awk '$6 ~ /\.so/ { print $6 }' "/proc/$pid/maps" | sort -u |
            grep -v -F "$bundle/" | grep -v -E '/(ld-linux-x86-64|libc|libm|libpthread|libdl|librt|libresolv|libnss_[a-z]+)\.so')
        [[ -z $foreign ]] || fail "server $pid maps libraries from outside: $foreign"
    done
}

check_phpinfo() {
    check 'phpinfo answers 200' test "$(http_code "$site/kovix/phpinfo.php")" = 200
    check "phpinfo reads $bundle/apache/php.ini" grep -q -F "$bundle/apache/php.ini" "$work/page"
    check 'phpinfo shows mysqli' grep -q 'mysqli.default_socket' "$work/page"
    local errors
    errors=$(grep -h -i -E 'unable to load|undefined symbol|cannot open shared' \
        "$bundle/apache/logs/error.log" "$bundle/apache/logs/php_error.log" 2>/dev/null)
    [[ -z $errors ]] || fail "PHP start-up errors: $errors"
}

start_servers() {
    as_user ./kovixctl start >"$work/start.out" 2>&1 || {
        fail "kovixctl start in $bundle: $(cat "$work/start.out")"
        tail -n 20 "$bundle/apache/logs/error.log" "$bundle/mysql/data/mysql.err" >&2
        return 1
    }
}

# Live processes whose program lies in the folder, with their command lines.
folder_processes() {
    local proc
    for proc in /proc/[0-9]*; do
        [[ $(readlink "$proc/exe" 2>/dev/null) == "$bundle"/* ]] && is_live "${proc#/proc/}" &&
            printf '%s: %s\n' "${proc#/proc/}" "$(tr '\0' ' ' <"$proc/cmdline")"
    done
    return 0
}

# The shutdown tool may outlive the server by a second; nothing may be left after a few.
check_stop_leaves_nothing() {
    local pids
    pids=$(server_pids)
    check 'kovixctl stop' as_user ./kovixctl stop
    local pid
    for pid in $pids; do
        check "server $pid gone after stop" not is_live "$pid"
    done
    check 'no MariaDB socket left' test ! -e "$bundle/mysql/mysql.sock"
    local left tries
    for ((tries = 0; tries < 50; tries++)); do
        left=$(folder_processes)
        [[ -z $left ]] && return 0
        sleep 0.1
    done
    fail "left running after stop: $left"
}

first_run() {
    as_user_in "$first_parent" tar -xf "$archive" || {
        fail 'the archive does not unpack for an ordinary account'
        return
    }
    as_user ./kovixctl port "$apache_port" >/dev/null
    printf 'HTTPS_PORT = "%s"\n' "$https_port" >>"$bundle/kovix.ini"
    as_user ./kovixctl https on >/dev/null
    sed -i -E "s/^port=[0-9]+$/port=$mysql_port/" "$bundle/mysql/my_source.ini"
    check 'the panel finds all its libraries' test -z "$(ldd "$bundle/kovix" | grep 'not found')"
    start_servers || return
    check_mapped_libraries
    check_phpinfo
    check "the folder's mkcert made the local authority" test -s "$bundle/ssl/ca/rootCA.pem"
    check "HTTPS answers through the folder's mod_ssl" \
        test "$(http_code -k "https://127.0.0.1:$https_port/kovix/phpinfo.php")" = 200
    check 'MariaDB takes a connection and a database' \
        sql 'CREATE DATABASE travel; CREATE TABLE travel.bag (item VARCHAR(20)); INSERT INTO travel.bag VALUES ("passport")'
    check_phpmyadmin_login travel
    check "a backup made with the folder's own client" as_user ./kovixctl db backup travel >/dev/null
    check 'the backup is in the folder' test -n "$(find "$bundle/backups" -name 'travel*' -size +0)"
    check_stop_leaves_nothing
}

moved_run() {
    mkdir -p "$second_parent"
    chown nobody:nogroup "$second_parent"
    mv "$bundle" "$second_parent/"
    bundle="$second_parent/kovix"
    start_servers || return
    check 'the moved folder keeps its database' test "$(sql 'SELECT item FROM travel.bag')" = passport
    check 'phpinfo of the moved folder' test "$(http_code "$site/kovix/phpinfo.php")" = 200
    check "the moved folder reads its own php.ini" grep -q -F "$bundle/apache/php.ini" "$work/page"
    check_stop_leaves_nothing
}

inside() {
    work=$1 archive=$2 apache_port=$3 mysql_port=$4 https_port=$5
    failures=0
    site="http://127.0.0.1:$apache_port"
    first_parent="$work/Dossier partagé"
    second_parent="$work/Autre clé USB"
    bundle="$first_parent/kovix"
    mkdir -p "$first_parent"
    chown nobody:nogroup "$first_parent"
    hide_packages
    first_run
    moved_run
    ((failures == 0)) || exit 1
    echo 'bundle test: all checks passed'
}

if [[ ${1:-} == --inside ]]; then
    shift
    inside "$@"
else
    outside "$@"
fi
