// ApacheServer and MysqlServer in this process, as the window drives them, on a temporary tree.
#include "app/AppSettings.h"
#include "core/ApacheServer.h"
#include "core/MysqlServer.h"
#include "lang/LangTable.h"
#include "support/LoopbackClient.h"
#include "support/TempDir.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

#include <chrono>
#include <functional>
#include <thread>

namespace {

bool WaitFor(const std::function<bool()>& condition, int seconds = 10) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > giveUp)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool IsGone(long pid) {
    return !wxDirExists(wxString::Format("/proc/%ld", pid));
}

class ServerController : public testing::Test {
protected:
    TestTree tree{KOVIX_SOURCE_DIR};
    AppSettings settings;
    InstallPaths paths{tree.Root(), settings};

    ServerController() {
        settings.Load(paths.SettingsFile());
        InitLangTable(settings);
    }
};

} // namespace

TEST_F(ServerController, ApacheStartsOnceRunsInTheForegroundAndIsReapedWhenKilled) {
    ApacheServer apache(paths);
    EXPECT_EQ(apache.CommandLine(),
              paths.ApacheExecutable() + " -DFOREGROUND -f \"" + paths.ApacheLiveConfig() + "\"");
    EXPECT_EQ(apache.ReadOutput(), "");
    EXPECT_EQ(apache.StartedPid(), 0);

    WriteBytes(tree.File("apache/logs/httpd.pid"), "1\n"); // left by a killed Apache
    ASSERT_TRUE(apache.Start());
    const long pid = apache.StartedPid();
    ASSERT_TRUE(
        WaitFor([&] { return HttpGet(tree.ApachePort(), "/kovix/phpinfo.php").status == 200; }));
    EXPECT_TRUE(apache.IsRunning());
    EXPECT_TRUE(apache.HasActiveChild()); // the started process is the server itself
    // Started again while its child runs: nothing happens, and that is a success.
    EXPECT_TRUE(apache.Start());
    EXPECT_EQ(apache.StartedPid(), pid);
    EXPECT_GE(apache.CpuUse(), 0.0);

    apache.Stop();
    EXPECT_FALSE(apache.IsRunning());
    EXPECT_FALSE(apache.HasActiveChild());
    EXPECT_TRUE(IsGone(pid)); // reaped, no zombie left behind
}

TEST_F(ServerController, ABrokenTemplateReachesTheApacheOutputAndEachStartTriesAgain) {
    WriteBytes(paths.ApacheSourceConfig(),
               ReadBytes(paths.ApacheSourceConfig()) + "\nNoSuchDirective on\n");
    ApacheServer apache(paths);
    ASSERT_TRUE(apache.Start());
    const long first = apache.StartedPid();
    ASSERT_NE(first, 0);
    wxString output;
    EXPECT_TRUE(WaitFor([&] {
        output += apache.ReadOutput();
        return !apache.HasActiveChild();
    }));
    output += apache.ReadOutput();
    EXPECT_NE(output.Find("Invalid command 'NoSuchDirective'"), wxNOT_FOUND) << output;
    EXPECT_FALSE(apache.IsRunning());

    ASSERT_TRUE(apache.Start());
    EXPECT_NE(apache.StartedPid(), first);
    WaitFor([&] { return !apache.HasActiveChild(); });
    EXPECT_TRUE(IsGone(apache.StartedPid()));
}

TEST_F(ServerController, MysqlStartsAndTheKovixAccountShutsItDown) {
    MysqlServer mysql(paths);
    mysql.Start();
    const long pid = mysql.StartedPid();
    ASSERT_NE(pid, 0);
    EXPECT_EQ(mysql.Port(), tree.MysqlPort());
    ASSERT_TRUE(WaitFor([&] { return MysqlGreets(tree.MysqlPort()); }));
    EXPECT_TRUE(mysql.IsRunning());
    mysql.Start(); // running: nothing happens
    EXPECT_EQ(mysql.StartedPid(), pid);

    EXPECT_EQ(mysql.ShutdownCommandLine(),
              paths.MysqlAdminTool() + " --defaults-file=\"" + paths.MysqlLiveConfig() +
                  "\" --user=\"kovix\" --password=\"RbTwXcHqPsLmYv\" shutdown");
    mysql.Stop();
    EXPECT_TRUE(WaitFor([&] { return !mysql.IsRunning(); }));
    EXPECT_TRUE(WaitFor([&] { return !mysql.HasActiveChild(); }));
    EXPECT_TRUE(IsGone(pid));
    const wxString output = mysql.ReadOutput();
    EXPECT_EQ(output.Find("error"), wxNOT_FOUND) << output;
}
