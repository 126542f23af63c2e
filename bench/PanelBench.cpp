// The panel's own cost while Apache and MariaDB run on a temporary tree: processor use of this
// process over 60 s of status ticks in the real event loop (from /proc), first with the main
// window alone, then with the statistics window open too; resident memory; and the time of one
// status tick, on the machine as it is and with 1,000 extra idle processes. Needs a display:
//
//   xvfb-run -a -s "-screen 0 1280x1024x24" PanelBench [SECONDS]
#include "core/AppSettings.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "core/net/HostNameLookupThread.h"
#include "core/servers/ProcessLookup.h"
#include "gui/WinKovix.h"
#include "gui/WinStats.h"
#include "platform/Platform.h"
#include "support/TestTree.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/thread.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

class BenchApp : public wxApp {
public:
    bool OnInit() override { return true; }
};

// Runs the event loop for ms milliseconds, idle as the panel normally is.
void RunLoop(int ms) {
    wxGUIEventLoop loop;
    wxTimer stop;
    stop.Bind(wxEVT_TIMER, [&loop](wxTimerEvent&) { loop.Exit(); });
    stop.StartOnce(ms);
    loop.Run();
}

bool RunLoopUntil(const std::function<bool()>& condition, int timeoutMs) {
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        RunLoop(100);
    }
    return true;
}

ProcessorTimes OwnTimes() {
    ProcessorTimes times;
    Platform::Get().ReadProcessorTimes(wxGetProcessId(), times);
    return times;
}

// This process's share of one core between two samples: the machine's ticks count every core.
double OneCoreShare(const ProcessorTimes& from, const ProcessorTimes& to) {
    const double machine = static_cast<double>(to.machine - from.machine);
    const double cores = wxThread::GetCPUCount();
    return machine > 0 ? 100.0 * (to.process - from.process) * cores / machine : 0;
}

// A line of /proc/self/status without its key, e.g. "97728 kB" for "VmRSS".
std::string StatusLine(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, key.size() + 1, key + ":") == 0)
            return line.substr(line.find_first_not_of(" \t", key.size() + 1));
    return "?";
}

struct Timing {
    double median = 0;
    double worst = 0;
};

// Runs action count times, each after a short turn of the event loop as the timer spaces ticks.
Timing TimeEach(const std::function<void()>& action, int count) {
    std::vector<double> ms;
    for (int i = 0; i < count; ++i) {
        RunLoop(20);
        const auto start = Clock::now();
        action();
        ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(ms.begin(), ms.end());
    return {ms[ms.size() / 2], ms.back()};
}

// The status tick and, for the breakdown, one process lookup by name (a tick makes several).
void PrintTickCosts(WinKovix& window, const wxString& label, const char* goal) {
    const Timing tick = TimeEach([&window] { window.StatusTick(); }, 50);
    const wxString tree = window.Paths().ProgramFolder();
    const Timing lookup = TimeEach([&tree] { ProcessLookup::Find("httpd", tree); }, 50);
    std::printf("%-44s %6.2f ms median, %.2f ms worst%s\n",
                ("one status tick" + label + ":").utf8_str().data(), tick.median, tick.worst, goal);
    std::printf("%-44s %6.2f ms median\n",
                ("  one process lookup by name" + label + ":").utf8_str().data(), lookup.median);
}

// Idle "sleep" processes started by one shell, which reports their pids; stopped by pid.
class IdleProcesses {
public:
    explicit IdleProcesses(int count) {
        ChildSpec launch;
        launch.commandLine = wxString::Format(
            "/bin/sh -c \"for i in $(seq %d); do sleep 3600 & echo $!; done; wait\"", count);
        shell = Platform::Get().StartHidden(launch);
        if (!shell)
            return;
        wxString output;
        RunLoopUntil(
            [&] {
                output += shell->ReadOutput();
                return output.Freq('\n') >= count;
            },
            60000);
        for (const wxString& line : wxSplit(output, '\n')) {
            long pid = 0;
            if (line.ToLong(&pid) && pid > 0)
                pids.push_back(pid);
        }
    }
    ~IdleProcesses() {
        if (!shell)
            return;
        for (long pid : pids)
            Platform::Get().KillProcess(pid);
        Platform::Get().KillProcess(shell->Pid());
        RunLoopUntil([&] { return !shell->IsActive(); }, 10000);
    }
    std::size_t Count() const { return pids.size(); }

private:
    std::unique_ptr<ChildProcess> shell;
    std::vector<long> pids;
};

// Counts the status timer's events as the application dispatches them.
class TickCounter : public wxEventFilter {
public:
    TickCounter() { wxEvtHandler::AddFilter(this); }
    ~TickCounter() override { wxEvtHandler::RemoveFilter(this); }
    int FilterEvent(wxEvent& event) override {
        if (event.GetEventType() == wxEVT_TIMER &&
            static_cast<wxTimerEvent&>(event).GetInterval() == WinKovix::TICK_MS)
            ++ticks;
        return Event_Skip;
    }
    int ticks = 0;
};

void MeasureIdle(const char* what, int seconds) {
    TickCounter counter;
    const ProcessorTimes from = OwnTimes();
    RunLoop(seconds * 1000);
    const ProcessorTimes to = OwnTimes();
    std::printf("%-44s %6.2f %% of one core over %d s, %d ticks (goal < 0.5 %%)\n", what,
                OneCoreShare(from, to), seconds, counter.ticks);
}

int Run(int seconds) {
    TestTree tree(KOVIX_SOURCE_DIR);
    AppSettings settings;
    settings.Load(tree.File("kovix.ini"));
    settings.SetBool(AppSettings::START_ON_START, false);
    InitLangTable(settings, "en");
    // Nothing leaves the machine: the information lookups meet a closed local port.
    wxSetEnv(HostNameLookupThread::IP_SERVICE_VARIABLE, "127.0.0.1:9");
    wxSetEnv(HostNameLookupThread::PRODUCT_SITE_VARIABLE, "127.0.0.1:9");

    auto* window = new WinKovix(tree.Root(), settings);
    window->Show();
    window->StartBoth();
    if (!RunLoopUntil([&] { return window->IsApacheRunning() && window->IsMysqlRunning(); },
                      30000)) {
        std::fprintf(stderr, "PanelBench: the servers did not start\n");
        window->Destroy();
        return 1;
    }
    RunLoop(2000);
    std::printf("Panel with Apache and MariaDB running (%d cores)\n", wxThread::GetCPUCount());
    MeasureIdle("main window, status ticks:", seconds);
    window->GetStatsWindow()->Show();
    MeasureIdle("main and statistics windows, status ticks:", seconds);
    window->GetStatsWindow()->Hide();
    std::printf("%-44s %s\n", "resident memory:", StatusLine("VmRSS").c_str());

    PrintTickCosts(*window, "", "");
    {
        IdleProcesses idle(1000);
        PrintTickCosts(*window, wxString::Format(", +%zu idle", idle.Count()), " (goal < 5 ms)");
    }

    window->StopBoth();
    RunLoopUntil([&] { return !window->IsApacheRunning() && !window->IsMysqlRunning(); }, 30000);
    window->Destroy();
    RunLoop(100);
    return 0;
}

} // namespace

wxIMPLEMENT_APP_NO_MAIN(BenchApp);

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 60;
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "PanelBench: cannot open the display (run under xvfb-run)\n");
        return 1;
    }
    wxTheApp->CallOnInit();
    wxLog::SetActiveTarget(new wxLogStderr);
    wxInitAllImageHandlers();
    TextFiles::InitEncoding();
    const int result = Run(seconds);
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}
