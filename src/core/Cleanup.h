#pragma once

#include "core/InstallPaths.h"

#include <wx/string.h>

// Removing what the servers accumulate and putting the shipped templates back. A file or folder
// that is not there is nothing to do. Every operation goes on past a file it cannot remove or
// write, and answers those, one line each naming the file and the system's reason ("" when all
// was done).
namespace Cleanup {

wxString DeleteApacheLogs(const InstallPaths& paths);
wxString DeletePhpSessions(const InstallPaths& paths);
// Error logs, binary logs and the InnoDB files (*.err, mysql-bin.*, ibdata*, ib_logfile*, in
// this order): all of MySQL's runtime files in the data folder.
wxString DeleteMysqlLogs(const InstallPaths& paths);

// Copies httpd_initial.conf over httpd_source.conf when the initial copy exists.
wxString RestoreApache(const InstallPaths& paths);
// Copies php_initial.ini over php_source.ini when the source exists (it tests the other file
// than the Apache restore on purpose).
wxString RestorePhp(const InstallPaths& paths);

// The log menu's removals.
enum class LogAction { ApacheLogs, MysqlLogs, Sessions, All };

// The language key of the refusal when the action may not run while these servers run, or "".
wxString RefusalKey(LogAction action, bool apacheRuns, bool mysqlRuns);
// Runs the action's removals (All: Apache logs, sessions, MySQL logs), without the refusal test.
wxString Run(LogAction action, const InstallPaths& paths);

} // namespace Cleanup
