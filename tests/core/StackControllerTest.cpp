#include "core/servers/StackController.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"

#include <gtest/gtest.h>

namespace {

// Servers that run when told and stop a given number of questions after being told; every
// request is written down, and the clock moves only when the controller sleeps.
class FakeServers : public StackServers {
public:
    bool apacheRuns = false;
    bool mysqlRuns = false;
    bool portFree = true;
    bool mysqlPortFree = true;
    bool templatesChanged = false;
    bool apacheStartRefused = false;
    // How many MySQL stop requests are skipped before one takes (a shutdown still under way).
    int mysqlStopsSkipped = 0;
    // False: MySQL's shutdown program cannot be run.
    bool mysqlStopRuns = true;
    std::string log;
    std::uint64_t now = 0;
    int locks = 0;

    ServerPids FindServers() override {
        ServerPids pids;
        if (apacheRuns)
            pids.apache = {10, 11};
        if (mysqlRuns)
            pids.mysql = {20};
        return pids;
    }
    bool IsApacheRunning() override { return apacheRuns; }
    bool IsMysqlRunning() override { return mysqlRuns; }
    bool StartApache() override {
        log += "startA ";
        apacheRuns = !apacheStartRefused;
        return !apacheStartRefused;
    }
    void StopApache() override {
        log += "stopA ";
        apacheRuns = false;
    }
    void StartMysql() override {
        log += "startM ";
        mysqlRuns = true;
    }
    bool StopMysql() override {
        log += "stopM ";
        if (!mysqlStopRuns)
            return false;
        if (mysqlStopsSkipped-- <= 0)
            mysqlRuns = false;
        return true;
    }
    bool TemplatesChanged() override { return std::exchange(templatesChanged, false); }
    wxString ReadOutput() override { return "out"; }
    double ApacheCpu(const std::vector<long>& pids) override { return pids.size() * 1.5; }
    double MysqlCpu(const std::vector<long>& pids) override { return pids.size() * 2.5; }
    bool IsPortFree(int port) override { return port == MysqlPort() ? mysqlPortFree : portFree; }
    wxString PortHolderLine(int port) override { return wxString::Format("held %d", port); }
    int MysqlPort() override { return 3307; }
    std::shared_ptr<void> LockTree() override {
        ++locks;
        return nullptr;
    }
    std::uint64_t NowMs() override { return now; }
    void SleepMs(int ms) override { now += ms; }
};

class StackControllerTest : public ::testing::Test {
protected:
    void SetUp() override {
        InitLangTable(settings, "en");
        settings.SetPortText("8080");
        stack.Ready();
    }
    std::string Log() { return std::exchange(servers.log, ""); }

    AppSettings settings;
    std::unique_ptr<FakeServers> owned = std::make_unique<FakeServers>();
    FakeServers& servers = *owned;
    StackController stack{settings, std::move(owned)};
};

} // namespace

TEST_F(StackControllerTest, TemplateChangeRestartsRunningServersOnceBothAreGone) {
    stack.StartBoth();
    EXPECT_EQ(Log(), "startA startM ");
    servers.templatesChanged = true;
    servers.mysqlStopsSkipped = 2; // the shutdown of an earlier stop is still under way

    auto status = stack.Tick();
    ASSERT_TRUE(status);
    EXPECT_EQ(status->output, "out");
    EXPECT_EQ(status->apacheCpu + status->mysqlCpu, 3 + 2.5) << "shares measured before the stop";
    EXPECT_EQ(stack.GetRestartState(), StackController::RESTART_STOPPED);
    EXPECT_EQ(Log(), "stopA stopM ");
    stack.Tick();
    EXPECT_EQ(Log(), "stopM ") << "only the server still running is asked again";
    stack.Tick();
    EXPECT_EQ(Log(), "stopM ");
    EXPECT_FALSE(servers.mysqlRuns);
    stack.Tick();
    EXPECT_EQ(Log(), "startA startM ");
    EXPECT_EQ(stack.GetRestartState(), StackController::RESTART_IDLE);
    EXPECT_EQ(servers.locks, 1 + 4) << "the tree is locked for every step that acts";
    stack.Tick();
    EXPECT_EQ(Log(), "");
    EXPECT_EQ(servers.locks, 5);
}

TEST_F(StackControllerTest, ChangesRestartNothingWhenStoppedOrSwitchedOffOrWhileBuilding) {
    servers.templatesChanged = true;
    stack.Tick();
    EXPECT_EQ(stack.GetRestartState(), StackController::RESTART_IDLE) << "stopped: dropped";
    EXPECT_EQ(Log(), "");

    settings.SetBool(AppSettings::AUTO_RESTAT_CONFIG_CHANGED, false);
    stack.StartBoth();
    servers.templatesChanged = true;
    stack.Tick();
    EXPECT_EQ(Log(), "startA startM ");
    EXPECT_TRUE(servers.templatesChanged) << "the watch is not even asked";

    StackController building(settings, std::make_unique<FakeServers>());
    building.MarkRestart();
    EXPECT_EQ(building.GetRestartState(), StackController::RESTART_BUILDING);
}

