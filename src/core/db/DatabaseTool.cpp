#include "core/db/DatabaseTool.h"

#include "core/SharedRegex.h"

#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "core/servers/MysqlServer.h"
#include "platform/Platform.h"

#include <wx/datetime.h>
#include <wx/ffile.h>
#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/tokenzr.h>
#include <wx/wfstream.h>
#include <wx/zstream.h>

#include <memory>
#include <string>

namespace {

const size_t ChunkBytes = 256 * 1024;
// The client writes this line first (after a sandbox-mode line in recent versions) and, when the
// dump is complete, the last line below.
const std::string DumpStarts[] = {"-- MariaDB dump", "-- MySQL dump"};
const std::string DumpEnd = "-- Dump completed";
// Fast compression: the dump is large and a backup is made often; the client waits for it.
const int CompressionLevel = 1;

// Where a child's standard error goes, and is read back; removed with the object.
class ErrorFile {
public:
    ErrorFile() : path(wxFileName::CreateTempFileName("kovix-db")) {}
    ~ErrorFile() { wxRemoveFile(path); }
    const wxString& Path() const { return path; }
    wxString Text() const {
        wxFFile file(path, "rb");
        wxString text;
        if (file.IsOpened())
            file.ReadAll(&text, wxConvUTF8);
        return text.Trim();
    }

private:
    wxString path;
};

wxString QuoteName(const wxString& name) {
    wxString quoted = name;
    quoted.Replace("`", "``");
    return "`" + quoted + "`";
}

wxString QuoteText(const wxString& text) {
    wxString quoted = text;
    quoted.Replace("\\", "\\\\");
    quoted.Replace("'", "\\'");
    return "'" + quoted + "'";
}

bool StartsAsDump(const std::string& bytes) {
    const size_t firstEnd = bytes.find('\n');
    const size_t second = firstEnd == std::string::npos ? bytes.size() : firstEnd + 1;
    for (const std::string& start : DumpStarts)
        if (bytes.compare(0, start.size(), start) == 0 ||
            bytes.compare(second, start.size(), start) == 0)
            return true;
    return false;
}

bool IsGzip(const wxString& file) {
    unsigned char magic[2] = {0, 0};
    wxFFile in(file, "rb");
    return in.IsOpened() && in.Read(magic, 2) == 2 && magic[0] == 0x1f && magic[1] == 0x8b;
}

// The decompressed (or plain) content of a backup, chunk by chunk, with how much of the file
// was consumed.
class BackupReader {
public:
    explicit BackupReader(const wxString& file) : in(file), size(in.IsOk() ? in.GetLength() : 0) {
        if (in.IsOk() && IsGzip(file))
            unzip = std::make_unique<wxZlibInputStream>(in, wxZLIB_GZIP);
    }
    bool IsOk() const { return in.IsOk(); }
    // Bytes read into buffer; 0 at the end; -1 when the compressed data is damaged.
    long Read(char* buffer, size_t bytes) {
        wxInputStream& stream = unzip ? static_cast<wxInputStream&>(*unzip) : in;
        stream.Read(buffer, bytes);
        const size_t got = stream.LastRead();
        // A gzip stream cut short ends in a read error, not at its end.
        if (got == 0 && stream.GetLastError() == wxSTREAM_READ_ERROR)
            return -1;
        return static_cast<long>(got);
    }
    double Fraction() const {
        return size > 0 ? static_cast<double>(in.TellI()) / static_cast<double>(size) : 0;
    }

private:
    wxFFileInputStream in;
    wxFileOffset size;
    std::unique_ptr<wxZlibInputStream> unzip;
};

} // namespace

wxString DatabaseErrorText(const DatabaseError& error) {
    const wxString text = GetLangText(error.key);
    return error.detail.empty() ? text : text + "\n" + error.detail;
}

