// kovixctl says why what it was asked could not be done: every file it could not write, read or
// remove is named with the system's reason (exit 1), a server whose configuration could not be
// generated is not started on the old files, and a program that cannot run says why.
#include "ctl/NobodyTesting.h"
#include "support/FakeServer.h"
#include "support/TestTree.h"

#include <wx/filefn.h>

#include <chrono>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const std::string phpTemplate = "[PHP]\n"
                                ";extension=php_mysql.so\n"
                                "short_open_tag = Off\n"
                                "extension_dir = \"{PHPEXTPATH}\"\n";
const std::string apacheTemplate = "Listen {APACHE_PORT}\n"
                                   "#LoadModule rewrite_module modules/mod_rewrite.so\n";
// A server program that says it ran: a start on stale files would show it.
const std::string staleStart = "#!/bin/sh\necho started on stale files\nexit 1\n";

// A tree with every template, its live files from an earlier generation, logs and sessions.
class FailureReport : public NobodyCtlTest {
protected:
    FailureReport() {
        // Started by root, MySQL runs as its service account, which must reach the tree.
        EXPECT_EQ(chmod(tree.Path().utf8_str(), 0755), 0);
        // Free ports: a port another server holds would be refused before anything is said.
        Write("kovix.ini",
              wxString::Format("APACHE_PORT = \"%d\"\n", TestTree::FreePort()).utf8_string());
        Write("apache/php_8.2/php_source.ini", phpTemplate);
        Write("apache/php_8.2/php_initial.ini", phpTemplate);
        Write("apache/conf/httpd_source.conf", apacheTemplate);
        Write("apache/conf/httpd_initial.conf", apacheTemplate);
        Write("apache/conf/httpd.conf", "old httpd.conf\n");
        Write("apache/logs/error.log", "old\n");
        Write("apache/logs/access.log", "old\n");
        Write("apache/sessions/sess_1", "old\n");
        Write("mail/20261123-101500-1.eml", "Subject: kept\n\nhello\n");
        Write("mysql/my_source.ini",
              wxString::Format("[mysqld]\nport=%d\nlog-error=\"{MYSQLDATAPATH}"
                               "/kovix.err\"\n",
                               TestTree::FreePort())
                  .utf8_string());
        Write("mysql/my.ini", "[mysqld]\nlog-error=\"/another/tree/mysql/data/kovix.err\"\n");
        Write("mysql/data/kovix.err", "an error of the tree this one was copied from\n");
        Program("apache/bin/httpd", staleStart);
        Program("mysql/bin/mysqld", staleStart);
    }

    void Program(const wxString& relativePath, const std::string& script) const {
        Write(relativePath, script);
        ASSERT_EQ(chmod(tree.File(relativePath).utf8_str(), 0755), 0);
    }

    void ExpectRefusedWrite(const std::vector<wxString>& args, const wxString& file) const {
        const CommandResult result = CtlAsNobody(args);
        EXPECT_EQ(result.exitCode, 1) << args.front() << ": " << result.err;
        EXPECT_NE(result.err.Find(tree.File(file) + ": Permission denied"), wxNOT_FOUND)
            << args.front() << ": " << result.err;
    }
};

// The tree stays root's: nobody may read it but write nothing in it.
class ReadOnlyTree : public FailureReport {
protected:
    void SetUp() override { LetNobodyIn(); }
};

} // namespace

TEST_F(ReadOnlyTree, EveryFailedWriteIsNamedWithTheSystemsReasonAndNothingChanges) {
    const std::string settings = Read("kovix.ini");
    ExpectRefusedWrite({"generate"}, "apache/conf/httpd.conf");
    ExpectRefusedWrite({"generate"}, "mysql/my.ini");
    ExpectRefusedWrite({"restore", "apache"}, "apache/conf/httpd_source.conf");
    ExpectRefusedWrite({"restore", "php"}, "apache/php_8.2/php_source.ini");
    ExpectRefusedWrite({"clean", "apache-logs"}, "apache/logs/error.log");
    ExpectRefusedWrite({"clean", "sessions"}, "apache/sessions/sess_1");
    ExpectRefusedWrite({"clean", "mysql-logs"}, "mysql/data/kovix.err");
    for (const char* file :
         {"apache/logs/access.log", "apache/sessions/sess_1", "mysql/data/kovix.err"})
        ExpectRefusedWrite({"clean", "all"}, file);
    ExpectRefusedWrite({"port", "8081"}, "kovix.ini");
    ExpectRefusedWrite({"mode", "online"}, "kovix.ini");
    ExpectRefusedWrite({"php", "set", "short_open_tag", "on"}, "apache/php_8.2/php_source.ini");
    ExpectRefusedWrite({"php", "ext", "enable", "mysql"}, "apache/php_8.2/php_source.ini");
    ExpectRefusedWrite({"apache", "module", "enable", "rewrite_module"},
                       "apache/conf/httpd_source.conf");
    Write("hosts.json", "{\"hosts\": []}");
    ExpectRefusedWrite({"apache", "vhosts", "import", tree.File("hosts.json")},
                       "apache/conf/httpd_source.conf");
    ExpectRefusedWrite({"mail", "clear"}, "mail/20261123-101500-1.eml");
    const CommandResult caught =
        RunShell("echo hello | setpriv --reuid=nobody --regid=nogroup --clear-groups " +
                 wxString(KOVIXCTL_PATH) + " --root " + tree.Path() + " mail catch");
    EXPECT_EQ(caught.exitCode, 1);
    EXPECT_EQ(caught.err, "The message cannot be stored: Cannot write " + tree.File("mail") +
                              ": Permission denied\n");
    EXPECT_EQ(Read("apache/conf/httpd.conf"), "old httpd.conf\n");
    EXPECT_EQ(Read("apache/sessions/sess_1"), "old\n");
    EXPECT_EQ(Read("kovix.ini"), settings);

    Write("kovix.ini", settings + "CURRENT_LANG = \"fr\"\n");
    const CommandResult french = CtlAsNobody({"port", "8081"});
    EXPECT_EQ(french.exitCode, 1);
    EXPECT_TRUE(french.err.StartsWith(wxString::FromUTF8("Impossible d'écrire ") +
                                      tree.File("kovix.ini") + " : "))
        << french.err;
}

