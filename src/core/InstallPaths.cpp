#include "core/InstallPaths.h"

#include "core/AppSettings.h"
#include "platform/Platform.h"

#include <wx/filename.h>

InstallPaths::InstallPaths(const wxString& programFolder, const AppSettings& settings)
    : programFolder(programFolder), settings(settings) {}

wxString InstallPaths::ExecutableFolder() {
    return wxFileName(Platform::Get().ExecutablePath()).GetPath();
}

wxString InstallPaths::SettingsFile() const {
    return programFolder + "/kovix.ini";
}
wxString InstallPaths::WwwFolder() const {
    return programFolder + "/www";
}
wxString InstallPaths::ApacheFolder() const {
    return programFolder + "/apache";
}
wxString InstallPaths::PhpFolder() const {
    return ApacheFolder() + "/" + settings.GetPhpVersion();
}
wxString InstallPaths::MysqlFolder() const {
    return programFolder + "/mysql";
}

wxString InstallPaths::SessionsFolder() const {
    return ApacheFolder() + "/sessions/";
}
wxString InstallPaths::ApacheExtraFolder() const {
    return ApacheFolder() + "/conf/extra/";
}
wxString InstallPaths::ApacheSourceConfig() const {
    return ApacheFolder() + "/conf/httpd_source.conf";
}
wxString InstallPaths::ApacheInitialConfig() const {
    return ApacheFolder() + "/conf/httpd_initial.conf";
}
wxString InstallPaths::ApacheScratchConfig() const {
    return ApacheFolder() + "/conf/httpd_source_temp.conf";
}
wxString InstallPaths::ApacheLiveConfig() const {
    return ApacheFolder() + "/conf/httpd.conf";
}
wxString InstallPaths::ApacheExecutable() const {
    return ApacheFolder() + "/bin/httpd";
}
wxString InstallPaths::ApacheAccessLog() const {
    return ApacheFolder() + "/logs/access.log";
}
wxString InstallPaths::ApacheErrorLog() const {
    return ApacheFolder() + "/logs/error.log";
}
wxString InstallPaths::PhpLiveConfig() const {
    return ApacheFolder() + "/php.ini";
}
wxString InstallPaths::PhpSourceConfig() const {
    return PhpFolder() + "/php_source.ini";
}
wxString InstallPaths::PhpInitialConfig() const {
    return PhpFolder() + "/php_initial.ini";
}
wxString InstallPaths::PhpScratchConfig() const {
    return PhpFolder() + "/php_source_temp.ini";
}
wxString InstallPaths::PhpExtensionFolder() const {
    return PhpFolder() + "/ext";
}
wxString InstallPaths::MysqlBinFolder() const {
    return MysqlFolder() + "/bin";
}
wxString InstallPaths::MysqlDataFolder() const {
    return MysqlFolder() + "/data";
}
wxString InstallPaths::MysqlSourceConfig() const {
    return MysqlFolder() + "/my_source.ini";
}
wxString InstallPaths::MysqlLiveConfig() const {
    return MysqlFolder() + "/my.ini";
}
wxString InstallPaths::MysqlExecutable() const {
    return MysqlBinFolder() + "/mysqld";
}
wxString InstallPaths::MysqlAdminTool() const {
    return MysqlBinFolder() + "/mysqladmin";
}
wxString InstallPaths::SqliteBrowser() const {
    return programFolder + "/utils/SQLiteBrowser";
}

wxString InstallPaths::LocalSiteUrl() const {
    if (settings.GetPort() == 80)
        return "http://localhost/";
    return "http://localhost:" + settings.GetPortText() + "/";
}

wxString InstallPaths::PhpMyAdminUrl() const {
    return LocalSiteUrl() + "mysql/";
}
wxString InstallPaths::PhpInfoUrl() const {
    return LocalSiteUrl() + "kovix/phpinfo.php";
}