wxString RestoreDoneText(const wxString& database, const wxString& safetyBackup) {
    const wxString text = wxString::Format(GetLangText("DB_RESTORE_DONE"), database);
    return safetyBackup.empty()
               ? text
               : text + "\n" + wxString::Format(GetLangText("DB_RESTORE_SAFETY"), safetyBackup);
}

DatabaseTool::DatabaseTool(const InstallPaths& paths)
    : liveConfig(paths.MysqlLiveConfig()), clientFolder(paths.MysqlBinFolder()),
      socket(MysqlServer(paths).SocketPath()), backupFolder(BackupFolderOf(paths)) {}

wxString DatabaseTool::BackupFolderOf(const InstallPaths& paths) {
    return paths.ProgramFolder() + "/backups";
}

wxString DatabaseTool::DatabaseOfBackup(const wxString& file) {
    static const SharedRegex stamped("^(.+)-[0-9]{8}-[0-9]{6}(-[0-9]+)?\\.sql(\\.gz)?$");
    static const SharedRegex plain("^(.+)\\.sql(\\.gz)?$");
    const wxString name = wxFileName(file).GetFullName();
    std::vector<wxString> groups;
    for (const SharedRegex* pattern : {&stamped, &plain})
        if (pattern->Match(name, groups))
            return groups[1];
    return wxString();
}

bool DatabaseTool::ServerReady(DatabaseError& error) const {
    if (!socket.empty() && Platform::Get().IsLocalSocketAccepting(socket))
        return true;
    error = {"DB_MYSQL_STOPPED", ""};
    return false;
}

// A portable tree carries its client programs; a linked tree uses the system's.
std::vector<wxString> DatabaseTool::ClientCommand(const wxString& program) const {
    const wxString own = clientFolder + "/" + program + Platform::Get().ProgramSuffix();
    return {wxFileExists(own) ? own : program, "--defaults-file=" + liveConfig, "--user=root",
            "--default-character-set=utf8mb4"};
}

bool DatabaseTool::RunSql(const wxString& sql, wxString& output, DatabaseError& error) const {
    std::vector<wxString> command = ClientCommand("mariadb");
    command.insert(command.end(), {"--batch", "--skip-column-names", "--execute=" + sql});
    const ErrorFile errors;
    std::unique_ptr<DataChild> child = Platform::Get().StartDataChild(command, errors.Path());
    if (!child) {
        error = {"DB_CLIENT_MISSING", "mariadb"};
        return false;
    }
    child->CloseInput();
    std::string bytes;
    char buffer[8192];
    for (long got; (got = child->Read(buffer, sizeof buffer)) > 0;)
        bytes.append(buffer, static_cast<size_t>(got));
    if (child->Wait() != 0) {
        error = {"DB_FAILED", errors.Text()};
        return false;
    }
    output = wxString::FromUTF8(bytes.data(), bytes.size());
    return true;
}

bool DatabaseTool::List(std::vector<DatabaseInfo>& databases, DatabaseError& error) const {
    if (!ServerReady(error))
        return false;
    wxString output;
    if (!RunSql("SELECT s.SCHEMA_NAME, COUNT(t.TABLE_NAME), "
                "COALESCE(SUM(t.DATA_LENGTH + t.INDEX_LENGTH), 0) "
                "FROM information_schema.SCHEMATA s LEFT JOIN information_schema.TABLES t "
                "ON t.TABLE_SCHEMA = s.SCHEMA_NAME WHERE s.SCHEMA_NAME NOT IN "
                "('mysql', 'information_schema', 'performance_schema', 'sys') "
                "GROUP BY s.SCHEMA_NAME ORDER BY s.SCHEMA_NAME",
                output, error))
        return false;
    databases.clear();
    for (const wxString& line : wxStringTokenize(output, "\n", wxTOKEN_STRTOK)) {
        const wxArrayString cells = wxStringTokenize(line, "\t", wxTOKEN_RET_EMPTY_ALL);
        if (cells.size() != 3)
            continue;
        DatabaseInfo info{cells[0]};
        cells[1].ToLong(&info.tables);
        cells[2].ToLongLong(&info.bytes);
        databases.push_back(info);
    }
    return true;
}

