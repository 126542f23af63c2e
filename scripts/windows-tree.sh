#!/usr/bin/env bash
# Writes the Windows tree skeleton into TREE_DIR: the templates (stack-windows/ and the PHP
# template of stack/ with the extension lines of the PHP 8 Windows build), www, and the empty
# folders the servers expect. The Apache, PHP and MariaDB programs are not part of it: the user
# unpacks their official Windows builds into it (see the README).
#   windows-tree.sh TREE_DIR
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
tree="${1:?usage: windows-tree.sh TREE_DIR}"
php=php_8.2

# The extension DLLs of the PHP 8 Win64 (thread-safe) zip, in load order; the first list is on.
enabled=(bz2 curl exif fileinfo gd gettext intl mbstring mysqli openssl pdo_mysql pdo_sqlite
    sockets sodium sqlite3 zip)
disabled=(ffi ftp gmp imap ldap odbc pdo_odbc pdo_pgsql pgsql shmop snmp soap sysvshm tidy xsl)

extension_lines() {
    local name
    for name in "${enabled[@]}"; do echo "extension=php_$name.dll"; done
    for name in "${disabled[@]}"; do echo ";extension=php_$name.dll"; done | sort
}

mkdir -p "$tree"/apache/{conf/extra,logs,sessions,"$php"/ext} "$tree"/mysql/{bin,data} "$tree"/utils
cp -r "$here/stack-windows/." "$tree/"
cp -r "$here/stack/www" "$tree/"
# The Linux template without its socket paths (MariaDB listens on TCP here).
extension_lines >"$tree/apache/$php/extension-lines.tmp"
sed -e "/^;@KOVIX_EXTENSION_LINES@\$/{
r $tree/apache/$php/extension-lines.tmp
d
}" -e 's/^\(pdo_mysql\|mysqli\)\.default_socket = .*/\1.default_socket =/' \
    "$here/stack/apache/$php/php_source.ini" >"$tree/apache/$php/php_source.ini"
rm "$tree/apache/$php/extension-lines.tmp"
cp "$tree/apache/conf/httpd_source.conf" "$tree/apache/conf/httpd_initial.conf"
cp "$tree/apache/$php/php_source.ini" "$tree/apache/$php/php_initial.ini"
