#include "core/Cleanup.h"

#include "core/FolderListing.h"
#include "core/TextFiles.h"
#include "platform/Platform.h"

#include <wx/filefn.h>
#include <wx/log.h>

namespace Cleanup {

namespace {

// Removes the files of folder matching pattern; folder + separator + name, even when folder
// already ends with a separator (the doubled one is harmless).
void DeleteMatching(const wxString& folder, const wxString& pattern) {
    wxLogNull quiet;
    for (const wxString& name : ListFolder(folder, pattern, wxDIR_FILES | wxDIR_HIDDEN))
        wxRemoveFile(folder + Platform::Get().PathSeparator() + name);
}

} // namespace

void DeleteApacheLogs(const InstallPaths& paths) {
    wxLogNull quiet;
    wxRemoveFile(paths.ApacheAccessLog());
    wxRemoveFile(paths.ApacheErrorLog());
}

void DeletePhpSessions(const InstallPaths& paths) {
    DeleteMatching(paths.SessionsFolder(), "*");
}

void DeleteMysqlLogs(const InstallPaths& paths) {
    for (const char* pattern : {"*.err", "mysql-bin.*", "ibdata*", "ib_logfile*"})
        DeleteMatching(paths.MysqlDataFolder(), pattern);
}

void RestoreApache(const InstallPaths& paths) {
    wxLogNull quiet;
    if (wxFileExists(paths.ApacheInitialConfig()))
        TextFiles::CopyAtomically(paths.ApacheInitialConfig(), paths.ApacheSourceConfig());
}

void RestorePhp(const InstallPaths& paths) {
    wxLogNull quiet;
    if (wxFileExists(paths.PhpSourceConfig()))
        TextFiles::CopyAtomically(paths.PhpInitialConfig(), paths.PhpSourceConfig());
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

void Run(LogAction action, const InstallPaths& paths) {
    if (action == LogAction::ApacheLogs || action == LogAction::All)
        DeleteApacheLogs(paths);
    if (action == LogAction::Sessions || action == LogAction::All)
        DeletePhpSessions(paths);
    if (action == LogAction::MysqlLogs || action == LogAction::All)
        DeleteMysqlLogs(paths);
}

} // namespace Cleanup
