// The tree's MariaDB against local users: never the administrator's rights, files for SQL only
// inside the tree, a shutdown password of the tree's own that no command line shows, and a port
// that another server holds refused before anything starts.
#include "support/LoopbackClient.h"
#include "support/PortHolder.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>
#include <wx/regex.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class MysqlAccount : public testing::Test {
protected:
    TestTree tree{KOVIX_SOURCE_DIR};

    CommandResult Ctl(std::vector<wxString> arguments) {
        return tree.Ctl(KOVIXCTL_PATH, std::move(arguments));
    }
    // A statement run by the tree's root account through the socket.
    CommandResult Sql(const wxString& statement) {
        return RunCommand({tree.File("mysql/bin/mysql"),
                           "--defaults-file=" + tree.File("mysql/my.ini"), "--user=root", "--batch",
                           "--skip-column-names", "--execute=" + statement});
    }
    std::string ShutdownLog() { return ReadBytes(tree.File("mysql/data/mysql.err")); }
    bool IsRoot() const { return geteuid() == 0; }
};

std::string ReadWhole(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// The real user id of a process, from /proc/<pid>/status.
long UidOf(long pid) {
    std::istringstream status(ReadWhole("/proc/" + std::to_string(pid) + "/status"));
    for (std::string line; std::getline(status, line);)
        if (line.rfind("Uid:", 0) == 0)
            return std::stol(line.substr(4));
    return -1;
}

// Watches every process's command line until stopped: whether one held the secret, and how many
// admin tools were seen (a watch that saw none proves nothing).
class CommandLineWatch {
public:
    explicit CommandLineWatch(std::string secret) : secret(std::move(secret)) {
        thread = std::thread([this] {
            // A scan every few milliseconds sees each admin tool, which lives about a second.
            while (!done) {
                Scan();
                std::this_thread::sleep_for(std::chrono::milliseconds(3));
            }
        });
    }
    ~CommandLineWatch() { Stop(); }
    void Stop() {
        done = true;
        if (thread.joinable())
            thread.join();
    }
    std::atomic<bool> sawSecret{false};
    std::atomic<int> adminSightings{0};

private:
    void Scan() {
        for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
            const std::string line = ReadWhole(entry.path().string() + "/cmdline");
            if (line.find(secret) != std::string::npos)
                sawSecret = true;
            if (line.find("/mysql/bin/mysqladmin") != std::string::npos)
                ++adminSightings;
        }
    }
    std::string secret;
    std::atomic<bool> done{false};
    std::thread thread;
};

// The shutdown password of the tree, from its option file.
std::string ShutdownPassword(const wxString& adminOptions) {
    wxRegEx password("^password=\"([A-Za-z0-9]+)\"$", wxRE_ADVANCED | wxRE_NEWLINE);
    const wxString text = wxString::FromUTF8(ReadBytes(adminOptions));
    return password.Matches(text) ? password.GetMatch(text, 1).utf8_string() : std::string();
}

// phpMyAdmin's page after signing in as root with the empty password.
std::string PhpMyAdminSignIn(int port, const wxString& cookies) {
    const wxString site = wxString::Format("http://127.0.0.1:%d/mysql/index.php", port);
    const wxString form = RunCommand({"curl", "-s", "-c", cookies, "-b", cookies, site}).out;
    wxRegEx token("name=\"token\" value=\"([^\"]+)\"");
    if (!token.Matches(form))
        return "no token in: " + form.utf8_string();
    return RunCommand({"curl", "-s", "-L", "-c", cookies, "-b", cookies, "--data-urlencode",
                       "token=" + token.GetMatch(form, 1), "-d",
                       "pma_username=root&pma_password=&server=1&route=/", site + "?route=/"})
        .out.utf8_string();
}

} // namespace

