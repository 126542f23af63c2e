#pragma once

#include "core/ConfigGenerator.h"
#include "core/servers/ServerBase.h"

#include <wx/filefn.h>

#include <memory>

// The MySQL (MariaDB) server of the tree: starts it as a hidden child from a freshly generated
// my.ini, never with the administrator's rights and with file access for SQL confined to the
// tree; shuts it down in order through the admin tool with the panel's own account, whose
// password the tree keeps in an option file of its owner; and tells whether it runs (by process
// name), its processor share, what it and the admin tool wrote, and whether my_source.ini
// changed since the last test.
class MysqlServer : public ServerBase {
public:
    // The account of the tree's data that may shut the server down.
    static constexpr const char* ShutdownUser = "kovix";
    // The system's account the server runs as when the panel has the administrator's rights.
    static constexpr const char* ServiceAccount = "mysql";

    explicit MysqlServer(const InstallPaths& paths);

    // Does nothing while the child of the last start is active. Refuses (and says why through
    // ReadOutput) when my.ini could not be generated, when the tree lies so deep that the socket
    // path would be too long, and, under the administrator, when the service account is missing
    // or cannot reach the tree.
    void Start();
    // Asks the admin tool to shut the server down; does nothing while an earlier shutdown runs.
    // Returns at once: the server is gone a moment later. False when the admin tool could not
    // be run (ReadOutput says why).
    bool Stop();

    // Whether the admin tool of the last stop still runs.
    bool IsShutdownUnderWay() { return KeepIfActive(adminRecord); }
    // What the server and then the admin tool wrote since the last call, and when the server ended
    // with no stop asked (it failed to start, or died), what it logged since its start; reaps and
    // forgets those that ended.
    wxString ReadOutput();

    bool HasSourceChanged() { return mysqlSource.HasChanged(); }

    wxString CommandLine() const;
    wxString ShutdownCommandLine() const;

    // Options of the generated my.ini's [mysqld] section: the TCP port (3306 when absent) and
    // the socket path ("" when absent).
    int Port() const;
    wxString SocketPath() const;
    // The port of my_source.ini, which the next start listens on (no placeholder stands for it).
    int NextPort() const;
    // Where the server writes its messages (log-error); "" when absent.
    wxString ErrorLogPath() const { return LiveOption("log-error"); }
    // The longest Unix socket path the system accepts, in bytes.
    static constexpr size_t SocketPathLimit = 107;

private:
    wxString LiveOption(const wxString& name) const;
    // What the server added to its error log since the last start began ("" before one): a
    // copied tree's old log is not repeated.
    wxString LogSinceStart() const;
    // Readies the folders the server writes: empty when it may start, else why not, in the
    // current language.
    wxString PrepareStart() const;
    wxString PrepareServiceAccount() const;
    wxString OwnFoldersRefusal() const;

    // Said by the next ReadOutput: why the server was not started.
    wxString note;
    // The error log of the last start and its length when it began.
    wxString startLog;
    wxFileOffset startLogLength = 0;
    bool stopAsked = false;
    std::unique_ptr<ServerProcess> adminRecord;
    TemplateWatch mysqlSource;
};
