#include "core/MysqlServer.h"

#include "app/AppSettings.h"
#include "lang/LangTable.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

namespace {

const std::string Template =
    "[client]\nport=1\n[mysqld]\n# port=2\nport = 3307\nsocket=\"{MYSQLPATH}/mysql.sock\"\n";

} // namespace

TEST(MysqlServer, ReadsPortAndSocketFromTheServerSectionOfTheLiveFile) {
    TempDir dir;
    AppSettings settings;
    InstallPaths paths(dir.Path(), settings);
    MysqlServer mysql(paths);
    EXPECT_EQ(mysql.Port(), 3306);
    EXPECT_EQ(mysql.SocketPath(), "");
    WriteTreeFile(dir.Path(), "mysql/my.ini", Template);
    EXPECT_EQ(mysql.Port(), 3307);
    EXPECT_EQ(mysql.SocketPath(), "{MYSQLPATH}/mysql.sock");
}

TEST(MysqlServer, ATreeTooDeepForTheSocketIsRefusedWithAReason) {
    TempDir dir;
    const wxString deep = dir.Path() + "/" + wxString('d', 60) + "/" + wxString('e', 40);
    AppSettings settings;
    InitLangTable(settings, "en");
    InstallPaths paths(deep, settings);
    WriteTreeFile(deep, "mysql/my_source.ini", Template);
    MysqlServer mysql(paths);
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
