#include "core/servers/StackServers.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

#include <unistd.h>

TEST(MysqlServer, ReadsTheServerSectionAndRefusesATreeTooDeepForTheSocket) {
    const std::string myIni =
        "[client]\nport=1\n[mysqld]\n# port=2\nport = 3307\nsocket=\"{MYSQLPATH}/mysql.sock\"\n";
    TempDir dir;
    AppSettings settings;
    InitLangTable(settings, "en");
    const wxString deep = dir.Path() + "/" + wxString('d', 60) + "/" + wxString('e', 40);
    InstallPaths paths(deep, settings);
    MysqlServer mysql(paths);
    WriteTreeFile(deep, "mysql/my.ini", myIni);
    WriteTreeFile(deep, "mysql/my_source.ini", myIni);
    EXPECT_EQ(mysql.Port(), 3307);
    EXPECT_EQ(mysql.SocketPath(), "{MYSQLPATH}/mysql.sock");

    mysql.Start();
    EXPECT_EQ(mysql.StartedPid(), 0);
    const wxString socket = paths.MysqlFolder() + "/mysql.sock";
    EXPECT_EQ(mysql.ReadOutput(),
              wxString::Format("MySQL not started: its socket path %s is %d bytes long, a socket "
                               "path may not exceed 107 bytes. Move the Kovix folder to a "
                               "shorter path.\n",
                               socket, static_cast<int>(socket.length())));
    EXPECT_EQ(mysql.ReadOutput(), "");
}

// What the panel's console shows (the status tick reads both servers' output): a server whose
// configuration could not be generated says which file and is not started on the old one.
TEST(StackServers, AStartWhoseGenerationFailedSaysWhyAndStartsNothing) {
    TempDir dir;
    AppSettings settings;
    InitLangTable(settings, "en");
    InstallPaths paths(dir.Path(), settings);
    WriteTreeFile(dir.Path(), "apache/conf/httpd.conf", "stale\n");
    WriteTreeFile(dir.Path(), "mysql/my.ini", "[mysqld]\n");
    LiveStackServers servers(paths);
    servers.StartApache();
    servers.StartMysql();
    EXPECT_EQ(servers.Apache().StartedPid() + servers.Mysql().StartedPid(), 0);
    const wxString output = servers.ReadOutput();
    for (const wxString& said :
         {"Cannot read " + paths.ApacheSourceConfig() + ": No such file or directory\n",
          wxString("Apache was not started: its configuration could not be generated"),
          "Cannot read " + paths.MysqlSourceConfig() + ": No such file or directory\n",
          wxString("MySQL was not started: its configuration could not be generated")})
        EXPECT_NE(output.Find(said), wxNOT_FOUND) << said << " in " << output;
}

// The tree's own password file when it has one, else the root account, which needs none on the
// local socket; never a password on the line. The server's files for SQL stay in the tree, and
// under root it runs as the mysql account.
TEST(MysqlServer, CommandLinesCarryNoPasswordNorTheAdministratorsRights) {
    TempDir dir;
    AppSettings settings;
    InstallPaths paths(dir.Path(), settings);
    MysqlServer mysql(paths);
    const wxString folder = paths.MysqlFolder();
    EXPECT_EQ(mysql.ShutdownCommandLine(), folder + "/bin/mysqladmin --defaults-file=\"" + folder +
                                               "/my.ini\" --user=\"root\" shutdown");
    WriteTreeFile(dir.Path(), "mysql/mysqladmin.ini", "!include my.ini\n");
    EXPECT_EQ(mysql.ShutdownCommandLine(), folder + "/bin/mysqladmin --defaults-file=\"" + folder +
                                               "/mysqladmin.ini\" --user=\"kovix\" shutdown");

    wxString start = folder + "/bin/mysqld --defaults-file=\"" + folder +
                     "/my.ini\" --secure-file-priv=\"" + folder + "/files\"";
    if (geteuid() == 0)
        start += " --user=mysql";
    EXPECT_EQ(mysql.CommandLine(), start);
}
