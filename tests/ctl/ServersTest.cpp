// kovixctl status/start/stop/clean against the real servers of a temporary tree.
#include "support/LoopbackClient.h"
#include "support/PortHolder.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <wx/filefn.h>

#include <algorithm>
#include <chrono>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class Servers : public testing::Test {
protected:
    TestTree tree{KOVIX_SOURCE_DIR};

    CommandResult Ctl(std::vector<wxString> arguments) {
        return tree.Ctl(KOVIXCTL_PATH, std::move(arguments));
    }

    std::set<long> Pids(const wxString& name) {
        std::set<long> pids;
        for (const TestTree::ProcessState& process : tree.ProcessesNamed(name))
            pids.insert(process.pid);
        return pids;
    }

    // Zombies included.
    void ExpectNothingLeft() { EXPECT_TRUE(Pids("httpd").empty() && Pids("mysqld").empty()); }
};

} // namespace

// The tree's own kovixctl, in a folder with blanks, finds the tree without --root.
TEST_F(Servers, StartAllServesPhpAndMysqlOnceAndStopAllLeavesNothing) {
    ASSERT_NE(tree.Root().Find(' '), wxNOT_FOUND);
    const wxString kovixctl = tree.File("kovixctl");
    ASSERT_TRUE(wxCopyFile(KOVIXCTL_PATH, kovixctl) && chmod(kovixctl.utf8_str(), 0755) == 0);
    WriteBytes(tree.File("apache/logs/httpd.pid"), "1\n"); // left by a killed Apache
    const CommandResult start = RunCommand({kovixctl, "start"});
    ASSERT_EQ(start.exitCode, 0) << start.err;
    EXPECT_EQ(start.err, "");

    const HttpReply phpinfo = HttpGet(tree.ApachePort(), "/kovix/phpinfo.php");
    EXPECT_EQ(phpinfo.status, 200);
    EXPECT_NE(phpinfo.body.find("Loaded Configuration File </td><td class=\"v\">" +
                                tree.File("apache/php.ini").utf8_string() + " </td>"),
              std::string::npos);
    const CommandResult root = RunCommand(
        {tree.File("mysql/bin/mysql"), "--defaults-file=" + tree.File("mysql/my.ini"),
         "--user=root", "--batch", "--skip-column-names", "--execute=SELECT CURRENT_USER()"});
    EXPECT_EQ(root.out, "root@localhost\n") << root.err;

    nlohmann::json status = nlohmann::json::parse(Ctl({"status", "--json"}).out.utf8_string());
    EXPECT_EQ(status["apache"]["running"], true);
    EXPECT_EQ(status["mysql"]["running"], true);
    EXPECT_TRUE(status["apache"]["cpu"].is_number_integer());
    EXPECT_GE(status["mysql"]["cpu"].get<int>(), 0);
    EXPECT_NE(Ctl({"status"}).out.Find("Running  CPU: "), wxNOT_FOUND);

    // A second start while running does nothing and succeeds.
    const std::set<long> apache = Pids("httpd"), mysql = Pids("mysqld");
    EXPECT_FALSE(apache.empty());
    EXPECT_EQ(mysql.size(), 1u);
    EXPECT_EQ(Ctl({"start"}).exitCode, 0);
    EXPECT_EQ(Pids("httpd"), apache);
    EXPECT_EQ(Pids("mysqld"), mysql);

    const auto before = std::chrono::steady_clock::now();
    const CommandResult stop = RunCommand({kovixctl, "stop"});
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(3));
    EXPECT_EQ(stop.exitCode, 0) << stop.err;
    TestTree::ReapEndedServers();
    ExpectNothingLeft();
    EXPECT_EQ(Ctl({"status"}).out, "Apache  Stopped\nMySQL   Stopped\n");
    EXPECT_EQ(
        Ctl({"status", "--json"}).out,
        "{\"apache\":{\"running\":false,\"cpu\":0},\"mysql\":{\"running\":false,\"cpu\":0}}\n");
    EXPECT_EQ(Ctl({"stop"}).exitCode, 0) << "stopping what is stopped is no failure";
    // The panel's own account shut MySQL down in order, after a start with nothing to warn about.
    const std::string log = ReadBytes(tree.File("mysql/data/mysql.err"));
    EXPECT_NE(log.find("initiated by: kovix[kovix] @ localhost"), std::string::npos);
    EXPECT_EQ(log.find("max_open_files"), std::string::npos) << log;
}

