// The developer's tools against the real servers of a temporary tree: the PHP error log followed
// live, database backup and restore, mail() caught by kovixctl (also from a tree whose folder
// name means something to the shell and to php.ini).
#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/logs/LogCatalog.h"
#include "core/logs/LogFollower.h"
#include "core/logs/LogLines.h"
#include "support/LoopbackClient.h"
#include "support/TestTree.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <wx/dir.h>
#include <wx/filefn.h>
#include <wx/regex.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include <sys/stat.h>

namespace {

class Tools : public testing::Test {
protected:
    TestTree tree{KOVIX_SOURCE_DIR};

    // The tree's own kovixctl: the generated php.ini names it as PHP's sendmail.
    void SetUp() override {
        const wxString kovixctl = tree.File("kovixctl");
        ASSERT_TRUE(wxCopyFile(KOVIXCTL_PATH, kovixctl) && chmod(kovixctl.utf8_str(), 0755) == 0);
        const CommandResult start = Ctl({"start"});
        ASSERT_EQ(start.exitCode, 0) << start.err;
    }
    void TearDown() override { Ctl({"stop"}); }

    CommandResult Ctl(std::vector<wxString> arguments) const {
        return tree.Ctl(KOVIXCTL_PATH, std::move(arguments));
    }
    // ASCII only: the arguments pass through the test's C locale.
    CommandResult Sql(const wxString& statements) const {
        return RunCommand({"mariadb", "--defaults-file=" + tree.File("mysql/my.ini"), "--user=root",
                           "--batch", "--skip-column-names", "--execute=" + statements});
    }
    wxString Checksum(const wxString& table) const {
        const CommandResult result = Sql("CHECKSUM TABLE " + table);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return result.out.AfterFirst('\t').Trim();
    }
    void Page(const wxString& name, const std::string& php) const {
        WriteTreeFile(tree.Root(), "www/" + name, php);
    }
    wxArrayString Backups() const {
        wxArrayString files;
        if (wxDirExists(tree.File("backups")))
            wxDir::GetAllFiles(tree.File("backups"), &files, "", wxDIR_FILES | wxDIR_HIDDEN);
        return files;
    }
};

} // namespace

TEST_F(Tools, APhpErrorReachesTheViewersLinesWithinASecond) {
    AppSettings settings;
    LogEntry php;
    ASSERT_TRUE(LogCatalog::Find(InstallPaths(tree.Root(), settings), "php", php));
    LogFollower follower(php.path);
    LogLines lines;
    lines.Append(follower.Open());
    lines.SetFilter("kovix-marker");
    Page("error.php", "<?php error_log('kovix-marker ' . 6 * 7); echo 'ok';");
    ASSERT_EQ(HttpGet(tree.ApachePort(), "/error.php").body, "ok");
    const auto asked = std::chrono::steady_clock::now();
    while (lines.ShownCount() == 0 &&
           std::chrono::steady_clock::now() - asked < std::chrono::seconds(1)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        lines.Append(follower.Poll());
    }
    ASSERT_EQ(lines.ShownCount(), 1u);
    EXPECT_TRUE(lines.Shown(0).EndsWith("kovix-marker 42"));

    const CommandResult tail = Ctl({"logs", "php", "--lines", "1"});
    EXPECT_EQ(tail.exitCode, 0) << tail.err;
    EXPECT_TRUE(wxString(tail.out).Trim().EndsWith("kovix-marker 42")) << tail.out;
}