bool DatabaseTool::Exists(const wxString& name, bool& exists, DatabaseError& error) const {
    wxString output;
    if (!ServerReady(error) ||
        !RunSql("SELECT COUNT(*) FROM information_schema.SCHEMATA WHERE SCHEMA_NAME = " +
                    QuoteText(name),
                output, error))
        return false;
    exists = output.Trim() != "0";
    return true;
}

wxString DatabaseTool::FreeBackupName(const wxString& name) const {
    const wxString stem =
        backupFolder + "/" + name + "-" + wxDateTime::Now().Format("%Y%m%d-%H%M%S");
    wxString file = stem + ".sql.gz";
    for (int counter = 2; wxFileExists(file); ++counter)
        file = wxString::Format("%s-%d.sql.gz", stem, counter);
    return file;
}

bool DatabaseTool::DumpInto(const wxString& name, wxOutputStream& out, long long expectedBytes,
                            DatabaseError& error, const DatabaseProgress& progress) const {
    std::vector<wxString> command = ClientCommand("mariadb-dump");
    command.insert(command.end(), {"--single-transaction", "--routines", "--events", "--triggers",
                                   "--hex-blob", "--", name});
    const ErrorFile errors;
    std::unique_ptr<DataChild> child = Platform::Get().StartDataChild(command, errors.Path());
    if (!child) {
        error = {"DB_CLIENT_MISSING", "mariadb-dump"};
        return false;
    }
    child->CloseInput();
    wxZlibOutputStream zip(out, CompressionLevel, wxZLIB_GZIP);
    std::vector<char> buffer(ChunkBytes);
    long long total = 0;
    for (long got; (got = child->Read(buffer.data(), buffer.size())) > 0;) {
        if (!zip.Write(buffer.data(), static_cast<size_t>(got)).IsOk()) {
            error = {"DB_BACKUP_FOLDER", backupFolder};
            return false; // the child is ended with its object
        }
        total += got;
        if (progress && expectedBytes > 0 &&
            !progress(
                std::min(1.0, static_cast<double>(total) / static_cast<double>(expectedBytes)))) {
            error = {"DB_STOPPED", ""};
            return false;
        }
    }
    if (child->Wait() != 0) {
        error = {"DB_FAILED", errors.Text()};
        return false;
    }
    if (!zip.Close()) {
        error = {"DB_BACKUP_FOLDER", backupFolder};
        return false;
    }
    return true;
}

bool DatabaseTool::Backup(const wxString& name, long long expectedBytes, wxString& file,
                          DatabaseError& error, const DatabaseProgress& progress) const {
    wxLogNull quiet; // failures are reported through error, never in a box
    if (!ServerReady(error))
        return false;
    if (!wxDirExists(backupFolder) &&
        !wxFileName::Mkdir(backupFolder, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL)) {
        error = {"DB_BACKUP_FOLDER", backupFolder};
        return false;
    }
    file = FreeBackupName(name);
    const wxString scratch = backupFolder + "/." + wxFileName(file).GetFullName() + ".part";
    bool dumped = false;
    {
        wxFFileOutputStream out(scratch, "wb");
        if (!out.IsOk()) {
            error = {"DB_BACKUP_FOLDER", backupFolder};
            return false;
        }
        dumped = DumpInto(name, out, expectedBytes, error, progress);
        if (dumped && !out.Close()) {
            error = {"DB_BACKUP_FOLDER", backupFolder};
            dumped = false;
        }
    }
    if (dumped && !wxFileExists(file) && wxRenameFile(scratch, file, false))
        return true;
    if (dumped)
        error = {"DB_BACKUP_FOLDER", backupFolder};
    wxRemoveFile(scratch);
    return false;
}

