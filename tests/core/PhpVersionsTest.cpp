#include "core/PhpVersions.h"

#include "core/AppSettings.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

using Names = std::vector<wxString>;

TEST(PhpVersions, ListsInNaturalOrderSelectsTheFirstWhenNoneIsStoredAndFindsTheModuleFile) {
    TempDir tree;
    AppSettings settings;
    const InstallPaths paths(tree.Path(), settings);
    EXPECT_EQ(PhpVersions::List(paths), Names{}) << "no Apache folder at all";
    EXPECT_FALSE(PhpVersions::SelectFirstIfUnset(settings, paths));
    EXPECT_FALSE(settings.Has(AppSettings::PHP_CURRENT_VERSION));
    for (const char* folder : {"apache/php_8.10", "apache/php_8.2", "apache/php_7.4",
                               "apache/modules", "apache/xphp_1", "apache/php_7.4/aaapache2_4.so"})
        MakeTreeFolder(tree.Path(), folder);
    for (const char* file : {"apache/php_notes", "apache/php_7.4/php8apache2_4.so",
                             "apache/php_7.4/phpapache2_4.so", "apache/php_7.4/phpapache2_2.dll"})
        WriteTreeFile(tree.Path(), file, "");
    EXPECT_EQ(PhpVersions::List(paths), (Names{"php_7.4", "php_8.2", "php_8.10"}));
    EXPECT_TRUE(PhpVersions::SelectFirstIfUnset(settings, paths));
    EXPECT_EQ(settings.GetPhpVersion(), "php_7.4");
    EXPECT_EQ(PhpVersions::ModuleFile(paths), "php8apache2_4.so") << "folders do not count";
    EXPECT_EQ(PhpVersions::ModuleName(paths), "php8_module");
    settings.SetPhpVersion("php_gone");
    EXPECT_TRUE(PhpVersions::SelectFirstIfUnset(settings, paths));
    EXPECT_EQ(settings.GetPhpVersion(), "php_gone") << "a stored choice is the user's";
    EXPECT_EQ(PhpVersions::ModuleFile(paths), "") << "follows the version at each call";
}
