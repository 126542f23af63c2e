#include "core/db/DatabaseTool.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/wfstream.h>
#include <wx/zstream.h>

namespace {

void WriteGzip(const wxString& path, const std::string& text) {
    wxFFileOutputStream out(path, "wb");
    wxZlibOutputStream zip(out, 6, wxZLIB_GZIP);
    zip.Write(text.data(), text.size());
}

const std::string CompleteDump = "/*M!999999\\- enable the sandbox mode */ \n"
                                 "-- MariaDB dump 10.19  Distrib 10.11.19-MariaDB\n"
                                 "CREATE TABLE t (a int);\n"
                                 "INSERT INTO t VALUES (1);\n"
                                 "-- Dump completed on 2026-11-23 10:15:00\n";

} // namespace

TEST(DatabaseTool, TheDatabaseOfABackupComesFromItsFileName) {
    EXPECT_EQ(DatabaseTool::DatabaseOfBackup("/x/backups/shop-20261123-101500.sql.gz"), "shop");
    EXPECT_EQ(DatabaseTool::DatabaseOfBackup("my-app-20261123-101500-2.sql.gz"), "my-app");
    EXPECT_EQ(DatabaseTool::DatabaseOfBackup("legacy.sql"), "legacy");
    EXPECT_EQ(DatabaseTool::DatabaseOfBackup("notes.txt"), "");
}

TEST(DatabaseTool, OnlyACompleteIntactDumpPassesTheCheck) {
    TempDir dir;
    const std::string compressedWhole = [&] {
        WriteGzip(dir.File("whole.sql.gz"), CompleteDump);
        return ReadBytes(dir.File("whole.sql.gz"));
    }();
    WriteBytes(dir.File("plain.sql"), CompleteDump);
    WriteBytes(dir.File("cut.sql.gz"), compressedWhole.substr(0, compressedWhole.size() - 12));
    WriteGzip(dir.File("unfinished.sql.gz"), CompleteDump.substr(0, CompleteDump.size() - 30));
    WriteGzip(dir.File("photo.sql.gz"), "\x89PNG\r\n\x1a\n not a dump");
    WriteBytes(dir.File("garbage.sql.gz"), "\x1f\x8b garbage that claims to be gzip");

    DatabaseError error;
    EXPECT_TRUE(DatabaseTool::CheckBackup(dir.File("whole.sql.gz"), error));
    EXPECT_TRUE(DatabaseTool::CheckBackup(dir.File("plain.sql"), error));
    for (const char* bad :
         {"cut.sql.gz", "unfinished.sql.gz", "photo.sql.gz", "garbage.sql.gz", "missing.sql.gz"}) {
        EXPECT_FALSE(DatabaseTool::CheckBackup(dir.File(bad), error)) << bad;
        EXPECT_EQ(error.key, "DB_BAD_BACKUP");
        EXPECT_EQ(error.detail, dir.File(bad));
    }
}