TEST_F(ReadOnlyTree, AStartWhoseGenerationFailedStartsNothingOnTheOldFiles) {
    const CommandResult start = CtlAsNobody({"start"});
    EXPECT_EQ(start.exitCode, 1);
    for (const char* file : {"apache/conf/httpd.conf", "mysql/my.ini"})
        EXPECT_NE(start.err.Find(tree.File(file) + ": Permission denied"), wxNOT_FOUND) << file;
    for (const char* server : {"Apache", "MySQL"})
        EXPECT_NE(start.err.Find(wxString(server) +
                                 " was not started: its configuration could not be generated"),
                  wxNOT_FOUND)
            << start.err;
    EXPECT_EQ(start.err.Find("stale"), wxNOT_FOUND) << start.err;
}

TEST_F(FailureReport, AProgramThatCannotRunGivesTheSystemsReason) {
    ASSERT_EQ(chmod(tree.File("apache/bin/httpd").utf8_str(), 0644), 0);
    ASSERT_TRUE(wxRemoveFile(tree.File("mysql/bin/mysqld")));
    const CommandResult start = Ctl({"start"});
    EXPECT_EQ(start.exitCode, 1);
    EXPECT_NE(start.err.Find("Cannot run " + tree.File("apache/bin/httpd") + ": Permission denied"),
              wxNOT_FOUND)
        << start.err;
    EXPECT_NE(start.err.Find("Cannot run " + tree.File("mysql/bin/mysqld") +
                             ": No such file or directory"),
              wxNOT_FOUND)
        << start.err;
}

// Not after 30 s of waiting for a shutdown that was never asked.
TEST_F(FailureReport, AShutdownProgramThatCannotRunIsSaidAtOnce) {
    FakeServer mysqld(tree.Path(), "mysql/bin/mysqld");
    const auto asked = std::chrono::steady_clock::now();
    const CommandResult stop = Ctl({"stop", "mysql"});
    EXPECT_EQ(stop.exitCode, 1);
    EXPECT_NE(stop.err.Find("Cannot run " + tree.File("mysql/bin/mysqladmin") +
                            ": No such file or directory"),
              wxNOT_FOUND)
        << stop.err;
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(10));
}

// The log of a copied tree holds the old tree's errors: only what this start wrote is shown.
TEST_F(FailureReport, AMysqlFailureShowsOnlyWhatThisStartLogged) {
    Program("mysql/bin/mysqld", "#!/bin/sh\necho 'this start failed' >> data/kovix.err\nexit 1\n");
    const CommandResult start = Ctl({"start", "mysql"});
    EXPECT_EQ(start.exitCode, 1);
    EXPECT_EQ(start.err, "MySQL did not start:\nthis start failed\n");
}

TEST_F(FailureReport, MalformedJsonGivesTheParsersPosition) {
    const std::string before = Read("apache/conf/httpd_source.conf");
    for (const std::string& json : {std::string("{\"hosts\": [\n  {\"address\": x"),
                                    std::string("{\"hosts\": [\n  {\"address\": \"\xe9\xff")}) {
        Write("hosts.json", json);
        const CommandResult import = Ctl({"apache", "vhosts", "import", tree.File("hosts.json")});
        EXPECT_EQ(import.exitCode, 1);
        EXPECT_TRUE(import.err.StartsWith("Malformed JSON: ")) << import.err;
        EXPECT_NE(import.err.Find("parse error at line 2, column "), wxNOT_FOUND) << import.err;
    }
    EXPECT_EQ(Read("apache/conf/httpd_source.conf"), before);
}
