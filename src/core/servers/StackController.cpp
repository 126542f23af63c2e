#include "core/servers/StackController.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "core/servers/PortCheck.h"

StackController::StackController(const AppSettings& settings, std::unique_ptr<StackServers> servers)
    : settings(settings), servers(std::move(servers)) {}

bool StackController::StartRefused(bool apache, bool mysql, StartOutcome& outcome) {
    if (apache && ApachePortRefuses(outcome))
        return true;
    if (!mysql || IsMysqlRunning())
        return false;
    const int port = servers->MysqlPort();
    return PortTaken(port, wxString::Format(GetLangText("MYSQL_PORT_TAKEN"), port), outcome);
}

bool StackController::ApachePortRefuses(StartOutcome& outcome) {
    const int port = settings.GetPort();
    const wxString forbidden = PortCheck::PortRefusal(port);
    if (!forbidden.empty()) {
        outcome.refused = true;
        outcome.message = forbidden;
        return true;
    }
    return PortTaken(port, PortCheck::PortTakenMessage(settings), outcome);
}

bool StackController::PortTaken(int port, const wxString& message, StartOutcome& outcome) {
    if (servers->IsPortFree(port))
        return false;
    outcome.refused = true;
    outcome.message = message;
    outcome.holderLine = servers->PortHolderLine(port);
    return true;
}

StackController::StartOutcome StackController::StartChecked(bool apache, bool mysql) {
    StartOutcome outcome;
    if (busy)
        return outcome;
    restartState = RESTART_IDLE;
    busy = true;
    {
        const std::shared_ptr<void> lock = servers->LockTree();
        if (!StartRefused(apache, mysql, outcome)) {
            outcome.apacheStarted = apache && servers->StartApache();
            if (mysql && (apache ? outcome.apacheStarted : !IsMysqlRunning())) {
                servers->StartMysql();
                outcome.mysqlStarted = true;
            }
        }
    }
    // Told without the lock: a message shown meanwhile keeps no one else waiting.
    if (outcome.refused && onRefusal)
        onRefusal(outcome);
    busy = false;
    return outcome;
}

void StackController::StopBoth() {
    const std::shared_ptr<void> lock = servers->LockTree();
    StopApacheOnly();
    StopMysqlOnly();
}

void StackController::StopApacheOnly() {
    restartState = RESTART_IDLE;
    const std::shared_ptr<void> lock = servers->LockTree();
    if (IsApacheRunning())
        servers->StopApache();
}

void StackController::StopMysqlOnly() {
    restartState = RESTART_IDLE;
    const std::shared_ptr<void> lock = servers->LockTree();
    if (IsMysqlRunning())
        servers->StopMysql();
}

void StackController::MarkRestart() {
    if (restartState == RESTART_IDLE)
        restartState = RESTART_PENDING;
}

std::optional<StackController::Status> StackController::Tick() {
    if (busy)
        return std::nullopt;
    Status status;
    status.output = servers->ReadOutput();
    status.pids = servers->FindServers();
    if (status.ApacheRuns())
        status.apacheCpu = servers->ApacheCpu(status.pids.apache);
    if (status.MysqlRuns())
        status.mysqlCpu = servers->MysqlCpu(status.pids.mysql);
    WatchTemplates();
    StepRestartMachine(status.ApacheRuns(), status.MysqlRuns());
    return status;
}

// Only the Apache and PHP templates are watched: they are what an Apache start regenerates.
void StackController::WatchTemplates() {
    if (settings.GetAutoRestart() && servers->TemplatesChanged() && restartState == RESTART_IDLE)
        restartState = RESTART_PENDING;
}

void StackController::StepRestartMachine(bool apacheRuns, bool mysqlRuns) {
    if (restartState != RESTART_PENDING && restartState != RESTART_STOPPED)
        return;
    const std::shared_ptr<void> lock = servers->LockTree();
    if (apacheRuns || mysqlRuns) {
        if (restartState == RESTART_PENDING) {
            servers->StopApache();
            servers->StopMysql();
            restartState = RESTART_STOPPED;
        } else if (restartState == RESTART_STOPPED) {
            // A MySQL stop is skipped while an earlier shutdown is still under way (the admin
            // tool outlives the server by a second): ask again until both are gone.
            if (apacheRuns)
                servers->StopApache();
            if (mysqlRuns)
                servers->StopMysql();
        }
    } else if (restartState == RESTART_STOPPED) {
        servers->StartApache();
        servers->StartMysql();
        restartState = RESTART_IDLE;
    } else if (restartState == RESTART_PENDING) {
        restartState = RESTART_IDLE;
    }
}

StackController::StartOutcome StackController::StartStopped(bool apache, bool mysql) {
    const std::shared_ptr<void> lock = servers->LockTree();
    StartOutcome outcome;
    apache = apache && !IsApacheRunning();
    mysql = mysql && !IsMysqlRunning();
    if (StartRefused(apache, mysql, outcome))
        return outcome;
    if (apache)
        outcome.apacheStarted = servers->StartApache();
    if (mysql) {
        servers->StartMysql();
        outcome.mysqlStarted = true;
    }
    return outcome;
}

bool StackController::StopAndWait(bool apache, bool mysql) {
    const std::shared_ptr<void> lock = servers->LockTree();
    if (apache && IsApacheRunning())
        servers->StopApache();
    const bool stopMysql = mysql && IsMysqlRunning();
    // A shutdown that cannot be asked is not waited for.
    bool canAsk = !stopMysql || servers->StopMysql();
    std::uint64_t askedAt = servers->NowMs();
    const bool gone = WaitUntil(
        [&] {
            if (stopMysql && canAsk && IsMysqlRunning() &&
                servers->NowMs() - askedAt >= StopRepeatMs) {
                canAsk = servers->StopMysql();
                askedAt = servers->NowMs();
            }
            const bool mysqlWaits = stopMysql && canAsk && IsMysqlRunning();
            return !(apache && IsApacheRunning()) && !mysqlWaits;
        },
        StopTimeoutMs);
    return gone && canAsk;
}

bool StackController::WaitUntil(const std::function<bool()>& done, int timeoutMs) {
    const std::uint64_t giveUp = servers->NowMs() + timeoutMs;
    while (!done()) {
        if (servers->NowMs() >= giveUp)
            return false;
        servers->SleepMs(PollMs);
    }
    return true;
}
