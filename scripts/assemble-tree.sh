#!/usr/bin/env bash
#
# Builds a Kovix tree from the Debian packages of the stack and the templates of stack/:
#
#   assemble-tree.sh [--rebuild] TREE_DIR [BIN_DIR]
#
# The servers are the system's own programs, linked into the tree. A second run refreshes the
# programs, the links and the *_initial templates but keeps what belongs to the user: the
# *_source templates, my_source.ini, www/, the MariaDB data and phpMyAdmin's config.inc.php.
# --rebuild empties the tree first. BIN_DIR, when given, is where kovix and kovixctl were built.
# Nothing outside the tree is changed, except that as root the folders above the tree are made
# enterable by www-data (the user Apache serves pages as).
#
set -euo pipefail
umask 022

readonly PHP_VERSION=8.2
readonly PHP_EXT_SOURCE=/usr/lib/php/20220829
readonly PHP_MODULE_SOURCE=/usr/lib/apache2/modules/libphp${PHP_VERSION}.so
readonly PHPMYADMIN_SOURCE=/usr/share/phpmyadmin
readonly SOCKET_PATH_MAX=107
readonly SHUTDOWN_USER=kovix
# MariaDB's port, unless another server holds it when the tree is made.
readonly MYSQL_PORT=3306
# The program that initialises a data folder; a portable tree uses its own copy.
INSTALL_DB=(mariadb-install-db)

# Extensions loaded by the shipped php.ini; every other one gets a switched-off line.
readonly -a DEFAULT_EXTENSIONS=(bcmath bz2 calendar ctype curl dom exif fileinfo ftp gd gettext iconv
    intl mbstring mysqli mysqlnd pdo pdo_mysql pdo_sqlite phar posix simplexml sockets sqlite3
    tokenizer xml xmlreader xmlwriter xsl zip)

STACK_DIR="$(cd "$(dirname "${BASH_SOURCE[0]}")/../stack" && pwd)"
readonly STACK_DIR

die() {
    printf 'assemble-tree: %s\n' "$*" >&2
    exit 1
}

usage() {
    printf 'usage: %s [--rebuild] TREE_DIR [BIN_DIR]\n' "$(basename "$0")" >&2
    exit 2
}

is_root() { [[ $(id -u) -eq 0 ]]; }

# 32 random letters and digits.
random_secret() {
    local secret
    secret=$(head -c 512 /dev/urandom | LC_ALL=C tr -dc 'A-Za-z0-9')
    printf '%s' "${secret:0:32}"
}

note() {
    printf 'assemble-tree: note: %s\n' "$*" >&2
}

