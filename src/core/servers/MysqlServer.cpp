#include "core/servers/MysqlServer.h"

#include "core/AppSettings.h"

#include "core/IniReader.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "core/servers/ProcessLookup.h"

#include <wx/file.h>

namespace {

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

// The option file must be the first option of both programs.
wxString MysqlServer::CommandLine() const {
    return paths.MysqlExecutable() + " --defaults-file=\"" + paths.MysqlLiveConfig() + "\"";
}

wxString MysqlServer::ShutdownCommandLine() const {
    return paths.MysqlAdminTool() + " --defaults-file=\"" + paths.MysqlLiveConfig() + "\"" +
           " --user=\"" + ShutdownUser + "\" --password=\"" + ShutdownPassword + "\" shutdown";
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
    const size_t socketBytes = SocketPath().utf8_string().size();
    if (socketBytes > SocketPathLimit) {
        note = wxString::Format(GetLangText("MYSQL_SOCKET_TOO_LONG"), SocketPath(),
                                static_cast<int>(socketBytes), static_cast<int>(SocketPathLimit)) +
               "\n";
        return;
    }
    record = NewRecord(CommandLine(), paths.MysqlFolder());
    note = RunOrForget(record, paths.MysqlExecutable());
}

void MysqlServer::Stop() {
    if (KeepIfActive(adminRecord))
        return;
    stopAsked = true;
    adminRecord = NewRecord(ShutdownCommandLine(), paths.MysqlFolder());
    note = RunOrForget(adminRecord, paths.MysqlAdminTool());
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
    long port = 0;
    return ParseDecimal(LiveOption("port"), port) ? static_cast<int>(port) : 3306;
}

wxString MysqlServer::SocketPath() const {
    return LiveOption("socket");
}

// "name = value" of the [mysqld] section, quotes removed; the last one wins, as for the server.
wxString MysqlServer::LiveOption(const wxString& name) const {
    wxString text;
    if (!TextFiles::Read(paths.MysqlLiveConfig(), text))
        return wxString();
    wxString value;
    for (const IniEntry& entry : ReadIniEntries(text))
        if (entry.section == "[mysqld]" && entry.key == name)
            value = entry.value;
    return WithoutQuotes(value);
}
