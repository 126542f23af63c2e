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

TEST_F(CleanupTree, EachActionRemovesItsRuntimeFilesAndNothingElse) {
    for (const char* name : {"mysql.err", "mysql-bin.000001", "mysql-bin.index", "ibdata1",
                             "ib_logfile0", "aria_log.00000001", "mysqld.pid", "my.err.txt"})
        Put(wxString("mysql/data/") + name);
    Put("mysql/data/mysql/user.frm");
    for (const char* name : {"logs/access.log", "logs/error.log", "logs/php_error.log",
                             "sessions/sess_abc", "sessions/.hidden", "sessions/keep/sess_inner"})
        Put(wxString("apache/") + name);

    Cleanup::Run(Cleanup::LogAction::MysqlLogs, paths);
    EXPECT_EQ(FilesIn("mysql/data"),
              (std::set<wxString>{"aria_log.00000001", "mysqld.pid", "my.err.txt"}));
    EXPECT_TRUE(wxFileExists(dir.File("mysql/data/mysql/user.frm")));
    EXPECT_EQ(FilesIn("apache/logs").size(), 3u);
    Cleanup::Run(Cleanup::LogAction::ApacheLogs, paths);
    EXPECT_EQ(FilesIn("apache/logs"), std::set<wxString>{"php_error.log"});
    EXPECT_EQ(FilesIn("apache/sessions").size(), 2u);
    Cleanup::Run(Cleanup::LogAction::Sessions, paths);
    EXPECT_TRUE(FilesIn("apache/sessions").empty());
    EXPECT_TRUE(wxFileExists(dir.File("apache/sessions/keep/sess_inner")));
}

TEST_F(CleanupTree, MissingFilesAndFoldersAreSkippedSilently) {
    Cleanup::Run(Cleanup::LogAction::All, paths);
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_FALSE(wxDirExists(dir.File("apache")));
    EXPECT_FALSE(wxDirExists(dir.File("mysql")));
}

// The Apache restore tests the initial copy, the PHP restore the file it replaces.
TEST_F(CleanupTree, RestoreApacheCreatesAMissingSourceButRestorePhpNeedsItsSource) {
    Put("apache/conf/httpd_initial.conf", "initial httpd\n");
    Put("apache/php_8.2/php_initial.ini", "initial php\n");
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.ApacheSourceConfig()), "initial httpd\n");
    EXPECT_FALSE(wxFileExists(paths.PhpSourceConfig()));

    Put("apache/php_8.2/php_source.ini", "edited\n");
    Cleanup::RestorePhp(paths);
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
    const std::tuple<LogAction, bool, bool, const char*> cases[] = {
        {LogAction::ApacheLogs, false, true, ""},
        {LogAction::ApacheLogs, true, false, "LOG_APACHE_DELETE_RUNNING"},
        {LogAction::MysqlLogs, true, false, ""},
        {LogAction::MysqlLogs, false, true, "LOG_MYSQL_DELETE_RUNNING"},
        {LogAction::Sessions, true, true, ""},
        {LogAction::All, false, false, ""},
        {LogAction::All, true, false, "LOG_ALL_DELETE_RUNNING"},
        {LogAction::All, false, true, "LOG_ALL_DELETE_RUNNING"}};
    for (const auto& [action, apache, mysql, key] : cases)
        EXPECT_EQ(Cleanup::RefusalKey(action, apache, mysql), key)
            << static_cast<int>(action) << " " << apache << mysql;
}