TEST_F(Tools, PhpMailIsCaughtWithItsEncodedSubjectAndBodyDecoded) {
    Page("mail.php",
         "<?php\n"
         "$subject = '=?UTF-8?B?' . base64_encode('Grüße von Kovix') . '?=';\n"
         "$body = quoted_printable_encode(\"Café crème = 3 €\\nLigne deux\");\n"
         "$headers = \"From: shop@site.test\\r\\nMIME-Version: 1.0\\r\\n\"\n"
         "  . \"Content-Type: text/plain; charset=UTF-8\\r\\n\"\n"
         "  . \"Content-Transfer-Encoding: quoted-printable\";\n"
         "echo mail('client@site.test', $subject, $body, $headers) ? 'sent' : 'failed';\n");
    Page("plain.php", "<?php echo mail('b@site.test', 'plain subject', 'hi') ? 'sent' : 'failed';");
    ASSERT_EQ(HttpGet(tree.ApachePort(), "/mail.php").body, "sent");
    ASSERT_EQ(HttpGet(tree.ApachePort(), "/plain.php").body, "sent");

    const CommandResult list = Ctl({"mail", "list", "--json"});
    ASSERT_EQ(list.exitCode, 0) << list.err;
    const nlohmann::json messages = nlohmann::json::parse(list.out.utf8_string());
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0]["subject"], "plain subject"); // newest first
    EXPECT_EQ(messages[1]["subject"], "Grüße von Kovix");
    EXPECT_EQ(messages[1]["to"], "client@site.test");
    EXPECT_EQ(messages[1]["from"], "shop@site.test");

    const CommandResult show =
        Ctl({"mail", "show", wxString::FromUTF8(messages[1]["id"].get<std::string>())});
    ASSERT_EQ(show.exitCode, 0) << show.err;
    EXPECT_NE(show.out.Find(wxString::FromUTF8("\n\nCafé crème = 3 €\nLigne deux")), wxNOT_FOUND)
        << show.out;

    EXPECT_EQ(Ctl({"mail", "clear"}).exitCode, 0);
    EXPECT_EQ(Ctl({"mail", "list", "--json"}).out, "[]\n");
    EXPECT_EQ(Ctl({"mail", "show", "20200101-000000-1"}).exitCode, 1);
}

TEST_F(Tools, ABackupRestoresToIdenticalContentAndBadFilesChangeNothing) {
    ASSERT_EQ(Sql("SET max_recursive_iterations = 10000; CREATE DATABASE shop; CREATE TABLE "
                  "shop.items (id INT PRIMARY KEY, "
                  "name VARCHAR(40), price DECIMAL(8,2)) DEFAULT CHARSET=utf8mb4; "
                  "INSERT INTO shop.items WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                  "SELECT i + 1 FROM n WHERE i < 10000) "
                  "SELECT i, CONCAT('article-', i, _utf8mb4 0xC3A9), i * 1.25 FROM n")
                  .exitCode,
              0);
    const wxString original = Checksum("shop.items");
    const nlohmann::json list =
        nlohmann::json::parse(Ctl({"db", "list", "--json"}).out.utf8_string());
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]["name"], "shop");
    EXPECT_EQ(list[0]["tables"], 1);
    EXPECT_GT(list[0]["bytes"].get<long long>(), 0);

    const CommandResult backup = Ctl({"db", "backup"});
    ASSERT_EQ(backup.exitCode, 0) << backup.err;
    const wxString file = wxString(backup.out).Trim();
    EXPECT_TRUE(wxRegEx("/backups/shop-[0-9]{8}-[0-9]{6}\\.sql\\.gz$").Matches(file)) << file;
    ASSERT_EQ(Backups().size(), 1u); // no scratch file left
    const CommandResult second = Ctl({"db", "backup", "shop"});
    ASSERT_EQ(second.exitCode, 0) << second.err;
    EXPECT_NE(wxString(second.out).Trim(), file); // the same second never replaces the first
    EXPECT_EQ(Backups().size(), 2u);

    ASSERT_EQ(
        Sql("DELETE FROM shop.items WHERE id > 5000; UPDATE shop.items SET price = 0").exitCode, 0);
    const CommandResult restore = Ctl({"db", "restore", file});
    ASSERT_EQ(restore.exitCode, 0) << restore.err;
    EXPECT_EQ(Checksum("shop.items"), original);
    ASSERT_EQ(Ctl({"db", "restore", file, "--into", "shop copy"}).exitCode, 0);
    EXPECT_EQ(Checksum("`shop copy`.items"), original);

    // A cut file and a file of something else are refused before anything is touched.
    const std::string whole = ReadBytes(file);
    WriteBytes(tree.File("cut.sql.gz"), whole.substr(0, whole.size() / 2));
    WriteBytes(tree.File("notes.sql"), "SELECT 'this is not a dump';\n");
    ASSERT_EQ(Sql("DELETE FROM shop.items WHERE id = 1").exitCode, 0);
    const wxString changed = Checksum("shop.items");
    for (const char* bad : {"cut.sql.gz", "notes.sql"}) {
        const CommandResult refused = Ctl({"db", "restore", tree.File(bad), "--into", "shop"});
        EXPECT_EQ(refused.exitCode, 1) << bad;
        EXPECT_NE(refused.err.Find("not a complete database backup"), wxNOT_FOUND) << refused.err;
        EXPECT_EQ(Checksum("shop.items"), changed) << bad;
    }
    EXPECT_EQ(Ctl({"db", "backup", "nosuch"}).exitCode, 1);
}

