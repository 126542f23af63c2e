#include "core/logs/LogCatalog.h"

#include "core/InstallPaths.h"
#include "core/servers/MysqlServer.h"

std::vector<LogEntry> LogCatalog::Entries(const InstallPaths& paths) {
    wxString mysqlLog = MysqlServer(paths).ErrorLogPath();
    if (mysqlLog.empty())
        mysqlLog = paths.MysqlDataFolder() + "/mysql.err";
    return {{"apache-error", "LOGVIEW_APACHE_ERROR", paths.ApacheErrorLog()},
            {"apache-access", "LOGVIEW_APACHE_ACCESS", paths.ApacheAccessLog()},
            {"php", "LOGVIEW_PHP", paths.ApacheFolder() + "/logs/php_error.log"},
            {"mysql", "LOGVIEW_MYSQL", mysqlLog}};
}

bool LogCatalog::Find(const InstallPaths& paths, const wxString& name, LogEntry& entry) {
    for (const LogEntry& candidate : Entries(paths))
        if (candidate.name == name) {
            entry = candidate;
            return true;
        }
    return false;
}
