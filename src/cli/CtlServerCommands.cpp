// kovixctl commands that run the servers and clean up after them: status, start, stop, clean,
// restore.
#include "cli/CtlCommand.h"
#include "core/Cleanup.h"
#include "core/ConfigGenerator.h"
#include "core/PhpVersions.h"
#include "core/lang/LangTable.h"
#include "core/servers/StackController.h"
#include "platform/Platform.h"

#include <chrono>
#include <functional>
#include <map>
#include <thread>

namespace {

struct Which {
    bool apache = false;
    bool mysql = false;
};

Which ParseWhich(CtlContext& context) {
    context.ExpectArgCount(0, 1);
    const wxString which = context.args.empty() ? wxString("all") : context.Arg(0);
    if (which == "all")
        return {true, true};
    if (which == "apache")
        return {true, false};
    if (which == "mysql")
        return {false, true};
    throw CtlUsageError("start|stop [all|apache|mysql]");
}

bool Accepts(int port) {
    const int shortWait = 50;
    return Platform::Get().IsLocalPortTaken(port, shortWait);
}

// MySQL is asked on its own socket file when it has one: another server may answer on its port.
bool MysqlAccepts(const MysqlServer& mysql) {
    const wxString socket = mysql.SocketPath();
    return socket.empty() ? Accepts(mysql.Port()) : Platform::Get().IsLocalSocketAccepting(socket);
}

// Waits for the started server to accept connections. A server that ends before fails at once;
// its own words (its output) become the failure message, answered with a line end ("" when the
// server accepts).
template <typename Server>
wxString WaitForStart(StackController& stack, Server& server, const wxString& name,
                      const std::function<bool()>& accepts) {
    wxString output;
    bool accepting = false;
    stack.WaitUntil(
        [&] {
            output += server.ReadOutput();
            // Only the child of this start counts: another server may answer on the port.
            const bool active = server.HasActiveChild();
            accepting = active && accepts();
            return accepting || !active;
        },
        StackController::StopTimeoutMs);
    if (!accepting) {
        output += server.ReadOutput();
        return wxString::Format(GetLangText("SERVER_NOT_STARTED"), name) +
               (output.empty() ? wxString(".") : ":\n" + output.Trim()) + "\n";
    }
    return wxString();
}

} // namespace

namespace CtlCommands {

void Status(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    ApacheServer apache(context.paths);
    MysqlServer mysql(context.paths);
    const bool apacheRuns = apache.IsRunning(), mysqlRuns = mysql.IsRunning();
    // A share needs two samples some time apart.
    apache.CpuUse();
    mysql.CpuUse();
    if (apacheRuns || mysqlRuns)
        std::this_thread::sleep_for(std::chrono::milliseconds(CpuMeter::MinimumIntervalMs + 9));
    const int apacheCpu = static_cast<int>(apache.CpuUse()),
              mysqlCpu = static_cast<int>(mysql.CpuUse());
    if (context.json) {
        const nlohmann::ordered_json document{
            {"apache", {{"running", apacheRuns}, {"cpu", apacheCpu}}},
            {"mysql", {{"running", mysqlRuns}, {"cpu", mysqlCpu}}}};
        context.Print(FromUtf8(document.dump()));
        return;
    }
    auto row = [](const wxString& name, bool runs, int cpu) {
        std::vector<wxString> cells{name, GetLangText(runs ? "RUNNING" : "STOPPED")};
        if (runs)
            cells.push_back(wxString::Format("CPU: %d%%", cpu));
        return cells;
    };
    context.PrintTable({row("Apache", apacheRuns, apacheCpu), row("MySQL", mysqlRuns, mysqlCpu)});
}

// As the window's Start: the port test first (unless Apache runs already), then Apache and MySQL
// together; then waits for both.
void Start(CtlContext& context) {
    const Which which = ParseWhich(context);
    context.ExpectTree();
    ConfigGenerator::ApplyStartupDefaults(context.settings, context.paths);
    auto live = std::make_unique<LiveStackServers>(context.paths);
    ApacheServer& apache = live->Apache();
    MysqlServer& mysql = live->Mysql();
    StackController stack(context.settings, std::move(live));
    const StackController::StartOutcome outcome = stack.StartStopped(which.apache, which.mysql);
    if (outcome.refused && outcome.holderLine.empty())
        throw CtlFailure(outcome.message);
    if (outcome.refused) {
        context.PrintError(outcome.message);
        throw CtlFailure(outcome.holderLine);
    }
    const int port = context.settings.GetPort();
    wxString failures;
    if (outcome.apacheStarted) {
        // What generation left out (a skipped site, HTTPS): Apache starts without it.
        const wxString problems = apache.ReadOutput();
        if (!problems.empty())
            context.PrintError(wxString(problems).Trim());
        failures += WaitForStart(stack, apache, "Apache", [port] { return Accepts(port); });
    }
    if (outcome.mysqlStarted)
        failures += WaitForStart(stack, mysql, "MySQL", [&] { return MysqlAccepts(mysql); });
    FailUnlessEmpty(failures);
}

// As the window's Stop: kill every Apache, shut MySQL down in order; then waits until both are
// gone.
void Stop(CtlContext& context) {
    const Which which = ParseWhich(context);
    auto live = std::make_unique<LiveStackServers>(context.paths);
    MysqlServer& mysql = live->Mysql();
    StackController stack(context.settings, std::move(live));
    if (!stack.StopAndWait(which.apache, which.mysql))
        throw CtlFailure(GetLangText("SERVERS_NOT_STOPPED") + "\n" + mysql.ReadOutput());
    // The admin tool outlives the server by a moment: nothing of the stop is left behind.
    stack.WaitUntil([&] { return !mysql.IsShutdownUnderWay(); }, StackController::StopTimeoutMs);
}

void Clean(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    static const std::map<wxString, Cleanup::LogAction> actions{
        {"apache-logs", Cleanup::LogAction::ApacheLogs},
        {"mysql-logs", Cleanup::LogAction::MysqlLogs},
        {"sessions", Cleanup::LogAction::Sessions},
        {"all", Cleanup::LogAction::All}};
    auto action = actions.find(context.Arg(0));
    if (action == actions.end())
        throw CtlUsageError("clean apache-logs|mysql-logs|sessions|all");
    const wxString refusal =
        Cleanup::RefusalKey(action->second, ApacheServer(context.paths).IsRunning(),
                            MysqlServer(context.paths).IsRunning());
    if (!refusal.empty())
        throw CtlFailure(GetLangText(refusal));
    FailUnlessEmpty(Cleanup::Run(action->second, context.paths));
}

void Restore(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    if (context.Arg(0) == "apache")
        FailUnlessEmpty(Cleanup::RestoreApache(context.paths));
    else if (context.Arg(0) == "php") {
        PhpVersions::SelectFirstIfUnset(context.settings, context.paths);
        FailUnlessEmpty(Cleanup::RestorePhp(context.paths));
    } else
        throw CtlUsageError("restore apache|php");
}

} // namespace CtlCommands
