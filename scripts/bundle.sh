#!/usr/bin/env bash
#
# Makes a portable Kovix folder from an assembled tree: every program, module, extension and
# library the tree links to in the system becomes a real copy inside the folder, so that the
# folder runs on another machine, from any place, for a user who cannot install anything.
#
#   bundle.sh [--archive] OUT [TREE [PROGRAM...]]
#
# TREE (default build/tree) is a tree made by assemble-tree.sh; its templates and www/ are
# carried over, its databases, logs and settings are not: the bundle gets a fresh data folder,
# initialised with its own MariaDB, and a kovix.ini with Apache on port 8080 (an ordinary user
# may not bind port 80). PROGRAM (default TREE/kovix and TREE/kovixctl) are the panel's
# programs to put at the top of the folder. --archive also writes kovix-linux-x86_64.tar.zst
# (.tar.gz without zstd) beside OUT, whose top folder is named like OUT.
#
# What stays the system's: glibc (the servers need 2.36: Debian 12, Ubuntu 24.04 and later) and,
# for the panel only, GTK 3. The SQLite browser is left out: its Qt closure would double the
# folder's size. An existing OUT is replaced only when it is a Kovix bundle whose servers are
# stopped.
#
set -Eeuo pipefail
# A command that fails without a word would end the script silently: name it.
trap 'printf "bundle: failed at line %s: %s\n" "$LINENO" "$BASH_COMMAND" >&2' ERR
umask 022

HERE="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
readonly HERE
# shellcheck source=scripts/assemble-tree.sh
source "$HERE/assemble-tree.sh"

readonly APACHE_MODULE_SOURCE=/usr/lib/apache2/modules
readonly APACHE_ICONS_SOURCE=/usr/share/apache2/icons
readonly MIME_TYPES_SOURCE=/etc/mime.types
readonly PHP_LIBRARY_SOURCE=/usr/share/php
readonly MARIADB_SHARE_SOURCE=/usr/share/mysql
readonly MARIADB_PLUGIN_SOURCE=/usr/lib/mysql/plugin
readonly -a MARIADB_TOOLS=(/usr/bin/mariadb-install-db /usr/bin/my_print_defaults /usr/bin/resolveip
    /usr/bin/mariadb-dump)
readonly ARCHIVE_BASE=kovix-linux-x86_64
# Where the bundle keeps the PHP libraries of /usr/share/php, relative to the folder.
readonly PMA_LIBRARIES=utils/phpmyadmin/php
# The run paths are read by the loader, which expands $ORIGIN to the file's own folder.
# shellcheck disable=SC2016
readonly ORIGIN='$ORIGIN'


bundle_die() {
    printf 'bundle: %s\n' "$*" >&2
    exit 1
}

bundle_note() {
    printf 'bundle: %s\n' "$*" >&2
}

bundle_usage() {
    printf 'usage: %s [--archive] OUT [TREE [PROGRAM...]]\n' "$(basename "$0")" >&2
    exit 2
}

check_bundle_requirements() {
    local tool
    for tool in ldd patchelf tar; do
        command -v "$tool" >/dev/null || bundle_die "$tool is missing (Debian packages libc-bin, patchelf, tar)"
    done
    [[ -e $SOURCE_TREE/apache/conf/httpd_initial.conf ]] ||
        bundle_die "$SOURCE_TREE is not a Kovix tree (make one with assemble-tree.sh)"
    check_requirements
}

# OUT may be replaced only when it is a bundle of ours whose servers are stopped.
check_out() {
    [[ -e $OUT ]] || return 0
    [[ -d $OUT/lib && -e $OUT/apache/conf/httpd_initial.conf ]] ||
        bundle_die "$OUT exists and is not a Kovix bundle"
    TREE=$OUT server_running && bundle_die "a server of $OUT is running; stop it first"
    return 0
}