TEST_F(Servers, StartsThatCannotWorkSayWhyAndStartNothing) {
    {
        // Another server on the port is not taken for ours.
        const PortHolder holder(tree.ApachePort());
        const wxString port = wxString::Format("%d", tree.ApachePort());
        const CommandResult start = Ctl({"start"});
        EXPECT_EQ(start.exitCode, 1);
        EXPECT_EQ(start.err, "The apache port " + port +
                                 " is already used by another program\nPort " + port +
                                 wxString::Format(" is held by ctl_tests (pid %ld).\n",
                                                  static_cast<long>(getpid())));
        EXPECT_TRUE(tree.Processes().empty());
        // MySQL alone needs no Apache port.
        EXPECT_EQ(Ctl({"start", "mysql"}).exitCode, 0);
        EXPECT_TRUE(MysqlGreets(tree.MysqlPort()));
        EXPECT_EQ(Ctl({"stop", "mysql"}).exitCode, 0);
        ExpectNothingLeft();
    }
    // Apache names the line of the generated file; the line of the template is added.
    const wxString source = tree.File("apache/conf/httpd_source.conf");
    const std::string edited = ReadBytes(source) + "\nNoSuchDirective on\n";
    WriteBytes(source, edited);
    const auto templateLine = std::count(edited.begin(), edited.end(), '\n');
    const CommandResult broken = Ctl({"start", "apache"});
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_NE(broken.err.Find("Invalid command 'NoSuchDirective'"), wxNOT_FOUND) << broken.err;
    EXPECT_NE(broken.err.Find(wxString::Format("httpd_source.conf line %ld: NoSuchDirective on",
                                               static_cast<long>(templateLine))),
              wxNOT_FOUND)
        << broken.err;
    EXPECT_EQ(broken.err.Find(
                  wxString::Format("Syntax error on line %ld ", static_cast<long>(templateLine))),
              wxNOT_FOUND)
        << "the template's placeholders span several lines";
    EXPECT_EQ(Ctl({"status"}).out, "Apache  Stopped\nMySQL   Stopped\n");
    ExpectNothingLeft();
}

// Offline, another address does not even reach Apache (0: nothing answered).
TEST_F(Servers, OfflineServesThisMachineOnlyAndOnlineServesEveryone) {
    for (const auto& [mode, fromElsewhere] : {std::pair("offline", 0), std::pair("online", 200)}) {
        ASSERT_EQ(Ctl({"mode", mode}).exitCode, 0);
        ASSERT_EQ(Ctl({"start", "apache"}).exitCode, 0);
        EXPECT_EQ(HttpGet(tree.ApachePort(), "/kovix/phpinfo.php", "127.0.0.1").status, 200);
        EXPECT_EQ(HttpGet(tree.ApachePort(), "/kovix/phpinfo.php", "127.0.0.2").status,
                  fromElsewhere)
            << mode;
        ASSERT_EQ(Ctl({"stop", "apache"}).exitCode, 0);
    }
    ExpectNothingLeft();
}

TEST_F(Servers, CleanIsRefusedWhileItsServerRunsAndSessionsNeverAre) {
    ASSERT_EQ(Ctl({"start"}).exitCode, 0);
    HttpGet(tree.ApachePort(), "/"); // writes the access log
    WriteBytes(tree.File("apache/sessions/sess_test"), "x");
    for (const auto& [what, message] :
         {std::pair("apache-logs", "You must stop Apache server before supress log file\n"),
          std::pair("mysql-logs", "You must stop MySQL server before supress log file\n"),
          std::pair("all", "You must stop Apache and MySQL server before supress log file\n")}) {
        const CommandResult clean = Ctl({"clean", what});
        EXPECT_EQ(clean.exitCode, 1) << what;
        EXPECT_EQ(clean.err, message);
    }
    EXPECT_TRUE(wxFileExists(tree.File("apache/logs/access.log")));
    EXPECT_TRUE(wxFileExists(tree.File("mysql/data/mysql.err")));
    EXPECT_EQ(Ctl({"clean", "sessions"}).exitCode, 0);
    EXPECT_FALSE(wxFileExists(tree.File("apache/sessions/sess_test")));
}

// Apache gives a name no host claims to the first host of the address: the main site must stay
// first when the user adds a host, with or without the sites of www/.
TEST_F(Servers, LocalhostStaysTheMainSiteBesideAnAddedHost) {
    const wxString port = wxString::Format("%d", tree.ApachePort());
    WriteBytes(tree.File("kovix.ini"),
               ReadBytes(tree.File("kovix.ini")) + "SITES_ENABLED = \"0\"\n");
    ASSERT_TRUE(wxMkdir(tree.File("www/demo")));
    WriteBytes(tree.File("www/demo/index.html"), "demo page\n");
    const wxString hosts = "{\"hosts\":[{\"address\":\"*:" + port +
                           "\",\"ServerName\":\"demo.localhost\",\"ServerAlias\":\"\","
                           "\"DocumentRoot\":\"{DOCUMENTPATH}/demo\",\"aliases\":[],"
                           "\"directories\":[],\"others\":[]}]}";
    WriteBytes(tree.File("hosts.json"), hosts.utf8_string());
    ASSERT_EQ(Ctl({"apache", "vhosts", "import", tree.File("hosts.json")}).exitCode, 0);
    ASSERT_EQ(Ctl({"start", "apache"}).exitCode, 0);
    auto page = [&](const wxString& host) {
        return RunCommand({"curl", "-s", "-H", "Host: " + host, "http://127.0.0.1:" + port + "/"})
            .out;
    };
    EXPECT_NE(page("localhost").Find("<title>Kovix - local web server</title>"), wxNOT_FOUND);
    EXPECT_EQ(page("demo.localhost"), "demo page\n");
    EXPECT_EQ(Ctl({"stop", "apache"}).exitCode, 0);
    ExpectNothingLeft();
}