TEST_F(MysqlAccount, UnderRootTheServerRunsAsMysqlAndWritesFilesOnlyInsideTheTree) {
    if (!IsRoot())
        GTEST_SKIP() << "the administrator's case needs root";
    const passwd* mysql = getpwnam("mysql");
    ASSERT_NE(mysql, nullptr) << "MariaDB's server package makes the mysql account";
    ASSERT_EQ(Ctl({"start"}).exitCode, 0);
    const std::vector<TestTree::ProcessState> servers = tree.ProcessesNamed("mysqld");
    ASSERT_EQ(servers.size(), 1u);
    EXPECT_EQ(UidOf(servers[0].pid), static_cast<long>(mysql->pw_uid));

    const std::string outside = "/tmp/kovix-outfile-" + std::to_string(getpid());
    const CommandResult refused = Sql("SELECT 1 INTO OUTFILE '" + outside + "'");
    EXPECT_NE(refused.exitCode, 0);
    EXPECT_NE(refused.err.Find("secure-file-priv"), wxNOT_FOUND) << refused.err;
    EXPECT_FALSE(wxFileExists(outside));
    const wxString inside = tree.File("mysql/files/one.txt");
    EXPECT_EQ(Sql("SELECT 1 INTO OUTFILE '" + inside + "'").exitCode, 0);
    EXPECT_EQ(ReadBytes(inside), "1\n");

    // Apache's children (www-data) reach the server through its socket.
    EXPECT_EQ(HttpGet(tree.ApachePort(), "/kovix/phpinfo.php").status, 200);
    const std::string signedIn = PhpMyAdminSignIn(tree.ApachePort(), tree.File("cookies"));
    EXPECT_NE(signedIn.find("logout"), std::string::npos) << signedIn.substr(0, 2000);
    EXPECT_EQ(Ctl({"stop"}).exitCode, 0);
}

TEST_F(MysqlAccount, TwentyStopsShowThePasswordOnNoCommandLine) {
    const std::string password = ShutdownPassword(tree.File("mysql/mysqladmin.ini"));
    ASSERT_EQ(password.size(), 32u);
    struct stat options {};
    ASSERT_EQ(stat(tree.File("mysql/mysqladmin.ini").utf8_str(), &options), 0);
    EXPECT_EQ(options.st_mode & 0777, 0600u);

    CommandLineWatch watch(password);
    for (int stop = 0; stop < 20; ++stop) {
        ASSERT_EQ(Ctl({"start", "mysql"}).exitCode, 0) << stop;
        ASSERT_EQ(Ctl({"stop", "mysql"}).exitCode, 0) << stop;
    }
    watch.Stop();
    EXPECT_FALSE(watch.sawSecret);
    EXPECT_GT(watch.adminSightings, 0);
    EXPECT_NE(ShutdownLog().find("initiated by: kovix[kovix] @ localhost"), std::string::npos);
    EXPECT_TRUE(tree.ProcessesNamed("mysqld").empty());
}

// Made before trees had a password of their own: it stops through root until the assembler gives
// it one, then through the shutdown account.
TEST_F(MysqlAccount, ATreeWithoutItsOwnPasswordStillStopsAndTheAssemblerGivesItOne) {
    ASSERT_TRUE(wxRemoveFile(tree.File("mysql/mysqladmin.ini")));
    ASSERT_EQ(Ctl({"start", "mysql"}).exitCode, 0);
    EXPECT_EQ(Ctl({"stop", "mysql"}).exitCode, 0);
    EXPECT_NE(ShutdownLog().find("initiated by: root[root] @ localhost"), std::string::npos);

    const CommandResult upgrade =
        RunCommand({"bash", wxString(KOVIX_SOURCE_DIR) + "/scripts/assemble-tree.sh", tree.Root()});
    ASSERT_EQ(upgrade.exitCode, 0) << upgrade.err;
    ASSERT_EQ(ShutdownPassword(tree.File("mysql/mysqladmin.ini")).size(), 32u);
    ASSERT_EQ(Ctl({"start", "mysql"}).exitCode, 0);
    EXPECT_EQ(Ctl({"stop", "mysql"}).exitCode, 0);
    EXPECT_NE(ShutdownLog().find("initiated by: kovix[kovix] @ localhost"), std::string::npos);
    EXPECT_TRUE(tree.ProcessesNamed("mysqld").empty());
}

