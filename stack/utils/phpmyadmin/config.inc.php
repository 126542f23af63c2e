<?php
/*
 * Kovix: phpMyAdmin configuration of this tree (served at /mysql/).
 *
 * phpMyAdmin connects to this tree's MariaDB through its socket. The root
 * account has no password, as usual on a local development stack: if you give
 * it one, phpMyAdmin simply asks for it. All settings:
 * https://docs.phpmyadmin.net/en/latest/config.html
 */
declare(strict_types=1);

// Key of the login cookie, generated for this tree when it was assembled.
$cfg['blowfish_secret'] = '@BLOWFISH_SECRET@';

$i = 1;
$cfg['Servers'][$i]['auth_type'] = 'cookie';
$cfg['Servers'][$i]['host'] = 'localhost';
$cfg['Servers'][$i]['connect_type'] = 'socket';
$cfg['Servers'][$i]['socket'] = dirname(__DIR__, 2) . '/mysql/mysql.sock';
$cfg['Servers'][$i]['AllowNoPassword'] = true;

$cfg['TempDir'] = __DIR__ . '/tmp';
$cfg['UploadDir'] = '';
$cfg['SaveDir'] = '';
$cfg['VersionCheck'] = false;
$cfg['PmaNoRelation_DisableWarning'] = true;
