#include "core/PhpVersions.h"

#include "app/AppSettings.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

using Names = std::vector<wxString>;

TEST(PhpVersions, ListsPhpFoldersInNaturalOrderAndSelectsTheFirstOnlyWhenNoneIsStored) {
    TempDir tree;
    AppSettings settings;
    const InstallPaths paths(tree.Path(), settings);
    EXPECT_EQ(PhpVersions::List(paths), Names{}) << "no Apache folder at all";
    EXPECT_FALSE(PhpVersions::SelectFirstIfUnset(settings, paths));
    EXPECT_FALSE(settings.Has(AppSettings::PHP_CURRENT_VERSION));
    for (const char* folder :
         {"apache/php_8.10", "apache/php_8.2", "apache/php_7.4", "apache/modules", "apache/xphp_1"})
        MakeTreeFolder(tree.Path(), folder);
    WriteTreeFile(tree.Path(), "apache/php_notes", "a file, not a version");
    EXPECT_EQ(PhpVersions::List(paths), (Names{"php_7.4", "php_8.2", "php_8.10"}));
    EXPECT_TRUE(PhpVersions::SelectFirstIfUnset(settings, paths));
    EXPECT_EQ(settings.GetPhpVersion(), "php_7.4");
    settings.SetPhpVersion("php_gone");
    EXPECT_TRUE(PhpVersions::SelectFirstIfUnset(settings, paths));
    EXPECT_EQ(settings.GetPhpVersion(), "php_gone") << "a stored choice is the user's";
}

TEST(PhpVersions, ModuleFileIsTheFirstMatchingFileOfTheSelectedVersion) {
    TempDir tree;
    AppSettings settings;
    const InstallPaths paths(tree.Path(), settings);
    settings.SetPhpVersion("php_8.2");
    EXPECT_EQ(PhpVersions::ModuleName(paths), "");
    MakeTreeFolder(tree.Path(), "apache/php_8.2/aaapache2_4.so");
    WriteTreeFile(tree.Path(), "apache/php_8.2/php8apache2_4.so", "");
    WriteTreeFile(tree.Path(), "apache/php_8.2/phpapache2_4.so", "");
    WriteTreeFile(tree.Path(), "apache/php_8.2/phpapache2_2.dll", "");
    EXPECT_EQ(PhpVersions::ModuleFile(paths), "php8apache2_4.so") << "folders do not count";
    EXPECT_EQ(PhpVersions::ModuleName(paths), "php8_module");
    settings.SetPhpVersion("php_9");
    EXPECT_EQ(PhpVersions::ModuleFile(paths), "") << "follows the version at each call";
}