# Every program and file the tree links to, with the Debian package that provides it.
check_requirements() {
    local -a required=(
        /usr/sbin/apache2 apache2
        /usr/lib/apache2/modules/mod_mpm_prefork.so apache2
        /etc/mime.types media-types
        "$PHP_MODULE_SOURCE" "libapache2-mod-php$PHP_VERSION"
        "$PHP_EXT_SOURCE/mysqli.so" "php$PHP_VERSION-mysql"
        /usr/sbin/mariadbd mariadb-server
        /usr/bin/mariadb-install-db mariadb-server
        /usr/bin/mariadb-admin mariadb-client
        /usr/bin/mariadb mariadb-client
        "$PHPMYADMIN_SOURCE/index.php" phpmyadmin
        /usr/bin/sqlitebrowser sqlitebrowser
    )
    local missing='' packages='' i
    for ((i = 0; i < ${#required[@]}; i += 2)); do
        if [[ ! -e ${required[i]} ]]; then
            missing+=$'\n'"  ${required[i]} (Debian package ${required[i + 1]})"
            [[ " $packages " == *" ${required[i + 1]} "* ]] || packages+=" ${required[i + 1]}"
        fi
    done
    [[ -z $missing ]] || die "missing:$missing"$'\n'"install them with: apt-get install$packages"
    if is_root && ! getent passwd www-data >/dev/null; then
        die "the user www-data does not exist (Debian package base-passwd)"
    fi
}

check_socket_length() {
    local socket="$TREE/mysql/mysql.sock"
    local bytes
    bytes=$(printf '%s' "$socket" | wc -c)
    ((bytes <= SOCKET_PATH_MAX)) ||
        die "the MariaDB socket $socket would be $bytes bytes long; a socket path may not exceed $SOCKET_PATH_MAX: choose a shorter tree path"
}

# Whether the pid file names a live process.
pid_file_live() {
    local pid
    [[ -r $1 ]] || return 1
    pid=$(<"$1")
    [[ $pid =~ ^[0-9]+$ && -d /proc/$pid ]]
}

# A server of the tree that still runs blocks a rebuild.
server_running() {
    pid_file_live "$TREE/apache/logs/httpd.pid" || pid_file_live "$TREE/mysql/data/mysqld.pid"
}

empty_tree() {
    [[ -d $TREE ]] || return 0
    if [[ -n $(ls -A "$TREE") && ! -e $TREE/apache/conf/httpd_initial.conf ]]; then
        die "--rebuild refused: $TREE is not empty and is not a Kovix tree"
    fi
    ! server_running || die "--rebuild refused: a server of $TREE is running; stop it first"
    find "$TREE" -mindepth 1 -maxdepth 1 -exec rm -rf {} +
}

# Copies SOURCE to TARGET through a scratch file, so a running program is replaced, not overwritten.
install_file() {
    cp -p "$1" "$2.new"
    mv -f "$2.new" "$2"
}

copy_if_absent() {
    [[ -e $2 ]] || install_file "$1" "$2"
}

install_programs() {
    [[ -n $BIN_DIR ]] || return 0
    local program copied=0
    for program in kovix kovixctl; do
        if [[ -f $BIN_DIR/$program ]]; then
            install_file "$BIN_DIR/$program" "$TREE/$program"
            copied=1
        fi
    done
    ((copied)) || note "no kovix or kovixctl in $BIN_DIR"
}

assemble_apache() {
    local apache="$TREE/apache"
    mkdir -p "$apache/bin" "$apache/conf/extra" "$apache/logs" "$apache/sessions"
    chmod 700 "$apache/sessions"
    ln -sfn /usr/sbin/apache2 "$apache/bin/httpd"
    ln -sfn /usr/lib/apache2/modules "$apache/modules"

    install_file "$STACK_DIR/apache/conf/httpd_source.conf" "$apache/conf/httpd_initial.conf"
    copy_if_absent "$STACK_DIR/apache/conf/httpd_source.conf" "$apache/conf/httpd_source.conf"
    local template
    for template in "$STACK_DIR"/apache/conf/extra/*_source.conf; do
        copy_if_absent "$template" "$apache/conf/extra/$(basename "$template")"
    done
    touch "$apache/logs/php_error.log"
}

# "PRIORITY NAME KIND" for every extension file, KIND being ext or zend, sorted in load order.
# The priority and kind come from the ini files of the Debian packages: their priority is the
# order Debian loads them in (mysqlnd and pdo 10, xml 15, the rest 20).
list_extensions() {
    local -a names=() inis
    local so
    for so in "$PHP_EXT_SOURCE"/*.so; do
        so=${so##*/}
        names+=("${so%.so}")
    done
    shopt -s nullglob
    inis=(/usr/share/php"$PHP_VERSION"-*/*/*.ini /usr/share/php-*/*/*.ini)
    shopt -u nullglob
    awk -v names="${names[*]}" '
        FNR == 1 {
            name = FILENAME; sub(/.*\//, "", name); sub(/\.ini$/, "", name)
            skip = name in priority
            if (!skip) { priority[name] = 20; kind[name] = "ext" }
        }
        skip { next }
        /^;[ \t]*priority[ \t]*=/ { value = $0; sub(/^[^=]*=[ \t]*/, "", value); priority[name] = value + 0 }
        /^zend_extension/ { kind[name] = "zend" }
        END {
            count = split(names, list, " ")
            for (i = 1; i <= count; i++) {
                name = list[i]
                print (name in priority ? priority[name] : 20), name, (name in kind ? kind[name] : "ext")
            }
        }' "${inis[@]}" </dev/null | sort -k1,1n -k2,2
}

# The extension block of php.ini: one line per extension, switched on for the default ones; the
# Zend extensions (OPcache) follow on zend_extension lines, switched off.
extension_lines() {
    local name kind zend_lines=''
    while read -r _ name kind; do
        if [[ $kind == zend ]]; then
            zend_lines+=$'\n'";zend_extension=php_$name.so"
        elif [[ " ${DEFAULT_EXTENSIONS[*]} " == *" $name "* ]]; then
            printf 'extension=php_%s.so\n' "$name"
        else
            printf ';extension=php_%s.so\n' "$name"
        fi
    done < <(list_extensions)
    printf '%s\n' "$zend_lines"
}

assemble_php() {
    local php="$TREE/apache/php_$PHP_VERSION"
    mkdir -p "$php/ext"
    ln -sfn "$PHP_MODULE_SOURCE" "$php/phpapache2_4.so"
    find "$php/ext" -maxdepth 1 -type l -name 'php_*.so' -delete
    local so
    for so in "$PHP_EXT_SOURCE"/*.so; do
        ln -s "$so" "$php/ext/php_$(basename "$so")"
    done

    KOVIX_EXTENSION_LINES=$(extension_lines) awk '
        $0 == ";@KOVIX_EXTENSION_LINES@" { print ENVIRON["KOVIX_EXTENSION_LINES"]; next }
        { print }' "$STACK_DIR/apache/php_$PHP_VERSION/php_source.ini" >"$php/php_initial.ini.new"
    mv -f "$php/php_initial.ini.new" "$php/php_initial.ini"
    copy_if_absent "$php/php_initial.ini" "$php/php_source.ini"
}

initialise_mysql_data() {
    local mysql="$TREE/mysql"
    if [[ -d $mysql/data/mysql ]]; then
        return 0
    fi
    local scratch="$mysql/data.new"
    rm -rf "$scratch" "$mysql/data"
    mkdir -p "$scratch"
    local init="$mysql/init.sql.tmp"
    local host secret
    host=$(hostname)
    secret=$(random_secret)
    (
        umask 077
        printf "FLUSH PRIVILEGES;\n"
        printf "CREATE USER '%s'@'localhost' IDENTIFIED BY '%s';\n" "$SHUTDOWN_USER" "$secret"
        printf "GRANT SHUTDOWN ON *.* TO '%s'@'localhost';\n" "$SHUTDOWN_USER"
        # root keeps its local accounts only (localhost, 127.0.0.1, ::1).
        [[ $host == localhost ]] || printf "DROP USER IF EXISTS 'root'@'%s';\n" "$host"
    ) >"$init"
    local -a options=(--no-defaults "--datadir=$scratch" --auth-root-authentication-method=normal
        --skip-test-db --innodb-log-file-size=8M "--extra-file=$init")
    # As root the server must be told it may run as root. Not with --user: mariadb-install-db
    # then chowns the data folder unquoted (a blank in the path breaks it) and system files too.
    if is_root; then
        options+=(--loose-user=root)
    fi
    local log="$mysql/install-db.log"
    if ! "${INSTALL_DB[@]}" "${options[@]}" >"$log" 2>&1; then
        rm -rf "$scratch" "$init"
        die "mariadb-install-db failed (its output is in $log)"
    fi
    rm -f "$init" "$log"
    mv "$scratch" "$mysql/data"
    write_admin_options "$secret"
}

# mysqladmin's option file for the panel's shutdown, readable by the tree's owner only: my.ini's
# options (included by a name relative to the mysql folder, mysqladmin's working folder, so the
# tree may move) and the password of the shutdown account, which never goes on a command line.
write_admin_options() {
    local file="$TREE/mysql/mysqladmin.ini"
    (
        umask 077
        printf '%s\n' '# The options of the panel'"'"'s MySQL shutdown: those of my.ini and the password of' \
            '# this tree'"'"'s shutdown account. Keep it private.' '!include my.ini' '' '[mysqladmin]' \
            "password=\"$1\"" >"$file.new"
    )
    mv -f "$file.new" "$file"
}

# A tree made before it had a shutdown password of its own gets one: the account's password is
# changed by a server run just for that, without network (--bootstrap), while MySQL is stopped.
give_shutdown_password() {
    local mysql="$TREE/mysql"
    [[ -e $mysql/mysqladmin.ini || ! -d $mysql/data/mysql ]] && return 0
    if pid_file_live "$mysql/data/mysqld.pid"; then
        note "the tree's MySQL runs: stop it and run again to give its shutdown account a password of its own"
        return 0
    fi
    local secret log="$mysql/bootstrap.log"
    secret=$(random_secret)
    local -a options=(--no-defaults --basedir=/usr "--datadir=$mysql/data" --bootstrap
        --skip-networking --innodb-log-file-size=8M)
    if is_root; then
        options+=(--user=root)
    fi
    printf "FLUSH PRIVILEGES;\nALTER USER '%s'@'localhost' IDENTIFIED BY '%s';\n" \
        "$SHUTDOWN_USER" "$secret" | "$mysql/bin/mysqld" "${options[@]}" >"$log" 2>&1 ||
        die "the shutdown account's password could not be changed (the server's output is in $log)"
    rm -f "$log"
    write_admin_options "$secret"
}

# The template of a new tree; its ports are moved off 3306 when another server holds it.
install_mysql_template() {
    local template="$TREE/mysql/my_source.ini" port=$MYSQL_PORT
    [[ -e $template ]] && return 0
    while port_taken "$port" && ((port < MYSQL_PORT + 100)); do
        port=$((port + 1))
    done
    ((port == MYSQL_PORT)) || note "port $MYSQL_PORT is taken: MariaDB gets port $port"
    sed -E "s/^port=$MYSQL_PORT\$/port=$port/" "$STACK_DIR/mysql/my_source.ini" >"$template.new"
    mv -f "$template.new" "$template"
}

# Whether something accepts connections on the port of this computer.
port_taken() {
    (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

assemble_mysql() {
    local mysql="$TREE/mysql"
    mkdir -p "$mysql/bin"
    ln -sfn /usr/sbin/mariadbd "$mysql/bin/mysqld"
    ln -sfn /usr/bin/mariadb-admin "$mysql/bin/mysqladmin"
    ln -sfn /usr/bin/mariadb "$mysql/bin/mysql"
    # The folder of the server's files for SQL (secure_file_priv); the panel makes it too.
    mkdir -p "$mysql/files"
    chmod 700 "$mysql/files"
    install_mysql_template
    initialise_mysql_data
    give_shutdown_password
}

# phpMyAdmin is the system's; root/ is a linked copy of it whose vendor configuration is ours,
# so that it reads config.inc.php and writes tmp/ of this folder (see prepend.php).
assemble_phpmyadmin() {
    local pma="$TREE/utils/phpmyadmin"
    local root="$pma/root"
    mkdir -p "$pma/tmp"
    install_file "$STACK_DIR/utils/phpmyadmin/prepend.php" "$pma/prepend.php"
    if [[ ! -e $pma/config.inc.php ]]; then
        sed "s/@BLOWFISH_SECRET@/$(random_secret)/" "$STACK_DIR/utils/phpmyadmin/config.inc.php" \
            >"$pma/config.inc.php"
        chmod 600 "$pma/config.inc.php"
    fi

    rm -rf "$root"
    mkdir -p "$root/libraries"
    local entry
    for entry in "$PHPMYADMIN_SOURCE"/*; do
        [[ $entry == */libraries ]] || ln -s "$entry" "$root/"
    done
    for entry in "$PHPMYADMIN_SOURCE"/libraries/*; do
        [[ $entry == */vendor_config.php ]] || ln -s "$entry" "$root/libraries/"
    done
    cp "$STACK_DIR/utils/phpmyadmin/vendor_config.php" "$root/libraries/vendor_config.php"
}

