#include "core/InstallPaths.h"

#include "core/AppSettings.h"
#include "platform/Platform.h"

#include <wx/filename.h>

namespace {

// A relative path written with "/" as the suffix of a tree path: the platform's separator in front
// and between the names.
wxString Join(const wxString& relative) {
    const wxString separator = Platform::Get().PathSeparator();
    wxString suffix = separator + relative;
    suffix.Replace("/", separator);
    return suffix;
}

wxString Program(const wxString& relative) {
    return Join(relative) + Platform::Get().ProgramSuffix();
}

} // namespace

InstallPaths::InstallPaths(const wxString& programFolder, const AppSettings& settings)
    : programFolder(programFolder), settings(settings) {}

wxString InstallPaths::ApacheProcessName() {
    return "httpd" + Platform::Get().ProgramSuffix();
}
wxString InstallPaths::MysqlProcessName() {
    return "mysqld" + Platform::Get().ProgramSuffix();
}

wxString InstallPaths::ExecutableFolder() {
    return wxFileName(Platform::Get().ExecutablePath()).GetPath();
}

wxString InstallPaths::SettingsFile() const {
    return programFolder + Join("kovix.ini");
}
wxString InstallPaths::WwwFolder() const {
    return programFolder + Join("www");
}
wxString InstallPaths::ApacheFolder() const {
    return programFolder + Join("apache");
}
wxString InstallPaths::PhpFolder() const {
    return ApacheFolder() + Platform::Get().PathSeparator() + settings.GetPhpVersion();
}
wxString InstallPaths::MysqlFolder() const {
    return programFolder + Join("mysql");
}

wxString InstallPaths::SessionsFolder() const {
    return ApacheFolder() + Join("sessions/");
}
wxString InstallPaths::ApacheExtraFolder() const {
    return ApacheFolder() + Join("conf/extra/");
}
wxString InstallPaths::ApacheSourceConfig() const {
    return ApacheFolder() + Join("conf/httpd_source.conf");
}
wxString InstallPaths::ApacheInitialConfig() const {
    return ApacheFolder() + Join("conf/httpd_initial.conf");
}
wxString InstallPaths::ApacheLiveConfig() const {
    return ApacheFolder() + Join("conf/httpd.conf");
}
wxString InstallPaths::ApacheExecutable() const {
    return ApacheFolder() + Program("bin/httpd");
}
wxString InstallPaths::ApacheAccessLog() const {
    return ApacheFolder() + Join("logs/access.log");
}
wxString InstallPaths::ApacheErrorLog() const {
    return ApacheFolder() + Join("logs/error.log");
}
wxString InstallPaths::PhpLiveConfig() const {
    return ApacheFolder() + Join("php.ini");
}
wxString InstallPaths::PhpSourceConfig() const {
    return PhpFolder() + Join("php_source.ini");
}
wxString InstallPaths::PhpInitialConfig() const {
    return PhpFolder() + Join("php_initial.ini");
}
wxString InstallPaths::PhpExtensionFolder() const {
    return PhpFolder() + Join("ext");
}
wxString InstallPaths::MysqlBinFolder() const {
    return MysqlFolder() + Join("bin");
}
wxString InstallPaths::MysqlDataFolder() const {
    return MysqlFolder() + Join("data");
}
wxString InstallPaths::MysqlSourceConfig() const {
    return MysqlFolder() + Join("my_source.ini");
}
wxString InstallPaths::MysqlLiveConfig() const {
    return MysqlFolder() + Join("my.ini");
}
wxString InstallPaths::MysqlExecutable() const {
    return MysqlBinFolder() + Program("mysqld");
}
wxString InstallPaths::MysqlAdminTool() const {
    return MysqlBinFolder() + Program("mysqladmin");
}
wxString InstallPaths::MysqlAdminConfig() const {
    return MysqlFolder() + Join("mysqladmin.ini");
}
wxString InstallPaths::MysqlFilesFolder() const {
    return MysqlFolder() + Join("files");
}
wxString InstallPaths::SqliteBrowser() const {
    return programFolder + Program("utils/SQLiteBrowser");
}

wxString InstallPaths::SitesLiveConfig() const {
    return ApacheFolder() + "/conf/sites.conf";
}
wxString InstallPaths::SslFolder() const {
    return programFolder + "/ssl";
}
wxString InstallPaths::CertificateAuthorityFolder() const {
    return SslFolder() + "/ca";
}
wxString InstallPaths::SiteCertificate() const {
    return SslFolder() + "/localhost.pem";
}
wxString InstallPaths::SiteCertificateKey() const {
    return SslFolder() + "/localhost-key.pem";
}

wxString InstallPaths::SiteUrl(const wxString& siteName, bool https) const {
    const int port = https ? settings.GetHttpsPort() : settings.GetPort();
    const bool usual = port == (https ? 443 : 80);
    return (https ? "https://" : "http://") + siteName + ".localhost" +
           (usual ? wxString() : wxString::Format(":%d", port)) + "/";
}

wxString InstallPaths::LibraryFolder() const {
    return programFolder + Join("lib");
}
wxString InstallPaths::BundledMkcert() const {
    return programFolder + Program("utils/mkcert");
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