TEST_F(Tools, ARestoreThatFailsHalfwayPutsTheDatabaseBack) {
    ASSERT_EQ(
        Sql("CREATE DATABASE shop; CREATE TABLE shop.items (id INT PRIMARY KEY, name "
            "VARCHAR(40)); INSERT INTO shop.items VALUES (1, 'one'), (2, 'two'), (3, 'three')")
            .exitCode,
        0);
    const wxString original = Checksum("shop.items");
    const CommandResult backup = Ctl({"db", "backup", "shop"});
    ASSERT_EQ(backup.exitCode, 0) << backup.err;
    // A complete dump (it passes the file check) with a statement in its middle that fails after
    // the first table was already replaced.
    const CommandResult unzipped =
        RunCommand({"gzip", "--decompress", "--stdout", wxString(backup.out).Trim()});
    ASSERT_EQ(unzipped.exitCode, 0);
    const std::string dump = unzipped.out.utf8_string();
    const std::string other = "CREATE TABLE other (a INT);\nINSERT INTO other VALUES (1);\n";
    const size_t unlock = dump.find("UNLOCK TABLES;\n");
    ASSERT_NE(unlock, std::string::npos);
    const size_t middle = unlock + 15;
    WriteBytes(tree.File("broken.sql"), dump.substr(0, middle) + other +
                                            "INSERT INTO nosuch VALUES (1);\n" +
                                            dump.substr(middle));
    ASSERT_EQ(Sql("UPDATE shop.items SET name = 'changed' WHERE id = 2").exitCode, 0);
    const wxString changed = Checksum("shop.items");
    const size_t backupsBefore = Backups().size();

    const CommandResult failed = Ctl({"db", "restore", tree.File("broken.sql"), "--into", "shop"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_NE(failed.err.Find("the database was put back as it was"), wxNOT_FOUND) << failed.err;
    EXPECT_NE(failed.err.Find("nosuch"), wxNOT_FOUND) << failed.err; // the client's own words
    EXPECT_EQ(Checksum("shop.items"), changed);
    EXPECT_NE(Sql("SELECT * FROM shop.other").exitCode, 0); // nothing of the bad dump is left
    // The safety backup stays and is named in the message.
    ASSERT_EQ(Backups().size(), backupsBefore + 1);
    const wxArrayString after = Backups();
    const auto safety = std::find_if(after.begin(), after.end(), [&](const wxString& file) {
        return failed.err.Find(file) != wxNOT_FOUND;
    });
    ASSERT_NE(safety, after.end()) << failed.err;
    EXPECT_TRUE(wxRegEx("/shop-[0-9]{8}-[0-9]{6}(-[0-9]+)?\\.sql\\.gz$").Matches(*safety));

    // A restore that succeeds over a database says where the content it replaced went.
    const CommandResult restored = Ctl({"db", "restore", wxString(backup.out).Trim()});
    ASSERT_EQ(restored.exitCode, 0) << restored.err;
    EXPECT_EQ(Checksum("shop.items"), original);
    EXPECT_NE(restored.out.Find("Its previous content was backed up first: " +
                                tree.File("backups/shop-")),
              wxNOT_FOUND)
        << restored.out;
    ASSERT_EQ(Backups().size(), backupsBefore + 2);

    // Into a new database, a failed load leaves no half-loaded database behind.
    const CommandResult fresh = Ctl({"db", "restore", tree.File("broken.sql"), "--into", "fresh"});
    EXPECT_EQ(fresh.exitCode, 1);
    EXPECT_NE(fresh.err.Find("the new database was removed again"), wxNOT_FOUND) << fresh.err;
    EXPECT_NE(fresh.err.Find("nosuch"), wxNOT_FOUND) << fresh.err;
    EXPECT_EQ(Sql("SHOW DATABASES LIKE 'fresh'").out, "");
    EXPECT_EQ(Backups().size(), backupsBefore + 2) << "no safety backup of a new database";
}

// Only generation and PHP's command-line program: PHP runs sendmail_path through the shell.
TEST(ToolsTree, MailFromATreeWithQuotesAndDollarsInItsFolderReachesItsKovixctl) {
    const TestTree tree(KOVIX_SOURCE_DIR, "it's a \"tree\" $HOME `id` \\ ${PATH}");
    const wxString kovixctl = tree.File("kovixctl");
    ASSERT_TRUE(wxCopyFile(KOVIXCTL_PATH, kovixctl) && chmod(kovixctl.utf8_str(), 0755) == 0);
    const CommandResult generated = tree.Ctl(KOVIXCTL_PATH, {"generate"});
    ASSERT_EQ(generated.exitCode, 0) << generated.err;
    const CommandResult sent =
        RunCommand({"php", "-n", "-c", tree.File("apache/php.ini"), "-r",
                    "exit(mail('dev@example.com', 'From the odd tree', 'hello') ? 0 : 1);"});
    ASSERT_EQ(sent.exitCode, 0) << sent.out << sent.err;
    const nlohmann::json messages = nlohmann::json::parse(
        tree.Ctl(KOVIXCTL_PATH, {"mail", "list", "--json"}).out.utf8_string());
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0]["subject"], "From the odd tree");
}

