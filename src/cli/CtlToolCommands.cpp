// kovixctl commands of the developer's tools: logs, db, mail.
#include "cli/CtlCommands.h"
#include "core/db/DatabaseTool.h"
#include "core/lang/LangTable.h"
#include "core/logs/LogCatalog.h"
#include "core/logs/LogFollower.h"
#include "core/mail/MailMessage.h"
#include "core/mail/MailStore.h"

#include <chrono>
#include <iostream>
#include <iterator>
#include <thread>

namespace {

const auto FollowInterval = std::chrono::milliseconds(200);

void PrintLines(CtlContext& context, const std::vector<wxString>& lines, size_t last) {
    for (size_t i = lines.size() > last ? lines.size() - last : 0; i < lines.size(); ++i)
        context.Print(lines[i]);
    context.Flush();
}

wxString HumanSize(long long bytes) {
    const char* units[] = {"B", "KB", "MB", "GB", "TB"};
    double size = static_cast<double>(bytes);
    size_t unit = 0;
    for (; size >= 1024 && unit + 1 < std::size(units); ++unit)
        size /= 1024;
    return unit == 0 ? wxString::Format("%lld B", bytes)
                     : wxString::Format("%.1f %s", size, units[unit]);
}

std::vector<DatabaseInfo> ListDatabases(const DatabaseTool& tool) {
    std::vector<DatabaseInfo> databases;
    DatabaseError error;
    if (!tool.List(databases, error))
        throw CtlFailure(DatabaseErrorText(error));
    return databases;
}

MailStore TreeMail(const CtlContext& context) {
    return MailStore(MailStore::FolderOf(context.paths));
}

} // namespace

namespace CtlCommands {

void Logs(CtlContext& context) {
    const wxString count = context.TakeOption("--lines");
    const bool follow = context.TakeFlag("--follow");
    context.ExpectArgCount(1, 1);
    unsigned long lines = 20;
    LogEntry log;
    if ((!count.empty() && !count.ToULong(&lines)) ||
        !LogCatalog::Find(context.paths, context.Arg(0), log))
        throw CtlUsageError("logs apache-error|apache-access|php|mysql [--lines N] [--follow]");
    if (!follow && !wxFileExists(log.path))
        throw CtlFailure(wxString::Format(GetLangText("LOGVIEW_MISSING"), log.path));
    LogFollower follower(log.path);
    PrintLines(context, follower.Open(), lines);
    while (follow) {
        std::this_thread::sleep_for(FollowInterval);
        PrintLines(context, follower.Poll(), std::string::npos);
    }
}

void DbList(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    const std::vector<DatabaseInfo> databases = ListDatabases(DatabaseTool(context.paths));
    if (context.json) {
        nlohmann::ordered_json document = nlohmann::ordered_json::array();
        for (const DatabaseInfo& database : databases)
            document.push_back({{"name", Utf8(database.name)},
                                {"tables", database.tables},
                                {"bytes", database.bytes}});
        context.Print(FromUtf8(document.dump()));
        return;
    }
    std::vector<std::vector<wxString>> rows;
    for (const DatabaseInfo& database : databases)
        rows.push_back({database.name, wxString::Format("%ld tables", database.tables),
                        HumanSize(database.bytes)});
    context.PrintTable(rows);
}

void DbBackup(CtlContext& context) {
    const DatabaseTool tool(context.paths);
    std::vector<DatabaseInfo> databases = ListDatabases(tool);
    if (!context.args.empty()) {
        std::vector<DatabaseInfo> named;
        for (const wxString& name : context.args) {
            auto found = std::find_if(databases.begin(), databases.end(),
                                      [&](const DatabaseInfo& info) { return info.name == name; });
            if (found == databases.end())
                throw CtlFailure(GetLangText("DB_NO_SUCH") + " " + name);
            named.push_back(*found);
        }
        databases = named;
    }
    for (const DatabaseInfo& database : databases) {
        wxString file;
        DatabaseError error;
        if (!tool.Backup(database.name, database.bytes, file, error))
            throw CtlFailure(DatabaseErrorText(error));
        context.Print(file);
    }
}

void DbRestore(CtlContext& context) {
    const wxString into = context.TakeOption("--into");
    context.ExpectArgCount(1, 1);
    DatabaseError error;
    wxString safety;
    if (!DatabaseTool(context.paths).Restore(context.Arg(0), into, safety, error))
        throw CtlFailure(DatabaseErrorText(error));
    context.Print(RestoreDoneText(
        into.empty() ? DatabaseTool::DatabaseOfBackup(context.Arg(0)) : into, safety));
}

// PHP's sendmail_path: the message arrives on standard input.
void MailCatch(CtlContext& context) {
    std::cin >> std::noskipws;
    const std::string bytes{std::istreambuf_iterator<char>(std::cin),
                            std::istreambuf_iterator<char>()};
    wxString id, error;
    if (!TreeMail(context).Catch(bytes, id, error))
        throw CtlFailure(GetLangText("MAIL_CANNOT_STORE") + " " + error);
}

void MailList(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    const std::vector<MailSummary> messages = TreeMail(context).List();
    if (context.json) {
        nlohmann::ordered_json document = nlohmann::ordered_json::array();
        for (const MailSummary& message : messages)
            document.push_back({{"id", Utf8(message.id)},
                                {"date", Utf8(message.date)},
                                {"from", Utf8(message.from)},
                                {"to", Utf8(message.to)},
                                {"subject", Utf8(message.subject)}});
        context.Print(FromUtf8(document.dump()));
        return;
    }
    std::vector<std::vector<wxString>> rows;
    for (const MailSummary& message : messages)
        rows.push_back({message.id, message.from, message.to, message.subject});
    context.PrintTable(rows);
}

void MailShow(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    std::string raw;
    if (!TreeMail(context).Read(context.Arg(0), raw))
        throw CtlFailure(GetLangText("MAIL_NO_SUCH") + " " + context.Arg(0));
    const MailMessage message = MailMessage::Parse(raw);
    for (const auto& [name, value] : message.Headers())
        context.Print(name + ": " + value);
    context.Print("");
    context.Print(message.Text());
}

void MailClear(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    FailUnlessEmpty(TreeMail(context).Clear());
}

} // namespace CtlCommands
