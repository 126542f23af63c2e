#include "core/servers/MysqlServer.h"

#include "core/AppSettings.h"

#include "core/IniReader.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "core/servers/ProcessLookup.h"
#include "platform/Platform.h"

#include <wx/file.h>
#include <wx/filename.h>
#include <wx/log.h>

namespace {

wxString Quoted(const wxString& path) {
    return "\"" + path + "\"";
}

// "name = value" of the [mysqld] section of an option file, quotes removed; the last one wins,
// as for the server.
wxString ServerOption(const wxString& file, const wxString& name) {
    wxString text;
    if (!TextFiles::Read(file, text))
        return wxString();
    wxString value;
    for (const IniEntry& entry : ReadIniEntries(text))
        if (entry.section == "[mysqld]" && entry.key == name)
            value = entry.value;
    return WithoutQuotes(value);
}

int PortOf(const wxString& text) {
    long port = 0;
    return ParseDecimal(text, port) ? static_cast<int>(port) : 3306;
}

bool IsInside(const wxString& path, const wxString& folder) {
    return path == folder || path.StartsWith(folder + Platform::Get().PathSeparator());
}

wxFileOffset FileLength(const wxString& path) {
    wxFile file;
    return wxFile::Exists(path) && file.Open(path) ? file.Length() : 0;
}

// The bytes of a file from offset on, widened as Latin-1 like the servers' output.
wxString ReadFrom(const wxString& path, wxFileOffset offset) {
    wxFile file;
    if (!wxFile::Exists(path) || !file.Open(path) || file.Length() <= offset ||
        file.Seek(offset) < 0)
        return wxString();
    std::string bytes(static_cast<size_t>(file.Length() - offset), '\0');
    const ssize_t got = file.Read(bytes.data(), bytes.size());
    return wxString(bytes.data(), wxConvISO8859_1, got > 0 ? static_cast<size_t>(got) : 0);
}

} // namespace

MysqlServer::MysqlServer(const InstallPaths& paths)
    : ServerBase(paths, InstallPaths::MysqlProcessName()),
      mysqlSource(TemplateWatch::MysqlSource(paths)) {}

// The option file must be the first option. The options after it outweigh my.ini's, so neither
// an edited template nor a tree assembled by root before (its my_source.ini said "user=root")
// lets the server keep the administrator's rights or read and write files outside the tree.
wxString MysqlServer::CommandLine() const {
    wxString line = paths.MysqlExecutable() +
                    " --defaults-file=" + Quoted(paths.MysqlLiveConfig()) +
                    " --secure-file-priv=" + Quoted(paths.MysqlFilesFolder());
    if (Platform::Get().IsPrivileged())
        line += wxString(" --user=") + ServiceAccount;
    return line;
}

// The password never stands on a command line: mysqladmin reads it from the tree's own option
// file, which includes my.ini for the rest (mysqladmin ignores --defaults-extra-file beside
// --defaults-file, and the include names my.ini relative to the working folder, the mysql
// folder, so the tree may move). A tree made before it had a password of its own still stops:
// through the root account, which needs no password on the local socket.
wxString MysqlServer::ShutdownCommandLine() const {
    const bool ownPassword = wxFileExists(paths.MysqlAdminConfig());
    const wxString options = ownPassword ? paths.MysqlAdminConfig() : paths.MysqlLiveConfig();
    const wxString user = ownPassword ? ShutdownUser : "root";
    return paths.MysqlAdminTool() + " --defaults-file=" + Quoted(options) +
           " --user=" + Quoted(user) + " shutdown";
}

void MysqlServer::Start() {
    if (KeepIfActive(record))
        return;
    const wxString failures = ConfigGenerator(paths).GenerateMysql();
    if (!failures.empty()) {
        note = failures + wxString::Format(GetLangText("SERVER_NOT_GENERATED"), "MySQL") + "\n";
        return;
    }
    stopAsked = false;
    startLog = ErrorLogPath();
    startLogLength = FileLength(startLog);
    const wxString refusal = PrepareStart();
    if (!refusal.empty()) {
        note = refusal + "\n";
        return;
    }
    record = NewRecord(CommandLine(), paths.MysqlFolder());
    note = RunOrForget(record, paths.MysqlExecutable());
}

