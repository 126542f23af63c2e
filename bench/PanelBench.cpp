// The panel's start to its main window shown (a process of its own, from a copy in a temporary
// tree, until the display maps its window) against a blank wx frame's, taken in turns; then the
// panel's own cost while Apache and MariaDB run on that tree: processor use of this
// process over 60 s of status ticks in the real event loop (from /proc), first with the main
// window alone, then with the statistics window open too; resident memory; and the time of one
// status tick, on the machine as it is and with 1,000 extra idle processes, with the process
// cache and without it. Needs a display:
//
//   xvfb-run -a -s "-screen 0 1280x1024x24" PanelBench [SECONDS]
#include "BenchApp.h"
#include "core/AppSettings.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "core/net/HostNameLookupThread.h"
#include "core/servers/ProcessCache.h"
#include "core/servers/ProcessLookup.h"
#include "core/servers/StackServers.h"
#include "gui/WinKovix.h"
#include "gui/WinStats.h"
#include "platform/Platform.h"
#include "support/TestTree.h"
#include "support/X11Windows.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/filefn.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/thread.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <poll.h>

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

bool RunLoopUntil(const std::function<bool()>& condition, int timeoutMs) {
    const auto end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        BenchApp::RunLoop(100);
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
        BenchApp::RunLoop(20);
        const auto start = Clock::now();
        action();
        ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(ms.begin(), ms.end());
    return {ms[ms.size() / 2], ms.back()};
}

// The status tick read as before the process cache (the whole process table on every tick) and
// with it, side by side; one fresh process lookup by name (a stop's, kovixctl's), which reads
// every process; and one lookup through a cache, its first (every process read) and a steady one.
void PrintTickCosts(WinKovix& window, const wxString& label, const char* goal) {
    auto& servers = dynamic_cast<LiveStackServers&>(window.Stack().Servers());
    const auto tick = [&window] { window.StatusTick(); };
    servers.UseProcessCache(false);
    const Timing before = TimeEach(tick, 50);
    servers.UseProcessCache(true);
    const Timing after = TimeEach(tick, 50);
    const wxString tree = window.Paths().ProgramFolder();
    const Timing lookup = TimeEach([&tree] { ProcessLookup::Find("httpd", tree); }, 50);
    ProcessCache cache;
    const auto cachedLookup = [&] { ProcessLookup::FindEach({"httpd"}, tree, cache); };
    const Timing first = TimeEach(cachedLookup, 1);
    const Timing cached = TimeEach(cachedLookup, 50);
    const auto line = [&label](const char* what) { return (what + label + ":").utf8_string(); };
    std::printf("%-52s %6.2f ms median, %.2f ms worst\n",
                line("one status tick, whole table read").c_str(), before.median, before.worst);
    std::printf("%-52s %6.2f ms median, %.2f ms worst%s\n",
                line("one status tick, process cache").c_str(), after.median, after.worst, goal);
    std::printf("%-52s %6.2f ms median\n", line("  one fresh process lookup by name").c_str(),
                lookup.median);
    std::printf("%-52s %6.2f ms first, %.2f ms median after\n",
                line("  one lookup through a process cache").c_str(), first.median, cached.median);
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

// Starts program (from folder, a HOME of its own) and waits until the display maps a top-level
// window of its process: the milliseconds from the start, or -1 after 30 s. The child is killed.
double MsToWindowShown(const wxString& program, const wxString& folder, Display* display) {
    ChildSpec launch;
    launch.commandLine = program;
    launch.workingFolder = folder;
    launch.environment = {{"HOME", folder}};
    XSync(display, True);
    const auto start = Clock::now();
    std::unique_ptr<ChildProcess> child = Platform::Get().StartHidden(launch);
    double ms = -1;
    while (child && ms < 0 && Clock::now() - start < std::chrono::seconds(30)) {
        pollfd wait{ConnectionNumber(display), POLLIN, 0};
        if (!XPending(display) && poll(&wait, 1, 100) <= 0)
            continue;
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MapNotify &&
            X11Windows::WindowPid(display, event.xmap.window) == child->Pid())
            ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }
    if (child) {
        Platform::Get().KillProcess(child->Pid());
        RunLoopUntil([&] { return !child->IsActive(); }, 10000);
    }
    return ms;
}