TEST_F(Tools, ABackupThatCannotBeWrittenOrAStoppedServerLeavesNothing) {
    ASSERT_EQ(Sql("CREATE DATABASE notes; CREATE TABLE notes.n (a INT)").exitCode, 0);
    // A file where the backup folder should be: nothing can be written there.
    ASSERT_TRUE(!wxDirExists(tree.File("backups")) || wxRmdir(tree.File("backups")));
    WriteBytes(tree.File("backups"), "in the way");
    const CommandResult blocked = Ctl({"db", "backup", "notes"});
    EXPECT_EQ(blocked.exitCode, 1);
    EXPECT_NE(blocked.err.Find("backup cannot be written"), wxNOT_FOUND) << blocked.err;
    EXPECT_EQ(ReadBytes(tree.File("backups")), "in the way");
    ASSERT_TRUE(wxRemoveFile(tree.File("backups")));

    ASSERT_EQ(Ctl({"stop", "mysql"}).exitCode, 0);
    for (const std::vector<wxString>& command :
         {std::vector<wxString>{"db", "list"}, {"db", "backup", "notes"}}) {
        const CommandResult refused = Ctl(command);
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_NE(refused.err.Find("MySQL is not running"), wxNOT_FOUND) << refused.err;
    }
    EXPECT_TRUE(!wxDirExists(tree.File("backups")) || Backups().empty());
}
