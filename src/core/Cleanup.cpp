#include "core/Cleanup.h"

#include "core/FileErrors.h"
#include "core/FolderListing.h"
#include "core/TextFiles.h"
#include "platform/Platform.h"

#include <wx/filefn.h>
#include <wx/log.h>

namespace Cleanup {

namespace {

wxString Remove(const wxString& path) {
    wxLogNull quiet;
    return !wxFileExists(path) || wxRemoveFile(path) ? wxString()
                                                     : FileErrors::CannotRemove(path) + "\n";
}

// Removes the files of folder matching pattern.
wxString DeleteMatching(const wxString& folder, const wxString& pattern) {
    const wxString separator = Platform::Get().PathSeparator();
    const wxString prefix = folder.EndsWith(separator) ? folder : folder + separator;
    wxString failures;
    for (const wxString& name : ListFolder(folder, pattern, wxDIR_FILES | wxDIR_HIDDEN))
        failures += Remove(prefix + name);
    return failures;
}

wxString CopyOver(const wxString& from, const wxString& to) {
    std::string bytes;
    if (!TextFiles::ReadBytes(from, bytes))
        return FileErrors::CannotRead(from) + "\n";
    if (!Platform::Get().SaveFileAtomically(to, bytes))
        return FileErrors::CannotWrite(to) + "\n";
    return wxString();
}

} // namespace

wxString DeleteApacheLogs(const InstallPaths& paths) {
    return Remove(paths.ApacheAccessLog()) + Remove(paths.ApacheErrorLog());
}

wxString DeletePhpSessions(const InstallPaths& paths) {
    return DeleteMatching(paths.SessionsFolder(), "*");
}

wxString DeleteMysqlLogs(const InstallPaths& paths) {
    wxString failures;
    for (const char* pattern : {"*.err", "mysql-bin.*", "ibdata*", "ib_logfile*"})
        failures += DeleteMatching(paths.MysqlDataFolder(), pattern);
    return failures;
}

wxString RestoreApache(const InstallPaths& paths) {
    wxLogNull quiet;
    if (!wxFileExists(paths.ApacheInitialConfig()))
        return wxString();
    return CopyOver(paths.ApacheInitialConfig(), paths.ApacheSourceConfig());
}

wxString RestorePhp(const InstallPaths& paths) {
    wxLogNull quiet;
    if (!wxFileExists(paths.PhpSourceConfig()))
        return wxString();
    return CopyOver(paths.PhpInitialConfig(), paths.PhpSourceConfig());
}

wxString RefusalKey(LogAction action, bool apacheRuns, bool mysqlRuns) {
    switch (action) {
    case LogAction::ApacheLogs:
        return apacheRuns ? "LOG_APACHE_DELETE_RUNNING" : "";
    case LogAction::MysqlLogs:
        return mysqlRuns ? "LOG_MYSQL_DELETE_RUNNING" : "";
    case LogAction::Sessions:
        return "";
    case LogAction::All:
        return apacheRuns || mysqlRuns ? "LOG_ALL_DELETE_RUNNING" : "";
    }
    return "";
}

wxString Run(LogAction action, const InstallPaths& paths) {
    wxString failures;
    if (action == LogAction::ApacheLogs || action == LogAction::All)
        failures += DeleteApacheLogs(paths);
    if (action == LogAction::Sessions || action == LogAction::All)
        failures += DeletePhpSessions(paths);
    if (action == LogAction::MysqlLogs || action == LogAction::All)
        failures += DeleteMysqlLogs(paths);
    return failures;
}

} // namespace Cleanup