# The user's part of the tree: templates, www/ and whatever else lives there; not the data,
# the logs, the sessions, the caught mail, the backups, the generated files, the settings nor the
# local certificate authority (its key must not travel).
copy_tree() {
    rm -rf "$STAGE"
    mkdir -p "$STAGE"
    tar -C "$SOURCE_TREE" -cf - \
        --exclude=./mysql/data --exclude=./mysql/data.new --exclude=./mysql/mysql.sock \
        --exclude=./mysql/my.ini --exclude='./apache/logs/*' --exclude='./apache/sessions/*' \
        --exclude=./apache/conf/httpd.conf --exclude=./apache/php.ini \
        --exclude='./utils/phpmyadmin/tmp/*' --exclude=./utils/phpmyadmin/config.inc.php \
        --exclude='./mail/*' --exclude='./backups/*' \
        --exclude=./apache/conf/sites.conf --exclude=./ssl \
        --exclude=./kovix.ini --exclude=./kovix --exclude=./kovixctl --exclude=./lib . |
        tar -C "$STAGE" --no-same-owner -xf -
    local extra
    for extra in "$STAGE"/apache/conf/extra/*_source.conf; do
        rm -f "${extra%_source.conf}.conf"
    done
    touch "$STAGE/apache/logs/php_error.log"
    printf 'APACHE_PORT = "8080"\n' >"$STAGE/kovix.ini"
}

install_panel() {
    local program
    for program in "${PROGRAMS[@]}"; do
        [[ -f $program ]] || bundle_die "no program $program"
        cp "$program" "$STAGE/$(basename "$program")"
    done
}

# Every module file a LoadModule line of the templates names, switched on or off: the panel's
# module switches may turn any of them on later.
template_modules() {
    cat "$STAGE"/apache/conf/*.conf "$STAGE"/apache/conf/extra/*_source.conf |
        sed -n -E 's@^[[:space:]]*#?[[:space:]]*LoadModule[[:space:]]+[^[:space:]]+[[:space:]]+"?modules/([^"[:space:]]+)"?.*@\1@p' |
        sort -u
}

bundle_apache() {
    local apache="$STAGE/apache" module
    rm -f "$apache/modules"
    mkdir -p "$apache/modules"
    for module in $(template_modules); do
        [[ -e $APACHE_MODULE_SOURCE/$module ]] || bundle_die "the templates load $module, which is not installed"
        cp -L "$APACHE_MODULE_SOURCE/$module" "$apache/modules/"
    done
    cp -RL "$APACHE_ICONS_SOURCE" "$apache/icons"
    cp -L "$MIME_TYPES_SOURCE" "$apache/conf/mime.types"
}

# MariaDB's own layout below the mysql folder (bin, sbin, share/mysql, lib/mysql/plugin), which
# mariadb-install-db expects of a --basedir.
bundle_mysql() {
    local mysql="$STAGE/mysql" tool
    for tool in "${MARIADB_TOOLS[@]}"; do
        cp -L "$tool" "$mysql/bin/"
    done
    mkdir -p "$mysql/sbin" "$mysql/share" "$mysql/lib/mysql/plugin"
    ln -sfn ../bin/mysqld "$mysql/sbin/mariadbd"
    # The panel's database tools call the client by its MariaDB name.
    ln -sfn mysql "$mysql/bin/mariadb"
    cp -RL "$MARIADB_SHARE_SOURCE" "$mysql/share/mysql"
    # The PAM plugins need a set-uid helper, which a portable folder cannot give.
    find "$MARIADB_PLUGIN_SOURCE" -maxdepth 1 -name '*.so' ! -name 'auth_pam*' \
        -exec cp -L {} "$mysql/lib/mysql/plugin/" \;
}

# phpMyAdmin becomes a real copy in system/; root/ keeps its layout (our vendor configuration
# beside links into system/), now relative, so that the folder can move.
bundle_phpmyadmin() {
    local pma="$STAGE/utils/phpmyadmin"
    TREE=$STAGE assemble_phpmyadmin
    rm -rf "${pma:?}/system"
    mkdir -p "$pma/system"
    local entry
    for entry in "$PHPMYADMIN_SOURCE"/*; do
        [[ $entry == */doc ]] || cp -RL "$entry" "$pma/system/"
    done
    # Source maps serve only a browser's debugger.
    find "$pma/system" -name '*.map' -delete
    relink_into "$pma/root" "$PHPMYADMIN_SOURCE" "$pma/system"

    cp -RL "$PHP_LIBRARY_SOURCE" "$STAGE/$PMA_LIBRARIES"
    # The one library that names its data folder absolutely.
    sed -i "s@'$PHP_LIBRARY_SOURCE/data/@__DIR__ . '/../../data/@" \
        "$STAGE/$PMA_LIBRARIES/Williamdes/MariaDBMySQLKBS/Search.php"
}