TEST_F(MysqlAccount, StartsThatCannotWorkSayWhyAndStartNothing) {
    {
        const PortHolder holder(tree.MysqlPort());
        const wxString port = wxString::Format("%d", tree.MysqlPort());
        const wxString said =
            "The MySQL port " + port + " is already used by another program\nPort " + port +
            wxString::Format(" is held by ctl_tests (pid %ld).\n", static_cast<long>(getpid()));
        for (const char* which : {"all", "mysql"}) {
            const CommandResult start = Ctl({"start", which});
            EXPECT_EQ(start.exitCode, 1) << which;
            EXPECT_EQ(start.err, said) << which;
            EXPECT_TRUE(tree.Processes().empty()) << which;
        }
        ASSERT_EQ(Ctl({"lang", "fr"}).exitCode, 0);
        EXPECT_TRUE(Ctl({"start", "mysql"})
                        .err.StartsWith(wxString::FromUTF8("Le port MySQL " + port.utf8_string() +
                                                           " est déjà utilisé")));
        ASSERT_EQ(Ctl({"lang", "en"}).exitCode, 0);
    }
    if (!IsRoot())
        return;
    // The mysql account may not enter the folder that holds the tree.
    const wxString above = wxPathOnly(tree.Root());
    ASSERT_EQ(chmod(above.utf8_str(), 0700), 0);
    const CommandResult closed = Ctl({"start", "mysql"});
    chmod(above.utf8_str(), 0755);
    EXPECT_EQ(closed.exitCode, 1);
    EXPECT_EQ(closed.err, "MySQL did not start:\nMySQL not started: started by the administrator, "
                          "it runs as the account \"mysql\", which may not enter the folder " +
                              above +
                              ". Open that folder to it (chmod o+x) or move the Kovix folder.\n");
    EXPECT_TRUE(tree.Processes().empty());
}

// The tree's owner after the administrator's start: told how to take the folders back, and then
// the server runs as the owner.
TEST_F(MysqlAccount, AfterTheAdministratorsStartTheOwnerIsToldHowToTakeItsFoldersBack) {
    if (!IsRoot())
        GTEST_SKIP() << "the administrator's case needs root";
    auto asOwner = [&](const wxString& command) {
        return RunCommand({"setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups",
                           KOVIXCTL_PATH, "--root", tree.Root(), command, "mysql"});
    };
    ASSERT_EQ(RunCommand({"chown", "-R", "nobody:nogroup", tree.Root()}).exitCode, 0);
    ASSERT_EQ(Ctl({"start", "mysql"}).exitCode, 0);
    ASSERT_EQ(Ctl({"stop", "mysql"}).exitCode, 0);

    const CommandResult refused = asOwner("start");
    TestTree::ReapEndedServers();
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.Find("MySQL not started: its folder " + tree.File("mysql/data") +
                               " belongs to another account (a start by the administrator gives "
                               "it to \"mysql\"). Take it back with: sudo chown -R nobody \"" +
                               tree.File("mysql") + "\""),
              wxNOT_FOUND)
        << refused.err;
    EXPECT_TRUE(tree.ProcessesNamed("mysqld").empty());

    ASSERT_EQ(RunCommand({"chown", "-R", "nobody", tree.File("mysql")}).exitCode, 0);
    EXPECT_EQ(asOwner("start").exitCode, 0);
    TestTree::ReapEndedServers();
    EXPECT_EQ(asOwner("stop").exitCode, 0);
    TestTree::ReapEndedServers();
    EXPECT_TRUE(tree.ProcessesNamed("mysqld").empty());
}