assemble_utils() {
    mkdir -p "$TREE/utils"
    ln -sfn /usr/bin/sqlitebrowser "$TREE/utils/SQLiteBrowser"
    assemble_phpmyadmin
}

assemble_www() {
    [[ -e $TREE/www ]] || cp -R "$STACK_DIR/www" "$TREE/www"
    # Messages caught from PHP's mail() and database backups.
    mkdir -p "$TREE/mail" "$TREE/backups"
    chmod 700 "$TREE/mail" "$TREE/backups"
}

# Apache started by root serves pages as www-data: it must reach www/ and write sessions, PHP's
# error log and phpMyAdmin's temporary files. Started by a user, all of it is the user's already.
grant_www_data() {
    is_root || return 0
    chown www-data:www-data "$TREE/apache/sessions" "$TREE/apache/logs/php_error.log" \
        "$TREE/utils/phpmyadmin/tmp" "$TREE/mail"
    chmod 700 "$TREE/utils/phpmyadmin/tmp"
    chown root:www-data "$TREE/utils/phpmyadmin/config.inc.php"
    chmod 640 "$TREE/utils/phpmyadmin/config.inc.php"
    local folder="$TREE"
    while [[ $folder != / ]]; do
        if ! runuser -u www-data -- test -x "$folder"; then
            chmod o+x "$folder"
            note "made $folder enterable by www-data"
        fi
        folder=$(dirname "$folder")
    done
}