// The panel's start to its main window shown against a blank wx frame's, taken in turns; the
// panel runs from a copy in the tree, as it is installed.
void MeasureColdStart(const wxString& root, int rounds) {
    const wxString panel = root + "/kovix";
    wxCopyFile(KOVIX_PATH, panel);
    wxChmod(panel, 0755);
    Display* display = XOpenDisplay(nullptr);
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    std::vector<double> blank, ours;
    for (int i = 0; i < rounds; ++i) {
        blank.push_back(MsToWindowShown(BLANK_FRAME_PATH, root, display));
        ours.push_back(MsToWindowShown(panel, root, display));
    }
    XCloseDisplay(display);
    std::sort(blank.begin(), blank.end());
    std::sort(ours.begin(), ours.end());
    const double blankMedian = blank[blank.size() / 2], oursMedian = ours[ours.size() / 2];
    std::printf("%-52s %6.1f ms median of %d (%.1f-%.1f)\n",
                "start to window shown, blank wx frame:", blankMedian, rounds, blank.front(),
                blank.back());
    std::printf("%-52s %6.1f ms median of %d (%.1f-%.1f), %.2fx (goal < 1.5x)\n",
                "start to window shown, panel:", oursMedian, rounds, ours.front(), ours.back(),
                oursMedian / blankMedian);
}

void MeasureIdle(const char* what, int seconds) {
    TickCounter counter;
    const ProcessorTimes from = OwnTimes();
    BenchApp::RunLoop(seconds * 1000);
    const ProcessorTimes to = OwnTimes();
    std::printf("%-52s %6.2f %% of one core over %d s, %d ticks (goal < 0.5 %%)\n", what,
                OneCoreShare(from, to), seconds, counter.ticks);
}

int Run(int seconds) {
    TestTree tree(KOVIX_SOURCE_DIR);
    AppSettings settings;
    settings.Load(tree.File("kovix.ini"));
    settings.SetBool(AppSettings::START_ON_START, false);
    InitLangTable(settings, "en");
    settings.SaveChanges(tree.File("kovix.ini"));
    // Nothing leaves the machine: the information lookups meet a closed local port.
    wxSetEnv(HostNameLookupThread::IP_SERVICE_VARIABLE, "127.0.0.1:9");
    wxSetEnv(HostNameLookupThread::PRODUCT_SITE_VARIABLE, "127.0.0.1:9");

    MeasureColdStart(tree.Root(), 7);
    auto* window = new WinKovix(tree.Root(), settings);
    window->Show();
    window->StartBoth();
    if (!RunLoopUntil([&] { return window->IsApacheRunning() && window->IsMysqlRunning(); },
                      30000)) {
        std::fprintf(stderr, "PanelBench: the servers did not start\n");
        window->Destroy();
        return 1;
    }
    BenchApp::RunLoop(2000);
    std::printf("Panel with Apache and MariaDB running (%d cores)\n", wxThread::GetCPUCount());
    MeasureIdle("main window, status ticks:", seconds);
    window->GetStatsWindow()->Show();
    MeasureIdle("main and statistics windows, status ticks:", seconds);
    window->GetStatsWindow()->Hide();
    std::printf("%-52s %s\n", "resident memory:", StatusLine("VmRSS").c_str());

    PrintTickCosts(*window, "", "");
    {
        IdleProcesses idle(1000);
        BenchApp::RunLoop(ProcessCache::YOUNG_MS); // a young process is read on every tick
        PrintTickCosts(*window, wxString::Format(", +%zu idle", idle.Count()), " (goal < 1 ms)");
    }

    window->StopBoth();
    RunLoopUntil([&] { return !window->IsApacheRunning() && !window->IsMysqlRunning(); }, 30000);
    window->Destroy();
    BenchApp::RunLoop(100);
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
