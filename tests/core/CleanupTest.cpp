#include "core/Cleanup.h"

#include "app/AppSettings.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filefn.h>

#include <set>

namespace {

struct CleanupTree : testing::Test {
    TempDir dir;
    AppSettings settings;
    InstallPaths paths{dir.Path(), settings};

    CleanupTree() { settings.SetPhpVersion("php_8.2"); }

    void Put(const wxString& relative, const std::string& bytes = "x") {
        WriteTreeFile(dir.Path(), relative, bytes);
    }
    bool Has(const wxString& relative) const { return wxFileExists(dir.File(relative)); }

    std::set<wxString> FilesIn(const wxString& relative) const {
        std::set<wxString> names;
        wxDir folder(dir.File(relative));
        wxString name;
        for (bool found = folder.GetFirst(&name, "", wxDIR_FILES | wxDIR_HIDDEN); found;
             found = folder.GetNext(&name))
            names.insert(name);
        return names;
    }
};

} // namespace

TEST_F(CleanupTree, MysqlLogsRemoveEveryRuntimeFileOfTheDataFolderAndNothingElse) {
    for (const char* name :
         {"mysql.err", "host.err", "mysql-bin.000001", "mysql-bin.index", "ibdata1", "ib_logfile0",
          "ib_logfile101", "aria_log.00000001", "mysqld.pid", "ibtmp1.keep", "my.err.txt"})
        Put(wxString("mysql/data/") + name);
    Put("mysql/data/mysql/user.frm");
    Cleanup::DeleteMysqlLogs(paths);
    EXPECT_EQ(FilesIn("mysql/data"),
              (std::set<wxString>{"aria_log.00000001", "ibtmp1.keep", "mysqld.pid", "my.err.txt"}));
    EXPECT_TRUE(Has("mysql/data/mysql/user.frm"));
}

TEST_F(CleanupTree, ApacheLogsAndSessionsRemoveTheirFilesOnly) {
    Put("apache/logs/access.log");
    Put("apache/logs/error.log");
    Put("apache/logs/php_error.log");
    Put("apache/sessions/sess_abc");
    Put("apache/sessions/.hidden");
    Put("apache/sessions/keep/sess_inner");
    Cleanup::DeleteApacheLogs(paths);
    EXPECT_EQ(FilesIn("apache/logs"), std::set<wxString>{"php_error.log"});
    Cleanup::DeletePhpSessions(paths);
    EXPECT_TRUE(FilesIn("apache/sessions").empty());
    EXPECT_TRUE(Has("apache/sessions/keep/sess_inner"));
}

TEST_F(CleanupTree, MissingFilesAndFoldersAreSkippedSilently) {
    Cleanup::Run(Cleanup::LogAction::All, paths);
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_FALSE(wxDirExists(dir.File("apache")));
    EXPECT_FALSE(wxDirExists(dir.File("mysql")));
}

TEST_F(CleanupTree, AllRemovesApacheLogsSessionsAndMysqlFiles) {
    Put("apache/logs/error.log");
    Put("apache/sessions/sess_1");
    Put("mysql/data/ibdata1");
    Cleanup::Run(Cleanup::LogAction::All, paths);
    EXPECT_FALSE(Has("apache/logs/error.log"));
    EXPECT_FALSE(Has("apache/sessions/sess_1"));
    EXPECT_FALSE(Has("mysql/data/ibdata1"));
}

// The Apache restore tests the initial copy, the PHP restore the file it replaces.
TEST_F(CleanupTree, RestoreApacheCreatesAMissingSourceButRestorePhpNeedsItsSource) {
    Put("apache/conf/httpd_initial.conf", "initial httpd\n");
    Put("apache/php_8.2/php_initial.ini", "initial php\n");
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.ApacheSourceConfig()), "initial httpd\n");
    EXPECT_FALSE(Has("apache/php_8.2/php_source.ini"));

    Put("apache/conf/httpd_source.conf", "edited\n");
    Put("apache/php_8.2/php_source.ini", "edited\n");
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.ApacheSourceConfig()), "initial httpd\n");
    EXPECT_EQ(ReadBytes(paths.PhpSourceConfig()), "initial php\n");

    // Without the initial copies: the Apache source stays, the PHP source stays too.
    wxRemoveFile(paths.ApacheInitialConfig());
    wxRemoveFile(paths.PhpInitialConfig());
    Put("apache/conf/httpd_source.conf", "edited\n");
    Put("apache/php_8.2/php_source.ini", "edited\n");
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.ApacheSourceConfig()), "edited\n");
    EXPECT_EQ(ReadBytes(paths.PhpSourceConfig()), "edited\n");
}

TEST(CleanupRefusal, EachActionIsRefusedWhileItsServersRun) {
    using Cleanup::LogAction;
    struct Case {
        LogAction action;
        bool apache, mysql;
        const char* key;
    };
    for (const Case& c :
         std::vector<Case>{{LogAction::ApacheLogs, false, true, ""},
                           {LogAction::ApacheLogs, true, false, "LOG_APACHE_DELETE_RUNNING"},
                           {LogAction::MysqlLogs, true, false, ""},
                           {LogAction::MysqlLogs, false, true, "LOG_MYSQL_DELETE_RUNNING"},
                           {LogAction::Sessions, true, true, ""},
                           {LogAction::All, false, false, ""},
                           {LogAction::All, true, false, "LOG_ALL_DELETE_RUNNING"},
                           {LogAction::All, false, true, "LOG_ALL_DELETE_RUNNING"}})
        EXPECT_EQ(Cleanup::RefusalKey(c.action, c.apache, c.mysql), c.key)
            << static_cast<int>(c.action) << " " << c.apache << c.mysql;
}