# Port 80 stays the program's default, but a user who may not bind it would only meet a refusal
# at the first start: such a user's new tree starts on 8080.
write_settings() {
    local settings="$TREE/kovix.ini" first_free
    [ -e "$settings" ] && return 0
    first_free=$(cat /proc/sys/net/ipv4/ip_unprivileged_port_start 2>/dev/null || echo 1024)
    if [ "$(id -u)" -ne 0 ] && [ "$first_free" -gt 80 ]; then
        printf 'APACHE_PORT = "8080"\n' >"$settings"
    fi
}

main() {
    local rebuild=0
    if [[ ${1:-} == --rebuild ]]; then
        rebuild=1
        shift
    fi
    (($# >= 1 && $# <= 2)) || usage
    [[ -n $1 ]] || usage
    TREE=$(realpath -m -- "$1")
    BIN_DIR=${2:+$(realpath -m -- "$2")}

    check_requirements
    check_socket_length
    if ((rebuild)); then
        empty_tree
    fi
    mkdir -p "$TREE"

    install_programs
    assemble_apache
    assemble_php
    assemble_mysql
    assemble_www
    assemble_utils
    grant_www_data
    write_settings
    printf 'assemble-tree: Kovix tree ready in %s\n' "$TREE"
}

# Sourced by bundle.sh for its functions; run, it assembles.
if [[ ${BASH_SOURCE[0]} == "$0" ]]; then
    main "$@"
fi
