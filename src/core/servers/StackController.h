#pragma once

#include "core/servers/StackServers.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class AppSettings;

// Runs the tree's two servers for both faces, the panel and kovixctl: the start check (the ports
// of the servers about to start must be free), start, stop and restart of one or both, and the
// status tick, which watches the templates and restarts the running servers after a change. The
// faces show what it says and never touch a server themselves. Used from one thread.
class StackController {
public:
    // Auto-restart states: a change is pending, then the servers were stopped to restart them.
    // BUILDING until the owner says it is ready (changes made while building are not restarts).
    enum RestartState : std::uint16_t {
        RESTART_IDLE = 0,
        RESTART_PENDING = 1,
        RESTART_STOPPED = 2,
        RESTART_BUILDING = 0xFFFF
    };

    // What a start did. A refused start started nothing: message says why in the current
    // language (a port this user may not bind, or one already taken), holderLine names the
    // process that holds a taken port.
    struct StartOutcome {
        bool refused = false;
        wxString message;
        wxString holderLine;
        bool apacheStarted = false;
        bool mysqlStarted = false;
    };

    // What one tick saw: the servers' processes, their processor shares and their output.
    struct Status {
        ServerPids pids;
        double apacheCpu = 0;
        double mysqlCpu = 0;
        wxString output;
        bool ApacheRuns() const { return !pids.apache.empty(); }
        bool MysqlRuns() const { return !pids.mysql.empty(); }
    };

    // Called with a refused start's outcome while the start is still under way (so no tick runs
    // in between, even when the handler shows a modal message).
    using RefusalHandler = std::function<void(const StartOutcome&)>;

    StackController(const AppSettings& settings, std::unique_ptr<StackServers> servers);

    void SetRefusalHandler(RefusalHandler handler) { onRefusal = std::move(handler); }
    // The owner has finished building: template changes count from now on.
    void Ready() { restartState = RESTART_IDLE; }

    // The panel's commands. A start is refused while another start runs and when the port of a
    // server about to start is taken (MySQL's only when it does not run); then nothing starts.
    // MySQL follows only an Apache start that was not refused, and alone starts only when it
    // does not run. Each command ends a pending restart.
    StartOutcome StartBoth() { return StartChecked(true, true); }
    StartOutcome StartApacheOnly() { return StartChecked(true, false); }
    StartOutcome StartMysqlOnly() { return StartChecked(false, true); }
    void StopBoth();
    void StopApacheOnly();
    void StopMysqlOnly();
    // A setting the servers depend on changed: restart them at the next tick if they run.
    void MarkRestart();

    // One pass of the status loop; nothing while a start is under way.
    std::optional<Status> Tick();

    // kovixctl's commands: start those of the asked servers that do not run (the port test of
    // those only), and stop the asked ones, waiting until they are gone. A MySQL
    // that is still starting does not take its shutdown: it is asked again until it ends. False
    // when they still run after StopTimeoutMs, or as soon as Apache is gone when MySQL's
    // shutdown cannot be asked at all.
    StartOutcome StartStopped(bool apache, bool mysql);
    bool StopAndWait(bool apache, bool mysql);
    // Polls done() on the controller's clock; false when timeoutMs passed first.
    bool WaitUntil(const std::function<bool()>& done, int timeoutMs);

    StackServers& Servers() { return *servers; }
    bool IsApacheRunning() const { return servers->IsApacheRunning(); }
    bool IsMysqlRunning() const { return servers->IsMysqlRunning(); }
    RestartState GetRestartState() const { return restartState; }
    bool IsBusy() const { return busy; }

    static constexpr int StopTimeoutMs = 30000;
    static constexpr int PollMs = 5;
    // How often a stop that did not take is asked again.
    static constexpr int StopRepeatMs = 500;

private:
    StartOutcome StartChecked(bool apache, bool mysql);
    // The port tests of the servers to start; the first refusal fills the outcome.
    bool StartRefused(bool apache, bool mysql, StartOutcome& outcome);
    bool ApachePortRefuses(StartOutcome& outcome);
    bool PortTaken(int port, const wxString& message, StartOutcome& outcome);
    void WatchTemplates();
    void StepRestartMachine(bool apacheRuns, bool mysqlRuns);

    const AppSettings& settings;
    std::unique_ptr<StackServers> servers;
    RefusalHandler onRefusal;
    RestartState restartState = RESTART_BUILDING;
    bool busy = false;
};