wxString MysqlServer::PrepareStart() const {
    const size_t socketBytes = SocketPath().utf8_string().size();
    if (socketBytes > SocketPathLimit)
        return wxString::Format(GetLangText("MYSQL_SOCKET_TOO_LONG"), SocketPath(),
                                static_cast<int>(socketBytes), static_cast<int>(SocketPathLimit));
    // The server refuses to start when its secure_file_priv folder is missing (and says so in
    // its log when the folder cannot be made here).
    if (!wxDirExists(paths.MysqlFilesFolder())) {
        const wxLogNull quiet;
        wxMkdir(paths.MysqlFilesFolder(), 0700);
    }
    return Platform::Get().IsPrivileged() ? PrepareServiceAccount() : OwnFoldersRefusal();
}

// A start by the administrator gave the data and files folders to the service account: the
// tree's owner can no longer write them and must take them back.
wxString MysqlServer::OwnFoldersRefusal() const {
    Platform& platform = Platform::Get();
    for (const wxString& folder : {paths.MysqlDataFolder(), paths.MysqlFilesFolder()})
        if (wxDirExists(folder) && !platform.OwnsFile(folder))
            return wxString::Format(GetLangText("MYSQL_FOLDER_NOT_OWN"), folder, ServiceAccount,
                                    platform.LoginName(), paths.MysqlFolder());
    return wxString();
}

// Under the administrator the server runs as the service account: it must reach the tree and own
// what it writes. The data and files folders become its own; the folders of its socket, pid file
// and log, when elsewhere (the socket lies in the mysql folder), let it add its files there
// without touching the tree's own. A socket left by a server that ran as root is removed: the
// account could not replace it.
wxString MysqlServer::PrepareServiceAccount() const {
    Platform& platform = Platform::Get();
    if (!platform.AccountExists(ServiceAccount))
        return wxString::Format(GetLangText("MYSQL_NO_ACCOUNT"), ServiceAccount);
    const wxString closed = platform.FolderClosedTo(ServiceAccount, paths.MysqlFolder());
    if (!closed.empty())
        return wxString::Format(GetLangText("MYSQL_FOLDER_CLOSED"), ServiceAccount, closed);
    const wxString owned[] = {paths.MysqlDataFolder(), paths.MysqlFilesFolder()};
    for (const wxString& folder : owned)
        if (!platform.GiveFolderTo(ServiceAccount, folder))
            return wxString::Format(GetLangText("MYSQL_FOLDER_NOT_GIVEN"), folder, ServiceAccount);
    const wxString socket = SocketPath();
    if (!socket.empty() && wxFileExists(socket) && !platform.IsLocalSocketAccepting(socket))
        wxRemoveFile(socket);
    for (const wxString& file : {socket, LiveOption("pid-file"), ErrorLogPath()}) {
        const wxString folder = wxFileName(file).GetPath();
        if (file.empty() || IsInside(folder, owned[0]) || IsInside(folder, owned[1]))
            continue;
        if (!platform.LetAccountAddFiles(ServiceAccount, folder))
            return wxString::Format(GetLangText("MYSQL_FOLDER_NOT_GIVEN"), folder, ServiceAccount);
    }
    return wxString();
}

bool MysqlServer::Stop() {
    if (KeepIfActive(adminRecord))
        return true;
    stopAsked = true;
    adminRecord = NewRecord(ShutdownCommandLine(), paths.MysqlFolder());
    note = RunOrForget(adminRecord, paths.MysqlAdminTool());
    return note.empty();
}

wxString MysqlServer::ReadOutput() {
    wxString text = note + (record ? record->ReadOutput() : wxString());
    note.clear();
    if (adminRecord)
        text += adminRecord->ReadOutput();
    // A server that ended without being asked to says why in its error log, not on its output.
    if (record && !stopAsked && !record->IsActive())
        text += LogSinceStart();
    // Once read, ended children are reaped and forgotten: neither the server nor the admin tool
    // stays a zombie.
    KeepIfActive(record);
    KeepIfActive(adminRecord);
    return text;
}

wxString MysqlServer::LogSinceStart() const {
    return startLog.empty() ? wxString() : ReadFrom(startLog, startLogLength);
}

int MysqlServer::Port() const {
    return PortOf(LiveOption("port"));
}

int MysqlServer::NextPort() const {
    return PortOf(ServerOption(paths.MysqlSourceConfig(), "port"));
}

wxString MysqlServer::SocketPath() const {
    return LiveOption("socket");
}

wxString MysqlServer::LiveOption(const wxString& name) const {
    return ServerOption(paths.MysqlLiveConfig(), name);
}
