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
    wxString ApacheScratchConfig() const;
    wxString ApacheLiveConfig() const;
    wxString ApacheExecutable() const;
    wxString ApacheAccessLog() const;
    wxString ApacheErrorLog() const;
    wxString PhpLiveConfig() const;
    wxString PhpSourceConfig() const;
    wxString PhpInitialConfig() const;
    wxString PhpScratchConfig() const;
    wxString PhpExtensionFolder() const;
    wxString MysqlBinFolder() const;
    wxString MysqlDataFolder() const;
    wxString MysqlSourceConfig() const;
    wxString MysqlLiveConfig() const;
    wxString MysqlExecutable() const;
    wxString MysqlAdminTool() const;
    wxString SqliteBrowser() const;

    static wxString ApacheProcessName();
    static wxString MysqlProcessName();

    wxString LocalSiteUrl() const;
    wxString PhpMyAdminUrl() const;
    wxString PhpInfoUrl() const;

private:
    wxString programFolder;
    const AppSettings& settings;
};