TEST_F(StackControllerTest, ACommandOfTheUserEndsAPendingRestart) {
    stack.StartBoth();
    stack.MarkRestart();
    stack.StopMysqlOnly();
    EXPECT_EQ(stack.GetRestartState(), StackController::RESTART_IDLE);
    stack.Tick();
    EXPECT_EQ(Log(), "startA startM stopM ");
}

TEST_F(StackControllerTest, TakenPortRefusesTheStartAndNoTickRunsWhileTheRefusalIsShown) {
    servers.portFree = false;
    bool tickedDuringRefusal = true;
    stack.SetRefusalHandler([&](const StackController::StartOutcome& outcome) {
        EXPECT_EQ(outcome.holderLine, "held 8080");
        tickedDuringRefusal = stack.Tick().has_value();
    });
    const StackController::StartOutcome panel = stack.StartBoth();
    EXPECT_FALSE(tickedDuringRefusal);
    EXPECT_TRUE(panel.refused);
    EXPECT_EQ(panel.message, "The apache port 8080 is already used by another program");
    const StackController::StartOutcome cli = stack.StartStopped(true, true);
    EXPECT_TRUE(cli.refused);
    EXPECT_EQ(Log(), "") << "nothing starts, MySQL neither";
    EXPECT_FALSE(stack.IsBusy());
}

TEST_F(StackControllerTest, TakenMysqlPortRefusesEveryStartOfMysqlAndNamesTheHolder) {
    servers.mysqlPortFree = false;
    int shown = 0;
    stack.SetRefusalHandler([&](const StackController::StartOutcome&) { ++shown; });
    EXPECT_TRUE(stack.StartBoth().refused);
    EXPECT_TRUE(stack.StartMysqlOnly().refused);
    EXPECT_EQ(shown, 2);
    const StackController::StartOutcome cli = stack.StartStopped(true, true);
    EXPECT_EQ(cli.message, "The MySQL port 3307 is already used by another program");
    EXPECT_EQ(cli.holderLine, "held 3307");
    EXPECT_EQ(Log(), "") << "nothing starts, Apache neither";

    // Apache alone needs no MySQL port; a MySQL that runs holds its own port.
    EXPECT_FALSE(stack.StartApacheOnly().refused);
    EXPECT_EQ(Log(), "startA ");
    servers.mysqlRuns = true;
    EXPECT_FALSE(stack.StartBoth().refused);
    EXPECT_EQ(Log(), "startA startM ");
}

TEST_F(StackControllerTest, StartsOnlyWhatIsAskedAndNotRunning) {
    servers.apacheStartRefused = true; // another Apache start is under way
    EXPECT_FALSE(stack.StartBoth().mysqlStarted);
    EXPECT_EQ(Log(), "startA ");

    servers.apacheStartRefused = false;
    servers.apacheRuns = true;
    servers.portFree = false; // held by our own Apache: no test when Apache is not to start
    const StackController::StartOutcome outcome = stack.StartStopped(true, true);
    EXPECT_FALSE(outcome.refused);
    EXPECT_FALSE(outcome.apacheStarted);
    EXPECT_TRUE(outcome.mysqlStarted);
    EXPECT_EQ(Log(), "startM ");
}

TEST_F(StackControllerTest, StopAndWaitAsksAStartingMysqlAgainAndGivesUpAfterThirtySeconds) {
    servers.apacheRuns = servers.mysqlRuns = true;
    servers.mysqlStopsSkipped = 3;
    EXPECT_TRUE(stack.StopAndWait(true, true));
    EXPECT_EQ(Log(), "stopA stopM stopM stopM stopM ");
    EXPECT_EQ(servers.now, 3u * StackController::StopRepeatMs);

    servers.mysqlRuns = true;
    servers.mysqlStopsSkipped = 1000;
    servers.now = 0;
    EXPECT_FALSE(stack.StopAndWait(false, true));
    EXPECT_EQ(servers.now, static_cast<std::uint64_t>(StackController::StopTimeoutMs));
    EXPECT_EQ(servers.mysqlStopsSkipped, 1000 - 1 - 60) << "asked every half second, no storm";

    // A shutdown that cannot even be asked is not waited for; Apache still is.
    servers.apacheRuns = true;
    servers.mysqlStopRuns = false;
    servers.now = 0;
    servers.log.clear();
    EXPECT_FALSE(stack.StopAndWait(true, true));
    EXPECT_EQ(Log(), "stopA stopM ");
    EXPECT_FALSE(servers.apacheRuns);
    EXPECT_EQ(servers.now, 0u);
}
