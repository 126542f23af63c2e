#!/usr/bin/env bash
#
# Tests of scripts/assemble-tree.sh: a tree assembled in a folder with a blank in its path, a
# second run after the user's edits, --rebuild, and the refusals.
#
#   assemble_tree_test.sh [SOURCE_DIR]
#
set -uo pipefail

source_dir=${1:-$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)}
assembler="$source_dir/scripts/assemble-tree.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree="$work/kovix tree"
bin="$work/bin dir"
failures=0

fail() {
    printf 'FAIL: %s\n' "$*" >&2
    failures=$((failures + 1))
}

check() {
    local what=$1
    shift
    "$@" || fail "$what"
}

not() { ! "$@"; }

links_to() { [[ -L $1 && $(readlink "$1") == "$2" ]]; }

assemble() { "$assembler" "$@" >"$work/out" 2>"$work/err"; }

# Line number of the extension line of NAME in the PHP template (0 when absent).
extension_line() {
    grep -n -E "^;?extension=php_$1\.so$" "$tree/apache/php_8.2/php_source.ini" | cut -d: -f1 |
        head -n 1 | grep . || echo 0
}

loads_before() {
    local first second
    first=$(extension_line "$1")
    second=$(extension_line "$2")
    ((first > 0 && second > 0 && first < second))
}

# Placeholders used in FILE that are not in the given list.
unknown_placeholders() {
    local file=$1
    shift
    grep -o -E '\{[A-Z_0-9]+\}' "$file" | sort -u | grep -v -x -F "$(printf '%s\n' "$@")"
}

test_first_assembly() {
    mkdir -p "$bin"
    printf '#!/bin/sh\necho kovix\n' >"$bin/kovix"
    printf '#!/bin/sh\necho kovixctl 1\n' >"$bin/kovixctl"
    chmod +x "$bin/kovix" "$bin/kovixctl"
    # Another server holds MariaDB's usual port (or this one does, when it can take it).
    php -r '$s = @stream_socket_server("tcp://127.0.0.1:3306"); sleep(60);' &
    local holder=$!
    sleep 0.3
    (cd / && assemble "$tree" "$bin")
    local assembled=$?
    kill "$holder"
    wait "$holder" 2>/dev/null
    ((assembled == 0)) || {
        fail "first assembly: $(cat "$work/err")"
        return
    }

    check "kovix is a copy" test -f "$tree/kovix" -a ! -L "$tree/kovix" -a -x "$tree/kovix"
    check "kovixctl is a copy" cmp -s "$bin/kovixctl" "$tree/kovixctl"
    check "httpd link" links_to "$tree/apache/bin/httpd" /usr/sbin/apache2
    check "modules link" links_to "$tree/apache/modules" /usr/lib/apache2/modules
    check "PHP module link" links_to "$tree/apache/php_8.2/phpapache2_4.so" \
        /usr/lib/apache2/modules/libphp8.2.so
    check "mysqld link" links_to "$tree/mysql/bin/mysqld" /usr/sbin/mariadbd
    check "mysqladmin link" links_to "$tree/mysql/bin/mysqladmin" /usr/bin/mariadb-admin
    check "mysql link" links_to "$tree/mysql/bin/mysql" /usr/bin/mariadb
    check "SQLiteBrowser link" links_to "$tree/utils/SQLiteBrowser" /usr/bin/sqlitebrowser
    check "sessions folder is private" test "$(stat -c %a "$tree/apache/sessions")" = 700
    check "logs folder" test -d "$tree/apache/logs"
    check "MariaDB data initialised" test -d "$tree/mysql/data/mysql"
    check "welcome page" test -f "$tree/www/index.php" -a -f "$tree/www/kovix/phpinfo.php"
    check "extra template" test -f "$tree/apache/conf/extra/kovix_source.conf"
    check "Apache initial = source" cmp -s "$tree/apache/conf/httpd_source.conf" \
        "$tree/apache/conf/httpd_initial.conf"
    check "PHP initial = source" cmp -s "$tree/apache/php_8.2/php_source.ini" \
        "$tree/apache/php_8.2/php_initial.ini"
    if [[ $(id -u) -eq 0 ]]; then
        check "sessions owned by www-data" test "$(stat -c %U "$tree/apache/sessions")" = www-data
    fi
    test_mysql_files
}

