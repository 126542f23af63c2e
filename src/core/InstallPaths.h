#pragma once

#include <wx/string.h>

class AppSettings;

// Every path of the stack tree and the local web addresses, derived afresh on each call from the
// program folder and the current settings (PHP version, port), so a change takes effect at once.
// Folders are joined with the platform's separator ("/" here, "\\" on Windows) and programs carry
// its program suffix; none but the sessions and extra-configuration folders end in a separator.
class InstallPaths {
public:
    InstallPaths(const wxString& programFolder, const AppSettings& settings);

    // The folder of the running executable, without trailing separator.
    static wxString ExecutableFolder();

    wxString ProgramFolder() const { return programFolder; }
    const AppSettings& Settings() const { return settings; }
    wxString SettingsFile() const;
    wxString WwwFolder() const;
    wxString ApacheFolder() const;
    wxString PhpFolder() const;
    wxString MysqlFolder() const;

    wxString SessionsFolder() const;
    wxString ApacheExtraFolder() const;
    wxString ApacheSourceConfig() const;
    wxString ApacheInitialConfig() const;
    wxString ApacheLiveConfig() const;
    wxString ApacheExecutable() const;
    wxString ApacheAccessLog() const;
    wxString ApacheErrorLog() const;
    wxString PhpLiveConfig() const;
    wxString PhpSourceConfig() const;
    wxString PhpInitialConfig() const;
    wxString PhpExtensionFolder() const;
    wxString MysqlBinFolder() const;
    wxString MysqlDataFolder() const;
    wxString MysqlSourceConfig() const;
    wxString MysqlLiveConfig() const;
    wxString MysqlExecutable() const;
    wxString MysqlAdminTool() const;
    // The admin tool's option file: my.ini's options and the tree's shutdown password, for the
    // tree's owner only (made by the assembler).
    wxString MysqlAdminConfig() const;
    // The one folder where the server may read and write files for SQL (secure_file_priv).
    wxString MysqlFilesFolder() const;
    wxString SqliteBrowser() const;
    // The generated configuration of the sites and of HTTPS, included by httpd.conf.
    wxString SitesLiveConfig() const;
    // The local certificate authority (mkcert's CAROOT) and the one certificate Apache serves.
    wxString SslFolder() const;
    wxString CertificateAuthorityFolder() const;
    wxString SiteCertificate() const;
    wxString SiteCertificateKey() const;
    // The shared libraries of a portable tree; a tree linked to the system's servers has none.
    wxString LibraryFolder() const;
    // The mkcert a portable tree carries; a linked tree uses the system's.
    wxString BundledMkcert() const;

    static wxString ApacheProcessName();
    static wxString MysqlProcessName();

    wxString LocalSiteUrl() const;
    wxString PhpMyAdminUrl() const;
    wxString PhpInfoUrl() const;
    // The address of a site (a host name under .localhost) over HTTP or HTTPS.
    wxString SiteUrl(const wxString& siteName, bool https) const;

private:
    wxString programFolder;
    const AppSettings& settings;
};
