<?php
/*
 * Kovix: run before every phpMyAdmin page (auto_prepend_file, see
 * apache/conf/extra/kovix_source.conf).
 *
 * The system's phpMyAdmin reads its vendor configuration from
 * ROOT_PATH/libraries. Pointing ROOT_PATH at root/ beside this file, a linked
 * copy of phpMyAdmin whose libraries/vendor_config.php is ours, makes it use
 * config.inc.php and tmp/ of this folder instead of /etc/phpmyadmin.
 */
define('ROOT_PATH', __DIR__ . DIRECTORY_SEPARATOR . 'root' . DIRECTORY_SEPARATOR);
