// The main window driving the real Apache and MariaDB of a temporary tree: start and stop, and
// the restart after a PHP version change. The tree's destructor stops whatever a failing test
// leaves running.
#include "core/TextFiles.h"
#include "core/servers/ProcessLookup.h"
#include "gui/GuiFixtures.h"
#include "support/CommandRunner.h"

#include <algorithm>

namespace {

const int SERVER_WAIT_MS = 30000;

// The oldest process of the name: the server's master.
long MasterPid(const wxString& name, const wxString& tree) {
    const std::vector<long> pids = ProcessLookup::Find(name, tree);
    return pids.empty() ? 0 : *std::min_element(pids.begin(), pids.end());
}

class WinKovixServersTest : public MainWindowTest<RealTree> {
protected:
    bool WaitForPhpInfo() {
        const std::vector<wxString> curl{
            "curl", "-s", "-o", "/dev/null", "-w", "%{http_code}", window->Paths().PhpInfoUrl()};
        return WaitFor([&] { return RunCommand(curl).out == "200"; }, SERVER_WAIT_MS);
    }
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
    EXPECT_TRUE(ProcessLookup::Find("httpd", tree.Root()).empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld", tree.Root()).empty());
}

// The change while stopped is tried in WinKovixTest: the restart is dropped, nothing starts.
TEST_F(WinKovixServersTest, PhpVersionChangeRestartsRunningServersWithTheNewVersion) {
    const wxString first = settings.GetPhpVersion();
    ASSERT_EQ(RunCommand({"cp", "-a", tree.File("apache/" + first), tree.File("apache/php_9.0")})
                  .exitCode,
              0);
    Open().StartBoth();
    ASSERT_TRUE(WaitForStates("Running", "Running"));
    const long apachePid = MasterPid("httpd", tree.Root()),
               mysqlPid = MasterPid("mysqld", tree.Root());
    Choose(Control(window, WinKovix::ID_PHP_VERSION), "php_9.0");
    EXPECT_EQ(window->GetRestartState(), WinKovix::RESTART_PENDING);
    ASSERT_TRUE(WaitFor(
        [&] {
            const long apache = MasterPid("httpd", tree.Root()),
                       mysql = MasterPid("mysqld", tree.Root());
            return window->GetRestartState() == WinKovix::RESTART_IDLE && apache != 0 &&
                   apache != apachePid && mysql != 0 && mysql != mysqlPid;
        },
        SERVER_WAIT_MS));
    EXPECT_EQ(settings.GetPhpVersion(), "php_9.0");
    wxString phpIni;
    ASSERT_TRUE(TextFiles::Read(window->Paths().PhpLiveConfig(), phpIni));
    EXPECT_TRUE(phpIni.Contains("/apache/php_9.0/ext")) << phpIni.Left(300);
    EXPECT_TRUE(WaitForPhpInfo());
}

} // namespace
