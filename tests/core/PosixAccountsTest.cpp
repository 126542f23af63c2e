// Handing folders to the account a server runs as, as root does for MariaDB's (nobody here).
#include "platform/Platform.h"

#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct stat StatusOf(const wxString& path) {
    struct stat status {};
    lstat(path.utf8_str(), &status);
    return status;
}

} // namespace

TEST(PosixAccounts, AFolderIsGivenWholeWithoutFollowingLinksAndAClosedFolderIsNamed) {
    if (geteuid() != 0)
        GTEST_SKIP() << "giving folders away needs root";
    Platform& platform = Platform::Get();
    const passwd* nobody = getpwnam("nobody");
    ASSERT_NE(nobody, nullptr);
    EXPECT_TRUE(platform.IsPrivileged());
    EXPECT_FALSE(platform.AccountExists("kovix-no-such-account"));

    TempDir dir;
    const wxString tree = dir.Path() + "/a tree";
    WriteTreeFile(tree, "data/db/table", "rows");
    WriteTreeFile(dir.Path(), "root-file", "root's");
    ASSERT_EQ(symlink(dir.File("root-file").utf8_str(), (tree + "/data/link").utf8_str()), 0);
    ASSERT_EQ(chmod(dir.Path().utf8_str(), 0700), 0);
    EXPECT_EQ(platform.FolderClosedTo("nobody", tree), dir.Path());
    ASSERT_EQ(chmod(dir.Path().utf8_str(), 0711), 0);
    EXPECT_EQ(platform.FolderClosedTo("nobody", tree), "");

    EXPECT_TRUE(platform.GiveFolderTo("nobody", tree + "/data"));
    for (const char* given : {"/data", "/data/db", "/data/db/table", "/data/link"})
        EXPECT_EQ(StatusOf(tree + given).st_uid, nobody->pw_uid) << given;
    EXPECT_EQ(StatusOf(dir.File("root-file")).st_uid, 0u) << "a link is not followed";
    EXPECT_FALSE(platform.OwnsFile(tree + "/data"));
    EXPECT_TRUE(platform.OwnsFile(tree));

    // The tree's folder stays root's; nobody's group may add files, and remove only its own.
    EXPECT_TRUE(platform.LetAccountAddFiles("nobody", tree));
    const struct stat folder = StatusOf(tree);
    EXPECT_EQ(folder.st_uid, 0u);
    EXPECT_EQ(folder.st_gid, nobody->pw_gid);
    EXPECT_EQ(folder.st_mode & (S_ISVTX | S_IWGRP | S_IXGRP), S_ISVTX | S_IWGRP | S_IXGRP);
}
