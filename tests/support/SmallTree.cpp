#include "support/SmallTree.h"

#include "support/TestTree.h"
#include "support/TreeFiles.h"

SmallTree::SmallTree() : dir("kovix-small"), scope("KOVIX_PROCESS_SCOPE", dir.Path()) {
    const wxString& root = dir.Path();
    WriteTreeFile(root, "apache/conf/httpd_source.conf", "Listen {APACHE_PORT}\n");
    WriteTreeFile(root, "apache/php_8.2/php_source.ini", "extension=php_gd.so\n");
    WriteTreeFile(root, "apache/php_7.4/php_source.ini", "extension=php_gd.so\n");
    WriteTreeFile(root, "apache/logs/access.log", "GET /\n");
    WriteTreeFile(root, "apache/logs/error.log", "notice\n");
    WriteTreeFile(root, "apache/sessions/sess_1", "a|s:1:\"b\";\n");
    // A free MySQL port: the start's port test does not depend on who holds 3306.
    WriteTreeFile(root, "mysql/my_source.ini",
                  wxString::Format("[mysqld]\nport=%d\n", TestTree::FreePort()).utf8_string());
    WriteTreeFile(root, "mysql/data/mysql.err", "ready\n");
    WriteTreeFile(root, "www/index.php", "<?php\n");
}
