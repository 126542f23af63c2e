// The main window driving the real Apache and MariaDB of a temporary tree: start and stop, the
// restart after a PHP version or template change, and the servers' own output in the console.
// The tree's destructor stops whatever a failing test leaves running.
#include "core/ProcessLookup.h"
#include "core/TextFiles.h"
#include "gui/GuiFixtures.h"
#include "support/CommandRunner.h"

#include <wx/datetime.h>
#include <wx/filename.h>
#include <wx/textctrl.h>

#include <algorithm>

namespace {

const int SERVER_WAIT_MS = 30000;

// The oldest process of the name: the server's master.
long MasterPid(const wxString& name) {
    const std::vector<long> pids = ProcessLookup::Find(name);
    return pids.empty() ? 0 : *std::min_element(pids.begin(), pids.end());
}

wxString PageStatus(const wxString& url) {
    return RunCommand({"curl", "-s", "-o", "/dev/null", "-w", "%{http_code}", url}).out;
}

class WinKovixServersTest : public MainWindowTest<RealTree> {
protected:
    // Opens the window and starts both servers; notes their master processes.
    void OpenRunning() {
        Open().StartBoth();
        ASSERT_TRUE(WaitForStates("Running", "Running"));
        apachePid = MasterPid("httpd");
        mysqlPid = MasterPid("mysqld");
    }
    bool WaitForRestart() {
        return WaitFor(
            [&] {
                const long apache = MasterPid("httpd");
                const long mysql = MasterPid("mysqld");
                return window->GetRestartState() == WinKovix::RESTART_IDLE && apache != 0 &&
                       apache != apachePid && mysql != 0 && mysql != mysqlPid;
            },
            SERVER_WAIT_MS);
    }
    bool WaitForPhpInfo() {
        return WaitFor([&] { return PageStatus(window->Paths().PhpInfoUrl()) == "200"; },
                       SERVER_WAIT_MS);
    }

    long apachePid = 0;
    long mysqlPid = 0;
};

TEST_F(WinKovixServersTest, StartAndStopDriveTheRealServersAndTheWindowFollows) {
    WinKovix& frame = Open();
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped"));

    EXPECT_NO_DIALOG(ClickButton(&frame, WinKovix::ID_BTN_START));
    ASSERT_TRUE(WaitForStates("Running - CPU: ", "Running - CPU: "));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_STOP));
    EXPECT_TRUE(WaitForPhpInfo());

    ChooseMenu(&frame, WinKovix::ID_MENU_STOP_APACHE);
    ASSERT_TRUE(WaitForStates("Stopped", "Running"));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_START));

    ClickButton(&frame, WinKovix::ID_BTN_STOP);
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped", SERVER_WAIT_MS));
    EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_STOP));
    EXPECT_TRUE(ProcessLookup::Find("httpd").empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld").empty());
}

// The change while stopped is tried in WinKovixTest: the restart is dropped, nothing starts.
TEST_F(WinKovixServersTest, PhpVersionChangeRestartsRunningServersWithTheNewVersion) {
    const wxString first = settings.GetPhpVersion();
    ASSERT_EQ(RunCommand({"cp", "-a", tree.File("apache/" + first), tree.File("apache/php_9.0")})
                  .exitCode,
              0);
    OpenRunning();
    Choose(Control(window, WinKovix::ID_PHP_VERSION), "php_9.0");
    EXPECT_EQ(window->GetRestartState(), WinKovix::RESTART_PENDING);
    ASSERT_TRUE(WaitForRestart());
    EXPECT_EQ(settings.GetPhpVersion(), "php_9.0");
    wxString phpIni;
    ASSERT_TRUE(TextFiles::Read(window->Paths().PhpLiveConfig(), phpIni));
    EXPECT_TRUE(phpIni.Contains("/apache/php_9.0/ext")) << phpIni.Left(300);
    EXPECT_TRUE(WaitForPhpInfo());
}

TEST_F(WinKovixServersTest, TemplateChangeRestartsOnlyWithAutomaticRestartOn) {
    settings.SetBool(AppSettings::AUTO_RESTAT_CONFIG_CHANGED, false);
    OpenRunning();
    const wxDateTime later = wxDateTime::Now() + wxTimeSpan::Seconds(5);
    ASSERT_TRUE(
        wxFileName(tree.File("apache/conf/httpd_source.conf")).SetTimes(&later, &later, nullptr));
    for (int tick = 0; tick < 4; ++tick)
        window->StatusTick();
    EXPECT_EQ(window->GetRestartState(), WinKovix::RESTART_IDLE);
    EXPECT_EQ(MasterPid("httpd"), apachePid);
    EXPECT_EQ(MasterPid("mysqld"), mysqlPid);

    settings.SetBool(AppSettings::AUTO_RESTAT_CONFIG_CHANGED, true);
    EXPECT_TRUE(WaitForRestart());
}

TEST_F(WinKovixServersTest, ApacheErrorsReachTheConsole) {
    const wxString source = tree.File("apache/conf/httpd_source.conf");
    wxString text;
    ASSERT_TRUE(TextFiles::Read(source, text));
    ASSERT_TRUE(TextFiles::WriteAtomically(source, text + "\nKovixBogusDirective on\n"));
    ChooseMenu(&Open(), WinKovix::ID_MENU_START_APACHE);
    const auto console = [&] {
        return Control<wxTextCtrl>(window, WinKovix::ID_CONSOLE)->GetValue();
    };
    EXPECT_TRUE(WaitFor([&] { return console().Contains("KovixBogusDirective"); })) << console();
    EXPECT_TRUE(WaitForStates("Stopped", "Stopped"));
}

} // namespace
