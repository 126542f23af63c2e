#!/usr/bin/env bash
#
# The stack in an ordinary account's hands: nobody (through setpriv, with a bare environment)
# assembles a tree of its own in a folder with accents and blanks, gets port 8080 since it may not
# bind 80, and, moved to free high ports, starts it under the French locale: phpinfo answers,
# phpMyAdmin signs in, both servers run as nobody on loopback only, and stop leaves nothing.
#
#   unprivileged_test.sh SOURCE_DIR BINARY_DIR
#
# Needs root to take the other account; exits 77 (skipped) otherwise.
#
set -uo pipefail
source_dir=$1 binary_dir=$2
source "$source_dir/tests/support/stack_checks.sh"

[[ $(id -u) -eq 0 ]] || {
    echo 'unprivileged test: needs root to run as nobody; skipped'
    exit 77
}

work=$(mktemp -d)
chmod 755 "$work"
trap 'stop_leftovers; rm -rf "$work"' EXIT
failures=0
tree="$work/Überprojekt/été kovix"

# Everything nobody runs is its own copy: the clone may lie in a folder it cannot enter.
as_nobody() {
    (cd "$tree" 2>/dev/null || cd "$work"
        setpriv --reuid=nobody --regid=nogroup --clear-groups \
            env -i PATH=/usr/bin:/bin LANG="${LANG_FOR_NOBODY:-C}" HOME="$work/home" "$@")
}

prepare_copies() {
    mkdir -p "$work/source" "$work/bin" "$work/home" "$work/Überprojekt"
    cp -r "$source_dir/scripts" "$source_dir/stack" "$work/source/"
    cp "$binary_dir/src/cli/kovixctl" "$work/bin/"
    chown -R nobody:nogroup "$work"/*
}

# Both servers' processes as "pid user", from the tree's pid files.
server_owners() {
    local pid
    for pid in $(cat "$tree/apache/logs/httpd.pid" "$tree/mysql/data/mysqld.pid" 2>/dev/null); do
        printf '%s %s\n' "$pid" "$(stat -c %U "/proc/$pid")"
    done
}

# Listening sockets of the tree's ports that are not on a loopback address.
listening_beyond_loopback() {
    ss -Htln "( sport = :$apache_port or sport = :$mysql_port )" |
        awk '{ print $4 }' | grep -v -E '^(127\.0\.0\.1|\[::1\]):'
}

tree_processes() {
    local proc
    for proc in /proc/[0-9]*; do
        [[ $(readlink "$proc/cwd" 2>/dev/null) == "$tree"* ]] && is_live "${proc#/proc/}" &&
            printf '%s: %s\n' "${proc#/proc/}" "$(tr '\0' ' ' <"$proc/cmdline")"
    done
    return 0
}

assemble() {
    as_nobody "$work/source/scripts/assemble-tree.sh" "$tree" "$work/bin" >"$work/assemble.out" 2>&1 || {
        fail "nobody cannot assemble a tree: $(tail -n 5 "$work/assemble.out")"
        return 1
    }
    check 'a tree assembled by nobody starts on 8080' grep -qx 'APACHE_PORT = "8080"' "$tree/kovix.ini"
    check 'the tree belongs to nobody' test "$(stat -c %U "$tree/mysql/data")" = nobody
}

start_on_high_ports() {
    apache_port=$(free_port) mysql_port=$(free_port)
    site="http://127.0.0.1:$apache_port"
    as_nobody ./kovixctl port "$apache_port" >/dev/null
    sed -i "s/^port=[0-9]*$/port=$mysql_port/" "$tree/mysql/my_source.ini"
    LANG_FOR_NOBODY=fr_FR.UTF-8 as_nobody ./kovixctl start >"$work/start.out" 2>&1 || {
        fail "kovixctl start as nobody: $(cat "$work/start.out")"
        return 1
    }
    check 'phpinfo answers 200' test "$(http_code "$site/kovix/phpinfo.php")" = 200
    check "phpinfo reads the tree's php.ini" grep -q -F "$tree/apache/php.ini" "$work/page"
    check_phpmyadmin_login information_schema
    local owners
    owners=$(server_owners)
    check "both servers wrote their pid files ($owners)" test "$(wc -l <<<"$owners")" -eq 2
    check "the servers run as nobody ($owners)" not grep -qv ' nobody$' <<<"$owners"
    check "nothing listens beyond loopback: $(listening_beyond_loopback)" \
        test -z "$(listening_beyond_loopback)"
}

stop_leaves_nothing() {
    check 'kovixctl stop as nobody' as_nobody ./kovixctl stop
    check 'status says both stopped' test "$(as_nobody ./kovixctl status)" = \
        $'Apache  Stopped\nMySQL   Stopped'
    local left tries
    for ((tries = 0; tries < 50; tries++)); do
        left=$(tree_processes)
        [[ -z $left ]] && break
        sleep 0.1
    done
    check "nothing left running after stop: $left" test -z "$left"
    check 'no MariaDB socket left' test ! -e "$tree/mysql/mysql.sock"
}

prepare_copies
if assemble; then
    start_on_high_ports
    stop_leaves_nothing
fi
((failures == 0)) || exit 1
echo 'unprivileged test: all checks passed'
