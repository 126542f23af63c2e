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

bool WaitFor(const std::function<bool()>& condition) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(10);
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

TEST_F(ServerController, RetriedAfterAFailureStartedOnceAndReapedWhenStopped) {
    // A broken template: Apache's own words come out, and the next start tries again.
    const std::string source = ReadBytes(paths.ApacheSourceConfig());
    WriteBytes(paths.ApacheSourceConfig(), source + "\nNoSuchDirective on\n");
    ApacheServer apache(paths);
    ASSERT_TRUE(apache.Start());
    const long failed = apache.StartedPid();
    ASSERT_NE(failed, 0);
    wxString output;
    EXPECT_TRUE(WaitFor([&] {
        output += apache.ReadOutput();
        return !apache.HasActiveChild();
    }));
    output += apache.ReadOutput();
    EXPECT_NE(output.Find("Invalid command 'NoSuchDirective'"), wxNOT_FOUND) << output;
    EXPECT_FALSE(apache.IsRunning());
    EXPECT_TRUE(IsGone(failed));

    WriteBytes(paths.ApacheSourceConfig(), source);
    WriteBytes(tree.File("apache/logs/httpd.pid"), "1\n"); // left by a killed Apache
    MysqlServer mysql(paths);
    ASSERT_TRUE(apache.Start());
    mysql.Start();
    const long apachePid = apache.StartedPid(), mysqlPid = mysql.StartedPid();
    EXPECT_NE(apachePid, failed);
    ASSERT_NE(mysqlPid, 0);
    ASSERT_TRUE(
        WaitFor([&] { return HttpGet(tree.ApachePort(), "/kovix/phpinfo.php").status == 200; }));
    ASSERT_TRUE(WaitFor([&] { return MysqlGreets(tree.MysqlPort()); }));
    EXPECT_TRUE(apache.HasActiveChild()); // the started process is the server itself
    // Started again while their children run: nothing happens, and that is a success.
    EXPECT_TRUE(apache.Start());
    mysql.Start();
    EXPECT_EQ(apache.StartedPid(), apachePid);
    EXPECT_EQ(mysql.StartedPid(), mysqlPid);

    apache.Stop();
    mysql.Stop();
    EXPECT_FALSE(apache.IsRunning());
    EXPECT_FALSE(apache.HasActiveChild());
    EXPECT_TRUE(WaitFor([&] { return !mysql.IsRunning() && !mysql.HasActiveChild(); }));
    EXPECT_TRUE(IsGone(apachePid)); // reaped, no zombie left behind
    EXPECT_TRUE(IsGone(mysqlPid));
    output = mysql.ReadOutput();
    EXPECT_EQ(output.Find("error"), wxNOT_FOUND) << output;
}