# Points every link below FOLDER that leads into SOURCE at the same place below TARGET, relatively.
relink_into() {
    local folder=$1 source=$2 target=$3 link destination
    while IFS= read -r -d '' link; do
        destination=$(readlink "$link")
        [[ $destination == "$source"/* ]] || continue
        ln -sfn "$(realpath -m --relative-to="$(dirname "$link")" "$target${destination#"$source"}")" "$link"
    done < <(find "$folder" -type l -print0)
}

# Local HTTPS makes its certificates with mkcert (a static program), when the system has it.
bundle_mkcert() {
    local mkcert
    mkcert=$(command -v mkcert) || {
        bundle_note "no mkcert here: the folder's HTTPS will need the host's"
        return 0
    }
    cp -L "$mkcert" "$STAGE/utils/mkcert"
}

# Whatever still links outside the folder (the servers, mod_php, the extensions) is copied in.
copy_linked_files() {
    rm -f "$STAGE/utils/SQLiteBrowser"
    local link destination
    while IFS= read -r -d '' link; do
        destination=$(readlink "$link")
        [[ $destination == /* ]] || continue
        rm -f "$link"
        cp -RL "$destination" "$link"
    done < <(find "$STAGE" -type l -print0)
}

# The templates name the bundle's own files instead of the system's.
rewrite_templates() {
    local conf
    for conf in "$STAGE"/apache/conf/*.conf "$STAGE"/apache/conf/extra/*_source.conf; do
        sed -i -E \
            -e "s@^([[:space:]]*TypesConfig[[:space:]]+)\"?$MIME_TYPES_SOURCE\"?@\1\"{APACHEPATH}/conf/mime.types\"@" \
            -e "s@$APACHE_ICONS_SOURCE@{APACHEPATH}/icons@g" \
            -e "s@$PHPMYADMIN_SOURCE@{APACHEPATH}/../utils/phpmyadmin/root@g" "$conf"
    done
    local ini
    for ini in "$STAGE"/apache/php_*/php_*.ini; do
        rewrite_php_ini "$ini"
    done
    rewrite_mysql_ini "$STAGE/mysql/my_source.ini"
}

# phpMyAdmin's libraries come from include_path; the shipped line is a commented example.
rewrite_php_ini() {
    local ini=$1 line="include_path = \".:{APACHEPATH}/../$PMA_LIBRARIES\""
    if grep -q -E '^[[:space:]]*include_path[[:space:]]*=' "$ini"; then
        sed -i -E "s@^[[:space:]]*include_path[[:space:]]*=.*@$line@" "$ini"
    elif grep -q -E '^;include_path = "\.:/usr/share/php"' "$ini"; then
        sed -i -E "s@^;include_path = \"\.:/usr/share/php\".*@$line@" "$ini"
    else
        printf '\n[PHP]\n%s\n' "$line" >>"$ini"
    fi
}

# MariaDB's folders follow basedir; the bundle is run by ordinary users, never as root.
rewrite_mysql_ini() {
    local ini=$1
    awk '
        /^[[:space:]]*(lc-messages-dir|character-sets-dir|plugin-dir)[[:space:]]*=/ { next }
        /^[[:space:]]*basedir[[:space:]]*=/ {
            print "basedir=\"{MYSQLPATH}\""
            print "lc-messages-dir=\"{MYSQLPATH}/share/mysql\""
            print "character-sets-dir=\"{MYSQLPATH}/share/mysql/charsets\""
            print "plugin-dir=\"{MYSQLPATH}/lib/mysql/plugin\""
            next
        }
        { print }' "$ini" >"$ini.new"
    mv -f "$ini.new" "$ini"
    grep -q '^basedir=' "$ini" || bundle_die "$ini has no basedir line to point at the bundle"
}

is_elf() {
    [[ -f $1 && $(head -c 4 "$1" 2>/dev/null | tr -d '\0') == $'\x7fELF' ]]
}

elf_files() {
    local file
    while IFS= read -r -d '' file; do
        is_elf "$file" && printf '%s\n' "$file"
    done < <(find "$@" -type f \( -perm /111 -o -name '*.so*' \) -print0)
}

# "NAME PATH" of every library the given ELF files need, transitively, but glibc's.
library_closure() {
    local file
    for file in "$@"; do
        LD_LIBRARY_PATH='' ldd "$file" 2>/dev/null || true
    done | awk -v glibc="$GLIBC_NAMES" '
        BEGIN { n = split(glibc, list, " "); for (i = 1; i <= n; i++) skip[list[i]] = 1 }
        $2 == "=>" && $3 == "not" { print "missing " $1; next }
        $2 == "=>" && $3 ~ /^\// && !($1 in skip) { print $1, $3 }' | sort -u
}

# The libraries of every program of the folder, in lib/. The panel's programs find them through
# their run path; of their libraries, those GTK 3 brings stay the host's.
collect_libraries() {
    GLIBC_NAMES=$(dpkg -L libc6 | sed -n 's@.*/\([^/]*\.so[.0-9]*\)$@\1@p' | tr '\n' ' ')
    mkdir -p "$STAGE/lib"
    local -a servers panel=()
    mapfile -t servers < <(elf_files "$STAGE/apache" "$STAGE/mysql")
    local program
    for program in kovix kovixctl; do
        is_elf "$STAGE/$program" && panel+=("$STAGE/$program")
    done
    local name path missing=''
    while read -r name path; do
        [[ $name == missing ]] && missing+=" $path" && continue
        cp -L "$path" "$STAGE/lib/$name"
    done < <(library_closure "${servers[@]}")
    [[ -z $missing ]] || bundle_die "libraries not found:$missing"
    ((${#panel[@]})) || return 0
    local gtk
    gtk=$(ldconfig -p | awk '$1 == "libgtk-3.so.0" { print $NF; exit }')
    local host_names=''
    [[ -n $gtk ]] && host_names=" $(library_closure "$gtk" | cut -d' ' -f1 | tr '\n' ' ') libgtk-3.so.0 "
    while read -r name path; do
        [[ $name == missing ]] && bundle_die "the panel needs $path, which is not installed"
        [[ $host_names == *" $name "* ]] && continue
        [[ -e $STAGE/lib/$name ]] || cp -L "$path" "$STAGE/lib/$name"
        patchelf --set-rpath "$ORIGIN" "$STAGE/lib/$name"
    done < <(library_closure "${panel[@]}")
    for program in "${panel[@]}"; do
        patchelf --set-rpath "$ORIGIN/lib" "$program"
    done
    chmod 644 "$STAGE"/lib/*
}

# The client programs run from a shell or by any part of the panel, without the library path the
# servers are started with.
set_client_run_paths() {
    local program
    while IFS= read -r program; do
        [[ $(basename "$program") == mysqld ]] || patchelf --set-rpath "$ORIGIN/../../lib" "$program"
    done < <(elf_files "$STAGE/mysql/bin")
}

# A fresh data folder made by the bundle's own MariaDB.
initialise_bundle_data() {
    local mysql="$STAGE/mysql"
    rm -rf "$mysql/data"
    INSTALL_DB=(env "LD_LIBRARY_PATH=$STAGE/lib" "$mysql/bin/mariadb-install-db" "--basedir=$mysql")
    TREE=$STAGE initialise_mysql_data
}

# Nothing may lead outside: no link, no library, no path in a template (comments aside).
verify_stage() {
    local escaping
    escaping=$(find "$STAGE" -type l -lname '/*' -print)
    [[ -z $escaping ]] || bundle_die "links leading outside the folder:"$'\n'"$escaping"
    local -a elves
    mapfile -t elves < <(elf_files "$STAGE/apache" "$STAGE/mysql")
    local outside
    outside=$(for elf in "${elves[@]}"; do LD_LIBRARY_PATH=$STAGE/lib ldd "$elf"; done |
        awk -v lib="$STAGE/lib/" -v glibc="$GLIBC_NAMES" '
            BEGIN { n = split(glibc, list, " "); for (i = 1; i <= n; i++) skip[list[i]] = 1 }
            $2 == "=>" && !($1 in skip) && index($3, lib) != 1 { print $1, $3 }' | sort -u)
    [[ -z $outside ]] || bundle_die "libraries taken from outside the folder:"$'\n'"$outside"
    local templates
    templates=$(grep -H -n -E '(^|[" =])/(usr|etc|var)/' \
        "$STAGE"/apache/conf/*.conf "$STAGE"/apache/conf/extra/*_source.conf \
        "$STAGE"/apache/php_*/php_*.ini "$STAGE"/mysql/my_source.ini |
        grep -v -E '^[^:]+:[0-9]+:[[:space:]]*[#;]' || true)
    [[ -z $templates ]] || bundle_die "template lines naming system files:"$'\n'"$templates"
}

# The folder becomes OUT in one step; the previous bundle goes only once the new one is whole.
replace_out() {
    local old="$OUT.old"
    rm -rf "$old"
    [[ -e $OUT ]] && mv "$OUT" "$old"
    mv "$STAGE" "$OUT"
    rm -rf "$old"
}

write_archive() {
    local parent name archive
    parent=$(dirname "$OUT")
    name=$(basename "$OUT")
    local -a compress=(--zstd) extension=tar.zst
    if ! command -v zstd >/dev/null; then
        compress=(--gzip)
        extension=tar.gz
    fi
    archive="$parent/$ARCHIVE_BASE.$extension"
    tar -C "$parent" --owner=0 --group=0 --numeric-owner "${compress[@]}" -cf "$archive.new" "$name"
    mv -f "$archive.new" "$archive"
    printf 'bundle: archive %s (%s)\n' "$archive" "$(du -h "$archive" | cut -f1)"
}

bundle_main() {
    local archive=0
    if [[ ${1:-} == --archive ]]; then
        archive=1
        shift
    fi
    if (($# < 1)) || [[ -z $1 ]]; then
        bundle_usage
    fi
    OUT=$(realpath -m -- "$1")
    SOURCE_TREE=$(realpath -m -- "${2:-$HERE/../build/tree}")
    shift $(($# >= 2 ? 2 : 1))
    PROGRAMS=("$@")
    if ((${#PROGRAMS[@]} == 0)); then
        local program
        for program in kovix kovixctl; do
            [[ -f $SOURCE_TREE/$program ]] && PROGRAMS+=("$SOURCE_TREE/$program")
        done
    fi
    STAGE="$OUT.part"

    check_bundle_requirements
    check_out
    TREE=$OUT check_socket_length
    copy_tree
    install_panel
    bundle_apache
    bundle_mysql
    bundle_phpmyadmin
    bundle_mkcert
    copy_linked_files
    rewrite_templates
    collect_libraries
    set_client_run_paths
    initialise_bundle_data
    verify_stage
    replace_out
    ((${#PROGRAMS[@]})) || bundle_note "no kovix or kovixctl in $SOURCE_TREE: the folder has no panel"
    printf 'bundle: Kovix folder ready in %s (%s)\n' "$OUT" "$(du -sh "$OUT" | cut -f1)"
    ((archive)) && write_archive
    return 0
}

bundle_main "$@"
