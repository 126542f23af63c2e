#include "core/ConfigGenerator.h"

#include "core/AppSettings.h"
#include "core/FileErrors.h"
#include "core/FolderListing.h"
#include "core/PhpVersions.h"
#include "core/SharedRegex.h"
#include "core/TextFiles.h"
#include "core/sites/SiteConfig.h"
#include "platform/Platform.h"

#include <wx/time.h>

#include <algorithm>

namespace {

// The servers' configuration files get folders with forward slashes on every system (Apache reads
// a backslash as an escape in some directives).
wxString ForwardSlashes(wxString path) {
    const wxString separator = Platform::Get().PathSeparator();
    if (separator != "/")
        path.Replace(separator, "/");
    return path;
}

// PHP's sendmail_path: the tree's kovixctl catching the message. PHP hands the value to /bin/sh,
// so the program is single-quoted for the shell; the whole is an ini double-quoted string, where
// a backslash, a double quote and a dollar (which would name an environment variable) are
// escaped. Any folder name thus reaches kovixctl unchanged. (PHP on Windows does not use it.)
wxString SendmailCommand(const wxString& programFolder) {
    wxString program = ForwardSlashes(programFolder) + "/kovixctl";
    program.Replace("'", "'\\''");
    wxString command = "'" + program + "' mail catch";
    for (const char* special : {"\\", "\"", "$"})
        command.Replace(special, wxString("\\") + special);
    return "\"" + command + "\"";
}

} // namespace

ReplacementList ConfigGenerator::ApacheReplacements() const {
    const AppSettings& settings = paths.Settings();
    const wxString moduleFile = PhpVersions::ModuleFile(paths);
    return {{"{APACHEPATH}", ForwardSlashes(paths.ApacheFolder())},
            {"{DOCUMENTPATH}", ForwardSlashes(paths.WwwFolder())},
            {"{PHPPATH}", ForwardSlashes(paths.PhpFolder())},
            {"{PHPAPACHE2FILE}", moduleFile},
            {"{PHPEXTPATH}", ForwardSlashes(paths.PhpExtensionFolder())},
            {"{PHPMODULENAME}", PhpVersions::ModuleNameOf(moduleFile)},
            {"{APACHE_PORT}", settings.GetPortText()},
            {"{ONLINE_MODE}", AccessText(settings.IsOnline())},
            {"{APACHE_LISTEN}", ListenText(settings.GetPort(), settings.IsOnline())},
            {"{SENDMAIL_COMMAND}", SendmailCommand(paths.ProgramFolder())}};
}

ReplacementList ConfigGenerator::MysqlReplacements() const {
    return {{"{MYSQLPATH}", ForwardSlashes(paths.MysqlFolder())},
            {"{MYSQLBINPATH}", ForwardSlashes(paths.MysqlBinFolder())},
            {"{MYSQLDATAPATH}", ForwardSlashes(paths.MysqlDataFolder())}};
}

wxString ConfigGenerator::AccessText(bool online) {
    if (online)
        return "Order allow,deny\n\tAllow from all\n";
    return "Order deny,allow\n\tDeny from all\n\tAllow from 127.0.0.1 localhost\n";
}

// Access rules alone would still let every address reach the port and see Apache's refusal;
// offline, nothing outside this machine should even connect.
wxString ConfigGenerator::ListenText(int port, bool online, const wxString& protocol) {
    const wxString ending = protocol.empty() ? wxString() : " " + protocol;
    if (online)
        return wxString::Format("Listen %d", port) + ending;
    wxString text = wxString::Format("Listen 127.0.0.1:%d", port) + ending;
    if (Platform::Get().HasIpv6Loopback())
        text << "\n" << wxString::Format("Listen [::1]:%d", port) << ending;
    return text;
}

wxString ConfigGenerator::ExpandFile(const wxString& templatePath, const wxString& outputPath,
                                     const ReplacementList& replacements) {
    wxString text;
    if (!TextFiles::Read(templatePath, text))
        return FileErrors::CannotRead(templatePath) + "\n";
    for (const Replacement& replacement : replacements)
        text.Replace(replacement.placeholder, replacement.value, true);
    if (!TextFiles::WriteAtomically(outputPath, text))
        return FileErrors::CannotWrite(outputPath) + "\n";
    return wxString();
}

GenerationReport ConfigGenerator::GenerateApache() const {
    const ReplacementList replacements = ApacheReplacements();
    GenerationReport report = SiteConfig(paths).Generate();
    report.failures =
        ExpandFile(paths.ApacheSourceConfig(), paths.ApacheLiveConfig(), replacements) +
        ExpandFile(paths.PhpSourceConfig(), paths.PhpLiveConfig(), replacements) +
        GenerateExtraFolder(replacements) + report.failures;
    return report;
}

// "name_source.conf" gives "name.conf"; other "*source.conf" files and sub-folders are skipped.
wxString ConfigGenerator::GenerateExtraFolder(const ReplacementList& replacements) const {
    static const SharedRegex templateName("(.*)_source.conf");
    const wxString folder = paths.ApacheExtraFolder();
    std::vector<wxString> names = ListFolder(folder, "*source.conf", wxDIR_FILES);
    std::sort(names.begin(), names.end());
    std::vector<wxString> groups;
    wxString failures;
    for (const wxString& templateFile : names)
        if (templateName.Match(templateFile, groups))
            failures +=
                ExpandFile(folder + templateFile, folder + groups[1] + ".conf", replacements);
    return failures;
}

wxString ConfigGenerator::GenerateMysql() const {
    return ExpandFile(paths.MysqlSourceConfig(), paths.MysqlLiveConfig(), MysqlReplacements());
}

void ConfigGenerator::ApplyStartupDefaults(AppSettings& settings, const InstallPaths& paths) {
    PhpVersions::SelectFirstIfUnset(settings, paths);
    long port = 0;
    if (!ParseDecimal(settings.GetPortText(), port))
        settings.SetPort(settings.GetPort());
}

TemplateWatch::TemplateWatch(std::function<wxString()> templatePath)
    : templatePath(std::move(templatePath)), remembered(wxGetUTCTimeMillis().GetValue()) {
    HasChanged();
}

TemplateWatch TemplateWatch::ApacheSource(const InstallPaths& paths) {
    return TemplateWatch([paths] { return paths.ApacheSourceConfig(); });
}

TemplateWatch TemplateWatch::PhpSource(const InstallPaths& paths) {
    return TemplateWatch([paths] { return paths.PhpSourceConfig(); });
}

TemplateWatch TemplateWatch::MysqlSource(const InstallPaths& paths) {
    return TemplateWatch([paths] { return paths.MysqlSourceConfig(); });
}

bool TemplateWatch::HasChanged() {
    std::int64_t modified = 0;
    if (!Platform::Get().FileModificationTime(templatePath(), modified) || modified == remembered)
        return false;
    remembered = modified;
    return true;
}
