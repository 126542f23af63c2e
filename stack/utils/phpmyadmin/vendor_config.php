<?php
/*
 * Kovix: phpMyAdmin's vendor configuration for this tree.
 *
 * The system's settings, except that the configuration file and the
 * temporary folder are those of utils/phpmyadmin in this tree. This file is
 * installed as root/libraries/vendor_config.php; the rest of root/ links to
 * the system's phpMyAdmin.
 */
declare(strict_types=1);

if (! defined('PHPMYADMIN')) {
    exit;
}

$kovixFolder = dirname(__DIR__, 2);
$systemRoot = dirname((string) realpath(ROOT_PATH . 'index.php'));

$vendorConfig = require $systemRoot . '/libraries/vendor_config.php';
$vendorConfig['configFile'] = $kovixFolder . '/config.inc.php';
$vendorConfig['tempDir'] = $kovixFolder . '/tmp/';

return $vendorConfig;
