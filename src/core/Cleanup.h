#pragma once

#include "core/InstallPaths.h"

#include <wx/string.h>

// Removing what the servers accumulate and putting the shipped templates back. Every operation
// ignores failures (missing files and folders, files in use).
namespace Cleanup {

void DeleteApacheLogs(const InstallPaths& paths);
void DeletePhpSessions(const InstallPaths& paths);
// Error logs, binary logs and the InnoDB files (*.err, mysql-bin.*, ibdata*, ib_logfile*, in
// this order): all of MySQL's runtime files in the data folder.
void DeleteMysqlLogs(const InstallPaths& paths);

// Copies httpd_initial.conf over httpd_source.conf when the initial copy exists.
void RestoreApache(const InstallPaths& paths);
// Copies php_initial.ini over php_source.ini when the source exists (it tests the other file
// than the Apache restore on purpose).
void RestorePhp(const InstallPaths& paths);

// The log menu's removals.
enum class LogAction { ApacheLogs, MysqlLogs, Sessions, All };

// The language key of the refusal when the action may not run while these servers run, or "".
wxString RefusalKey(LogAction action, bool apacheRuns, bool mysqlRuns);
// Runs the action's removals (All: Apache logs, sessions, MySQL logs), without the refusal test.
void Run(LogAction action, const InstallPaths& paths);

} // namespace Cleanup
