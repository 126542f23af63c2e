#pragma once

#include <wx/string.h>

#include <functional>
#include <vector>

class InstallPaths;
class wxOutputStream;

// A database of the tree's server with what it holds.
struct DatabaseInfo {
    wxString name;
    long tables = 0;
    long long bytes = 0; // data and indexes
};

// Why an operation did not happen: a language key and, when there is one, what the failing
// program or the system said (or the file concerned). The caller words it, on its own thread.
struct DatabaseError {
    wxString key;
    wxString detail;
};

// The error as the user reads it, in the current language. Call it on the thread that owns the
// language table (the main one).
wxString DatabaseErrorText(const DatabaseError& error);
// What a restore that succeeded says, naming the safety backup when one was made (same thread).
wxString RestoreDoneText(const wxString& database, const wxString& safetyBackup);

// Told how far a long operation is, from 0 to 1; returns false to stop it.
using DatabaseProgress = std::function<bool(double)>;

// Backup and restore of the tree's own MariaDB with Debian's client programs, through the socket
// of the generated my.ini as its root account (which needs no password on the local socket).
// A backup is written as "NAME-YYYYmmdd-HHMMSS.sql.gz" in the tree's backups folder under a
// hidden scratch name, renamed once complete: a failed or stopped dump leaves nothing behind and
// no backup is ever replaced. A restore checks the whole file first (a complete dump of the
// client, intact compression), so a damaged file changes nothing; before it replaces a database
// that exists it backs that database up (the safety backup, an ordinary backup), and when the
// load then fails or is stopped it loads the safety backup back, so nothing is lost (a database
// the restore created is dropped again). Every
// operation refuses at once when the server is not running. Safe to use from a worker thread.
class DatabaseTool {
public:
    explicit DatabaseTool(const InstallPaths& paths);

    static wxString BackupFolderOf(const InstallPaths& paths);
    // The database a backup file was made of: its name without the time and extensions.
    static wxString DatabaseOfBackup(const wxString& file);

    // The user databases (the server's own are left out), by name.
    bool List(std::vector<DatabaseInfo>& databases, DatabaseError& error) const;
    bool Exists(const wxString& name, bool& exists, DatabaseError& error) const;
    // file receives the path of the backup written. expectedBytes (0: unknown) drives progress.
    bool Backup(const wxString& name, long long expectedBytes, wxString& file, DatabaseError& error,
                const DatabaseProgress& progress = {}) const;
    // Replaces the content of the database into (created when absent; empty: the one the file
    // is named after) by the backup's. safetyBackup receives the backup made of the database
    // first, empty when there was none to make; on failure error names it.
    bool Restore(const wxString& file, const wxString& into, wxString& safetyBackup,
                 DatabaseError& error, const DatabaseProgress& progress = {}) const;
    // True for a complete, intact dump; error says why not.
    static bool CheckBackup(const wxString& file, DatabaseError& error);

private:
    bool ServerReady(DatabaseError& error) const;
    std::vector<wxString> ClientCommand(const wxString& program) const;
    bool RunSql(const wxString& sql, wxString& output, DatabaseError& error) const;
    wxString FreeBackupName(const wxString& name) const;
    bool Load(const wxString& file, const wxString& target, DatabaseError& error,
              const DatabaseProgress& progress) const;
    void PutBack(const wxString& safetyBackup, const wxString& target, DatabaseError& error) const;
    void RemoveHalfLoaded(const wxString& target, DatabaseError& error) const;
    bool DumpInto(const wxString& name, wxOutputStream& out, long long expectedBytes,
                  DatabaseError& error, const DatabaseProgress& progress) const;

    wxString liveConfig;
    wxString clientFolder;
    wxString socket;
    wxString backupFolder;
};
