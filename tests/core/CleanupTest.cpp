#include "core/Cleanup.h"

#include "core/AppSettings.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filefn.h>

namespace {

struct CleanupTree : testing::Test {
    TempDir dir;
    AppSettings settings;
    InstallPaths paths{dir.Path(), settings};

    CleanupTree() { settings.SetPhpVersion("php_8.2"); }

    void Put(const wxString& relative, const std::string& bytes = "x") {
        WriteTreeFile(dir.Path(), relative, bytes);
    }

    // The names of the files (hidden ones too) directly in the folder.
    wxString FilesIn(const wxString& relative) const {
        wxArrayString names;
        wxDir::GetAllFiles(dir.File(relative), &names, "", wxDIR_FILES | wxDIR_HIDDEN);
        for (wxString& name : names)
            name = name.AfterLast('/');
        names.Sort();
        return wxJoin(names, ' ');
    }
};

} // namespace

TEST_F(CleanupTree, EachActionRemovesItsRuntimeFilesAndNothingElse) {
    Cleanup::Run(Cleanup::LogAction::All, paths); // no folder at all: nothing to do, nothing made
    EXPECT_FALSE(wxDirExists(dir.File("apache")) || wxDirExists(dir.File("mysql")));
    for (const char* name : {"mysql.err", "mysql-bin.000001", "mysql-bin.index", "ibdata1",
                             "ib_logfile0", "aria_log.00000001", "mysqld.pid", "my.err.txt"})
        Put(wxString("mysql/data/") + name);
    Put("mysql/data/mysql/user.frm");
    for (const char* name : {"logs/access.log", "logs/error.log", "logs/php_error.log",
                             "sessions/sess_abc", "sessions/.hidden", "sessions/keep/sess_inner"})
        Put(wxString("apache/") + name);

    Cleanup::Run(Cleanup::LogAction::MysqlLogs, paths);
    EXPECT_EQ(FilesIn("mysql/data"), "aria_log.00000001 my.err.txt mysqld.pid");
    EXPECT_TRUE(wxFileExists(dir.File("mysql/data/mysql/user.frm")));
    EXPECT_TRUE(wxFileExists(dir.File("apache/logs/error.log")));
    Cleanup::Run(Cleanup::LogAction::ApacheLogs, paths);
    EXPECT_EQ(FilesIn("apache/logs"), "php_error.log");
    EXPECT_TRUE(wxFileExists(dir.File("apache/sessions/.hidden")));
    Cleanup::Run(Cleanup::LogAction::Sessions, paths);
    EXPECT_EQ(FilesIn("apache/sessions"), "");
    EXPECT_TRUE(wxFileExists(dir.File("apache/sessions/keep/sess_inner")));
}

// The Apache restore tests the initial copy, the PHP restore the file it replaces.
TEST_F(CleanupTree, RestoreApacheCreatesAMissingSourceButRestorePhpNeedsItsSource) {
    Put("apache/conf/httpd_source.conf", "edited\n");
    Put("apache/php_8.2/php_source.ini", "edited\n");
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.ApacheSourceConfig()) + ReadBytes(paths.PhpSourceConfig()),
              "edited\nedited\n")
        << "no initial copies: both sources stay";
    wxRemoveFile(paths.ApacheSourceConfig());
    wxRemoveFile(paths.PhpSourceConfig());
    Put("apache/conf/httpd_initial.conf", "initial httpd\n");
    Put("apache/php_8.2/php_initial.ini", "initial php\n");
    Cleanup::RestoreApache(paths);
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.ApacheSourceConfig()), "initial httpd\n");
    EXPECT_FALSE(wxFileExists(paths.PhpSourceConfig()));
    Put("apache/php_8.2/php_source.ini", "edited\n");
    Cleanup::RestorePhp(paths);
    EXPECT_EQ(ReadBytes(paths.PhpSourceConfig()), "initial php\n");
}

TEST(CleanupRefusal, EachActionIsRefusedWhileItsServersRun) {
    using Cleanup::LogAction;
    const std::tuple<LogAction, bool, bool, const char*> cases[] = {
        {LogAction::ApacheLogs, false, true, ""},
        {LogAction::ApacheLogs, true, false, "LOG_APACHE_DELETE_RUNNING"},
        {LogAction::MysqlLogs, false, true, "LOG_MYSQL_DELETE_RUNNING"},
        {LogAction::Sessions, true, true, ""},
        {LogAction::All, false, true, "LOG_ALL_DELETE_RUNNING"}};
    for (const auto& [action, apache, mysql, key] : cases)
        EXPECT_EQ(Cleanup::RefusalKey(action, apache, mysql), key)
            << static_cast<int>(action) << " " << apache << mysql;
}
