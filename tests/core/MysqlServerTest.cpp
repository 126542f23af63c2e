#include "core/servers/MysqlServer.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

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
