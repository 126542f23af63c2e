#include "core/TemplateSwitches.h"

#include "core/AppSettings.h"
#include "core/FolderListing.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

using namespace TemplateSwitches;
using Lines = std::vector<wxString>;

namespace {

struct TemplateSwitchesTest : testing::Test {
    TempDir tree;
    AppSettings settings;
    InstallPaths paths{tree.Path(), settings};

    TemplateSwitchesTest() {
        settings.SetPhpVersion("php_8.2");
        MakeTreeFolder(tree.Path(), "apache/php_8.2");
        MakeTreeFolder(tree.Path(), "apache/conf");
    }
};

} // namespace

TEST(TemplateSwitchLines, ModuleLinesAreKeyedByTheirModuleAndThePhpLineByItsOwnName) {
    EXPECT_EQ(ModuleKeyOf("#LoadModule   alias_module modules/mod_alias.so"), "alias_module");
    const wxString php = "LoadModule {PHPMODULENAME} \"{PHPPATH}/{PHPAPACHE2FILE}\"";
    EXPECT_EQ(ModuleKeyOf(php), "PHP Kovix (Selected Version)");
    EXPECT_FALSE(IsModuleLineEnabled("#" + php));
    EXPECT_EQ(MakeModuleLine("#" + php, true), php);
}

// CRLF and LF mixed, comments, a blank line, an indented line and a last line without ending.
TEST_F(TemplateSwitchesTest, ListsKeepFileOrderAndSwitchingOneLineLeavesEveryOtherByteAlone) {
    const std::string phpIni = "[PHP]\r\n; extension=php_fake.so is a comment\r\n"
                               ";extension=php_mysql.so\r\n\r\n  extension=php_gd2.so\n"
                               "extension=php_gd.so\r\nextension_dir = \"{PHPEXTPATH}\"\n"
                               ";extension=php_pdo_mysql.so";
    EXPECT_EQ(ListExtensionLines(paths), Lines{}) << "no template";
    WriteBytes(paths.PhpSourceConfig(), phpIni);
    const Lines lines = ListExtensionLines(paths);
    EXPECT_EQ(lines, (Lines{";extension=php_mysql.so", "extension=php_gd.so",
                            ";extension=php_pdo_mysql.so"}));
    ASSERT_TRUE(WriteExtensionLines(
        paths, {MakeExtensionLine(lines[0], true), lines[1], MakeExtensionLine(lines[2], true)}));
    std::string expected = phpIni;
    expected.erase(expected.find(";extension=php_mysql"), 1);
    expected.erase(expected.find(";extension=php_pdo"), 1);
    EXPECT_EQ(ReadBytes(paths.PhpSourceConfig()), expected);
    EXPECT_EQ(ListFolder(paths.PhpFolder(), "*", wxDIR_FILES | wxDIR_HIDDEN),
              Lines{"php_source.ini"})
        << "no scratch file left";

    WriteBytes(paths.ApacheSourceConfig(),
               "# LoadModule comment\n#LoadModule a_module a.so\r\n"
               "LoadModule {PHPMODULENAME} x\n  LoadModule b_module b.so\n");
    EXPECT_EQ(ListModuleLines(paths),
              (Lines{"#LoadModule a_module a.so", "LoadModule {PHPMODULENAME} x"}));
}

TEST_F(TemplateSwitchesTest, LinesAreNeverAddedAndDuplicatesTakeTheFirstEntry) {
    EXPECT_FALSE(WriteExtensionLines(paths, {"extension=php_gd.so"}));
    EXPECT_FALSE(WriteModuleLines(paths, {"LoadModule a_module a.so"}));
    EXPECT_FALSE(wxFileExists(paths.PhpSourceConfig()) || wxFileExists(paths.ApacheSourceConfig()))
        << "a missing template is not created";
    WriteBytes(paths.PhpSourceConfig(),
               "extension=php_gd.so\n;extension=php_gd.so\nextension=php_x.so\n");
    ASSERT_TRUE(WriteExtensionLines(paths, {";extension=php_gd.so", "extension=php_gd.so",
                                            "extension=php_new.so", "not an extension line"}));
    EXPECT_EQ(ReadBytes(paths.PhpSourceConfig()),
              ";extension=php_gd.so\n;extension=php_gd.so\nextension=php_x.so\n");
}
