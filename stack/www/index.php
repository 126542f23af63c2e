<?php
/*
 * Kovix welcome page: the versions of the running stack, the tools and the
 * projects of this www folder. Replace it with your own site whenever you like.
 */
declare(strict_types=1);

function h(string $text): string
{
    return htmlspecialchars($text, ENT_QUOTES, 'UTF-8');
}

function apacheVersion(): string
{
    $software = function_exists('apache_get_version') ? (string) apache_get_version()
                                                      : (string) ($_SERVER['SERVER_SOFTWARE'] ?? '');
    return preg_match('~Apache/([0-9.]+)~', $software, $m) ? $m[1] : ($software !== '' ? $software : 'unknown');
}

/* Returns [state, detail]: state is "ok", "off" or "warn". */
function mariadbStatus(): array
{
    if (!extension_loaded('mysqli')) {
        return ['warn', 'the mysqli extension is switched off in php.ini'];
    }
    $socket = (string) ini_get('mysqli.default_socket');
    if ($socket === '' || !file_exists($socket)) {
        return ['off', 'start it from the Kovix panel'];
    }
    mysqli_report(MYSQLI_REPORT_OFF);
    $link = @mysqli_connect('localhost', 'root', '', '', 0, $socket);
    if ($link === false) {
        $code = mysqli_connect_errno();
        if ($code === 2002) {
            return ['off', 'start it from the Kovix panel'];
        }
        return ['warn', 'running; the version needs a login (' . mysqli_connect_error() . ')'];
    }
    $version = mysqli_get_server_info($link);
    mysqli_close($link);
    return ['ok', preg_replace('~^5\.5\.5-~', '', $version)];
}

function projects(): array
{
    $found = [];
    foreach (scandir(__DIR__) ?: [] as $entry) {
        if ($entry[0] !== '.' && $entry !== 'kovix' && is_dir(__DIR__ . '/' . $entry)) {
            $found[] = $entry;
        }
    }
    return $found;
}

[$dbState, $dbDetail] = mariadbStatus();
$iniFile = php_ini_loaded_file();
$extensions = get_loaded_extensions();
natcasesort($extensions);
?>
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Kovix - local web server</title>
<style>
    :root { --ink: #1f2933; --muted: #627d98; --line: #d9e2ec; --accent: #2f6fde; --ok: #1f9d55; --off: #c53030; --warn: #b7791f; }
    * { box-sizing: border-box; }
    body { margin: 0; font: 15px/1.5 system-ui, -apple-system, "Segoe UI", Roboto, Ubuntu, sans-serif; color: var(--ink); background: #f0f4f8; }
    header { background: linear-gradient(120deg, #1e3a8a, var(--accent)); color: #fff; padding: 36px 24px 72px; }
    header h1 { margin: 0; font-size: 30px; font-weight: 600; letter-spacing: .5px; }
    header p { margin: 6px 0 0; opacity: .85; }
    main { max-width: 980px; margin: -48px auto 40px; padding: 0 24px; }
    .cards { display: grid; grid-template-columns: repeat(auto-fit, minmax(220px, 1fr)); gap: 16px; }
    .card, section { background: #fff; border: 1px solid var(--line); border-radius: 10px; box-shadow: 0 2px 8px rgba(15, 23, 42, .06); }
    .card { padding: 18px 20px; }
    .card h2 { margin: 0 0 6px; font-size: 13px; text-transform: uppercase; letter-spacing: 1px; color: var(--muted); }
    .card .value { font-size: 22px; font-weight: 600; word-break: break-word; }
    .dot { display: inline-block; width: 10px; height: 10px; border-radius: 50%; margin-right: 8px; vertical-align: middle; }
    .ok { background: var(--ok); } .off { background: var(--off); } .warn { background: var(--warn); }
    .small { font-size: 13px; color: var(--muted); word-break: break-all; }
    section { margin-top: 20px; padding: 20px 24px; }
    section h2 { margin: 0 0 12px; font-size: 18px; }
    .tools { display: flex; flex-wrap: wrap; gap: 12px; }
    .tools a { display: inline-block; padding: 10px 18px; border-radius: 8px; background: var(--accent); color: #fff; text-decoration: none; font-weight: 500; }
    .tools a:hover { background: #1e4fb0; }
    ul.projects { list-style: none; margin: 0; padding: 0; display: grid; grid-template-columns: repeat(auto-fill, minmax(200px, 1fr)); gap: 8px; }
    ul.projects a { display: block; padding: 8px 12px; border: 1px solid var(--line); border-radius: 6px; color: var(--ink); text-decoration: none; }
    ul.projects a:hover { border-color: var(--accent); color: var(--accent); }
    .tags { display: flex; flex-wrap: wrap; gap: 6px; }
    .tags span { padding: 2px 8px; border-radius: 4px; background: #e4ecf7; font-size: 13px; }
    footer { text-align: center; color: var(--muted); font-size: 13px; padding-bottom: 24px; }
</style>
</head>
<body>
<header>
    <h1>Kovix</h1>
    <p>Your local web server is running. This page is <code>www/index.php</code>: replace it with your own work.</p>
</header>
<main>
    <div class="cards">
        <div class="card">
            <h2>Apache</h2>
            <div class="value"><span class="dot ok"></span><?= h(apacheVersion()) ?></div>
            <div class="small">port <?= h((string) ($_SERVER['SERVER_PORT'] ?? '')) ?></div>
        </div>
        <div class="card">
            <h2>PHP</h2>
            <div class="value"><span class="dot ok"></span><?= h(PHP_VERSION) ?></div>
            <div class="small"><?= h($iniFile === false ? 'no php.ini loaded' : $iniFile) ?></div>
        </div>
        <div class="card">
            <h2>MariaDB</h2>
            <div class="value"><span class="dot <?= $dbState ?>"></span><?= h($dbState === 'ok' ? $dbDetail : ($dbState === 'off' ? 'not running' : 'unknown')) ?></div>
            <div class="small"><?= h($dbState === 'ok' ? (string) ini_get('mysqli.default_socket') : $dbDetail) ?></div>
        </div>
    </div>

    <section>
        <h2>Tools</h2>
        <div class="tools">
            <a href="kovix/phpinfo.php">phpinfo()</a>
            <a href="mysql/">phpMyAdmin</a>
        </div>
    </section>

    <section>
        <h2>Your projects</h2>
        <?php $folders = projects(); ?>
        <?php if ($folders === []): ?>
            <p class="small">No project yet: every folder you create in <code>www</code> shows up here.</p>
        <?php else: ?>
            <ul class="projects">
                <?php foreach ($folders as $folder): ?>
                    <li><a href="<?= h(rawurlencode($folder)) ?>/"><?= h($folder) ?></a></li>
                <?php endforeach; ?>
            </ul>
        <?php endif; ?>
    </section>

    <section>
        <h2>Loaded PHP extensions</h2>
        <div class="tags">
            <?php foreach ($extensions as $extension): ?>
                <span><?= h($extension) ?></span>
            <?php endforeach; ?>
        </div>
    </section>
</main>
<footer>Kovix &middot; Apache, PHP and MariaDB in one folder</footer>
</body>
</html>