# The server's account is the panel's choice, its ports are free ones, its files for SQL have a
# folder, and the shutdown password is the tree's own, for its owner's eyes only.
test_mysql_files() {
    local mysql="$tree/mysql"
    check "no account in the MySQL template" not grep -q -E '^#?user=' "$mysql/my_source.ini"
    local -a ports
    mapfile -t ports < <(sed -n -E 's/^port=([0-9]+)$/\1/p' "$mysql/my_source.ini")
    check "client and server ports" test "${#ports[@]}" -eq 2 -a "${ports[0]}" = "${ports[1]:-}"
    check "a held 3306 is not given" test "${ports[0]}" != 3306
    check "files folder private" test "$(stat -c %a "$mysql/files")" = 700
    check "shutdown options private" test "$(stat -c %a "$mysql/mysqladmin.ini")" = 600
    check "shutdown options include my.ini" grep -q -x '!include my.ini' "$mysql/mysqladmin.ini"
    check "shutdown password of 32 characters" \
        grep -q -x -E 'password="[A-Za-z0-9]{32}"' "$mysql/mysqladmin.ini"
}

test_extensions() {
    local php="$tree/apache/php_8.2" so name count=0
    for so in /usr/lib/php/20220829/*.so; do
        name=$(basename "$so" .so)
        count=$((count + 1))
        check "ext link of $name" links_to "$php/ext/php_$name.so" "$so"
        check "php.ini line of $name" \
            grep -q -E "^;?(zend_)?extension=php_$name\.so$" "$php/php_source.ini"
    done
    check "one switch line per extension file" \
        test "$(grep -c -E '^;?(zend_)?extension=' "$php/php_source.ini")" -eq "$count"
    check "extension marker replaced" not grep -q '@KOVIX' "$php/php_source.ini"
    check "extension_dir" grep -q -x 'extension_dir = "{PHPEXTPATH}"' "$php/php_source.ini"
    check "mysqli on" grep -q -x 'extension=php_mysqli.so' "$php/php_source.ini"
    check "readline off" grep -q -x ';extension=php_readline.so' "$php/php_source.ini"
    check "OPcache on a zend_extension line" \
        grep -q -x ';zend_extension=php_opcache.so' "$php/php_source.ini"
    check "mysqlnd before mysqli" loads_before mysqlnd mysqli
    check "mysqlnd before pdo_mysql" loads_before mysqlnd pdo_mysql
    check "pdo before pdo_mysql" loads_before pdo pdo_mysql
    check "pdo before pdo_sqlite" loads_before pdo pdo_sqlite
    check "xml before dom" loads_before xml dom
    check "xml before simplexml" loads_before xml simplexml
}

# The panel reads these templates: only its placeholders, module lines it can switch, and no
# virtual-host text outside real blocks (its reader would take it for a virtual host).
test_templates() {
    local conf="$tree/apache/conf"
    local -a apache=('{APACHEPATH}' '{DOCUMENTPATH}' '{PHPPATH}' '{PHPAPACHE2FILE}' '{PHPEXTPATH}'
        '{PHPMODULENAME}' '{APACHE_PORT}' '{APACHE_LISTEN}' '{ONLINE_MODE}' '{SENDMAIL_COMMAND}')
    local file
    for file in "$conf/httpd_source.conf" "$conf/extra/kovix_source.conf" \
        "$tree/apache/php_8.2/php_source.ini"; do
        check "Apache placeholders only in $file" not unknown_placeholders "$file" "${apache[@]}"
    done
    check "MySQL placeholders only" not unknown_placeholders "$tree/mysql/my_source.ini" \
        '{MYSQLPATH}' '{MYSQLBINPATH}' '{MYSQLDATAPATH}'
    check "no virtual-host block shipped" not grep -q -i 'VirtualHost' \
        <(grep -v -x '#KOVIX Generate Virtual Host' "$conf/httpd_source.conf")
    check "marker line ends the Apache template" \
        test "$(tail -n 1 "$conf/httpd_source.conf")" = '#KOVIX Generate Virtual Host'
    check "PHP module line" grep -q -x 'LoadModule {PHPMODULENAME} "{PHPPATH}/{PHPAPACHE2FILE}"' \
        "$conf/httpd_source.conf"
    check "prefork module on" grep -q '^LoadModule mpm_prefork_module ' "$conf/httpd_source.conf"
    check "access rules followed by ::1" test "$(grep -A1 -P '^\t\{ONLINE_MODE\}$' \
        "$conf/httpd_source.conf")" = $'\t{ONLINE_MODE}\n\tAllow from ::1'
    check "every module file exists" all_modules_exist "$conf/httpd_source.conf"
    check "extra templates are not included" not grep -q -E '^[^#]*Include.*(\*|_source)' \
        "$conf/httpd_source.conf"
    local secret
    secret=$(sed -n "s/^\$cfg\['blowfish_secret'\] = '\(.*\)';$/\1/p" \
        "$tree/utils/phpmyadmin/config.inc.php")
    check "blowfish secret generated" test "${#secret}" -eq 32
}

all_modules_exist() {
    local file
    while read -r file; do
        [[ -f /usr/lib/apache2/modules/${file#modules/} ]] || {
            echo "no module file $file" >&2
            return 1
        }
    done < <(sed -n -E 's/^#?LoadModule [a-z0-9_]+ (modules\/[^ ]+)$/\1/p' "$1")
}

test_second_run_keeps_user_files() {
    local conf="$tree/apache/conf/httpd_source.conf" php="$tree/apache/php_8.2/php_source.ini"
    local pma="$tree/utils/phpmyadmin/config.inc.php"
    echo '# user edit' >>"$conf"
    echo '; user edit' >>"$php"
    echo '# user edit' >>"$tree/mysql/my_source.ini"
    echo '<?php // user page' >"$tree/www/index.php"
    touch "$tree/mysql/data/user-database"
    local secret_before
    secret_before=$(grep blowfish_secret "$pma")
    rm "$tree/apache/bin/httpd"
    printf '#!/bin/sh\necho kovixctl 2\n' >"$bin/kovixctl"

    assemble "$tree" "$bin" || {
        fail "second assembly: $(cat "$work/err")"
        return
    }
    check "Apache template edit kept" test "$(tail -n 1 "$conf")" = '# user edit'
    check "PHP template edit kept" test "$(tail -n 1 "$php")" = '; user edit'
    check "MySQL template edit kept" test "$(tail -n 1 "$tree/mysql/my_source.ini")" = '# user edit'
    check "www kept" grep -q 'user page' "$tree/www/index.php"
    check "data kept" test -e "$tree/mysql/data/user-database"
    check "phpMyAdmin secret kept" test "$(grep blowfish_secret "$pma")" = "$secret_before"
    check "initial template refreshed" not grep -q 'user edit' "$tree/apache/conf/httpd_initial.conf"
    check "link restored" links_to "$tree/apache/bin/httpd" /usr/sbin/apache2
    check "program refreshed" cmp -s "$bin/kovixctl" "$tree/kovixctl"

    # A tree made before it had a shutdown password gets one.
    local password
    password=$(grep '^password=' "$tree/mysql/mysqladmin.ini")
    rm "$tree/mysql/mysqladmin.ini"
    assemble "$tree" || fail "upgrade: $(cat "$work/err")"
    check "shutdown password given" grep -q -E '^password="[A-Za-z0-9]{32}"' \
        "$tree/mysql/mysqladmin.ini"
    check "a new shutdown password" not grep -q -x -F "$password" "$tree/mysql/mysqladmin.ini"

    assemble --rebuild "$tree" || {
        fail "rebuild: $(cat "$work/err")"
        return
    }
    check "rebuild restores the template" cmp -s "$conf" "$tree/apache/conf/httpd_initial.conf"
    check "rebuild renews the data" test ! -e "$tree/mysql/data/user-database"
    check "rebuild without BIN_DIR drops the programs" test ! -e "$tree/kovixctl"
}

test_refusals() {
    local other="$work/not a tree"
    mkdir -p "$other"
    touch "$other/precious"
    assemble --rebuild "$other"
    check "rebuild of a foreign folder refused" test $? -eq 1 -a -e "$other/precious"

    local deep
    deep="$work/$(printf 'd%.0s' {1..100})"
    assemble "$deep"
    check "long socket path refused" test $? -eq 1 -a ! -e "$deep"
    check "long socket path explained" grep -q '107' "$work/err"

    assemble
    check "usage error without a tree" test $? -eq 2
    assemble a b c
    check "usage error with three arguments" test $? -eq 2
}

test_first_assembly
test_extensions
test_templates
test_second_run_keeps_user_files
test_refusals

if ((failures)); then
    printf '%d check(s) failed\n' "$failures" >&2
    exit 1
fi
echo 'assemble_tree_test: all checks passed'