bool DatabaseTool::CheckBackup(const wxString& file, DatabaseError& error) {
    wxLogNull quiet;
    BackupReader reader(file);
    error = {"DB_BAD_BACKUP", file};
    if (!reader.IsOk())
        return false;
    std::vector<char> buffer(ChunkBytes);
    std::string start, tail;
    for (long got; (got = reader.Read(buffer.data(), buffer.size())) != 0;) {
        if (got < 0)
            return false;
        if (start.size() < 64)
            start.append(buffer.data(),
                         std::min<size_t>(64 - start.size(), static_cast<size_t>(got)));
        tail.append(buffer.data(), static_cast<size_t>(got));
        tail.erase(0, tail.size() > 512 ? tail.size() - 512 : 0);
    }
    const size_t lastLine = tail.find_last_of('\n', tail.find_last_not_of("\n"));
    const std::string last = tail.substr(lastLine == std::string::npos ? 0 : lastLine + 1);
    if (!StartsAsDump(start) || last.compare(0, DumpEnd.size(), DumpEnd) != 0)
        return false;
    error = {};
    return true;
}

bool DatabaseTool::Restore(const wxString& file, const wxString& into, wxString& safetyBackup,
                           DatabaseError& error, const DatabaseProgress& progress) const {
    wxLogNull quiet;
    safetyBackup.clear();
    const wxString target = into.empty() ? DatabaseOfBackup(file) : into;
    if (!ServerReady(error) || !CheckBackup(file, error))
        return false;
    if (target.empty()) {
        error = {"DB_NO_NAME", file};
        return false;
    }
    bool exists = false;
    if (!Exists(target, exists, error) || (exists && !Backup(target, 0, safetyBackup, error)))
        return false;
    if (Load(file, target, error, progress))
        return true;
    if (exists)
        PutBack(safetyBackup, target, error);
    else
        RemoveHalfLoaded(target, error);
    return false;
}

// A database the restore created is dropped again: nothing of a dump that failed halfway stays.
void DatabaseTool::RemoveHalfLoaded(const wxString& target, DatabaseError& error) const {
    wxString ignored;
    DatabaseError again;
    if (RunSql("DROP DATABASE IF EXISTS " + QuoteName(target), ignored, again))
        error = {"DB_RESTORE_REMOVED", error.detail};
}

// A dump is loaded statement by statement: one that fails leaves the database half replaced,
// so what was there is loaded back from the safety backup (checked like any backup first). The
// error keeps what the client said about the first failure.
void DatabaseTool::PutBack(const wxString& safetyBackup, const wxString& target,
                           DatabaseError& error) const {
    DatabaseError again;
    const bool putBack = CheckBackup(safetyBackup, again) && Load(safetyBackup, target, again, {});
    error = {putBack ? "DB_RESTORE_PUT_BACK" : "DB_RESTORE_SAFETY_KEPT",
             (safetyBackup + "\n" + error.detail).Trim()};
}

bool DatabaseTool::Load(const wxString& file, const wxString& target, DatabaseError& error,
                        const DatabaseProgress& progress) const {
    wxString ignored;
    if (!RunSql("DROP DATABASE IF EXISTS " + QuoteName(target) + "; CREATE DATABASE " +
                    QuoteName(target),
                ignored, error))
        return false;
    std::vector<wxString> command = ClientCommand("mariadb");
    command.push_back(target);
    const ErrorFile errors;
    std::unique_ptr<DataChild> child = Platform::Get().StartDataChild(command, errors.Path());
    if (!child) {
        error = {"DB_CLIENT_MISSING", "mariadb"};
        return false;
    }
    BackupReader reader(file);
    std::vector<char> buffer(ChunkBytes);
    for (long got; (got = reader.Read(buffer.data(), buffer.size())) > 0;) {
        if (!child->Write(buffer.data(), static_cast<size_t>(got)))
            break; // the client stopped: its exit code and words say why
        if (progress && !progress(reader.Fraction())) {
            error = {"DB_STOPPED", ""};
            return false;
        }
    }
    child->CloseInput();
    if (child->Wait() != 0) {
        error = {"DB_FAILED", errors.Text()};
        return false;
    }
    return true;
}
