#include "core/TemplateSwitches.h"

#include "app/AppSettings.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

using namespace TemplateSwitches;
using Lines = std::vector<wxString>;

namespace {

class TemplateSwitchesTest : public testing::Test {
protected:
    TemplateSwitchesTest() : paths(tree.Path(), settings) { settings.SetPhpVersion("php_8.2"); }

    void WritePhpTemplate(const std::string& bytes) {
        WriteTreeFile(tree.Path(), "apache/php_8.2/php_source.ini", bytes);
    }
    std::string PhpTemplate() const { return ReadBytes(paths.PhpSourceConfig()); }
    void WriteApacheTemplate(const std::string& bytes) {
        WriteTreeFile(tree.Path(), "apache/conf/httpd_source.conf", bytes);
    }
    std::string ApacheTemplate() const { return ReadBytes(paths.ApacheSourceConfig()); }

    TempDir tree;
    AppSettings settings;
    InstallPaths paths;
};

// CRLF and LF mixed, comments, a blank line, an indented line and a last line without ending.
const std::string phpIni = "[PHP]\r\n"
                           "; extension=php_fake.so is a comment\r\n"
                           ";extension=php_mysql.so\r\n"
                           "\r\n"
                           "  extension=php_gd2.so\n"
                           "extension=php_gd.so\r\n"
                           "extension_dir = \"{PHPEXTPATH}\"\n"
                           ";extension=php_pdo_mysql.so";

} // namespace

TEST(TemplateSwitchLines, ExtensionLinesAreAnchoredAtTheLineStart) {
    EXPECT_EQ(ExtensionFileOf(";extension=php_mysql.so"), "php_mysql.so");
    EXPECT_FALSE(IsExtensionLineEnabled(";extension=php_mysql.so"));
    EXPECT_EQ(ExtensionFileOf("extension=php_gd.so"), "php_gd.so");
    EXPECT_TRUE(IsExtensionLineEnabled("extension=php_gd.so"));
    for (const char* other : {"  extension=php_gd2.so", "; extension=php_x.so",
                              "extension_dir = \"ext\"", "#extension=php_x.so", ""})
        EXPECT_EQ(ExtensionFileOf(other), "") << other;

    EXPECT_EQ(ExtensionNameOf("php_mysql.so"), "mysql");
    EXPECT_EQ(ExtensionNameOf("php_pdo_mysql.so"), "pdo_mysql");
    EXPECT_EQ(ExtensionNameOf("mysqli.so"), "");

    EXPECT_EQ(MakeExtensionLine(";extension=php_mysql.so", true), "extension=php_mysql.so");
    EXPECT_EQ(MakeExtensionLine("extension=php_gd.so", false), ";extension=php_gd.so");
    EXPECT_EQ(MakeExtensionLine("extension=php_gd.so", true), "extension=php_gd.so");
}

TEST(TemplateSwitchLines, ModuleKeysAndThePhpModuleLabel) {
    EXPECT_EQ(ModuleKeyOf("LoadModule rewrite_module modules/mod_rewrite.so"), "rewrite_module");
    EXPECT_EQ(ModuleKeyOf("#LoadModule   alias_module modules/mod_alias.so"), "alias_module");
    const wxString php = "LoadModule {PHPMODULENAME} \"{PHPPATH}/{PHPAPACHE2FILE}\"";
    EXPECT_EQ(ModuleKeyOf(php), "PHP Kovix (Selected Version)");
    EXPECT_EQ(ModuleKeyOf(" LoadModule x_module x.so"), "");
    EXPECT_EQ(ModuleKeyOf("# LoadModule x_module x.so"), "");
    EXPECT_TRUE(IsModuleLineEnabled(php));
    EXPECT_FALSE(IsModuleLineEnabled("#" + php));

    EXPECT_EQ(MakeModuleLine(php, false), "#" + php);
    EXPECT_EQ(MakeModuleLine("#" + php, true), php);
    EXPECT_EQ(MakeModuleLine("#LoadModule  a_module a.so", false), "#LoadModule  a_module a.so");
}

TEST_F(TemplateSwitchesTest, ListsKeepFileOrderAndFullLines) {
    EXPECT_EQ(ListExtensionLines(paths), Lines{}) << "no template";
    WritePhpTemplate(phpIni);
    EXPECT_EQ(ListExtensionLines(paths), (Lines{";extension=php_mysql.so", "extension=php_gd.so",
                                                ";extension=php_pdo_mysql.so"}));
    WriteApacheTemplate("# LoadModule comment\n#LoadModule a_module a.so\r\n"
                        "LoadModule {PHPMODULENAME} x\n  LoadModule b_module b.so\n");
    EXPECT_EQ(ListModuleLines(paths),
              (Lines{"#LoadModule a_module a.so", "LoadModule {PHPMODULENAME} x"}));
}

TEST_F(TemplateSwitchesTest, SwitchingOneExtensionLeavesEveryOtherByteAlone) {
    WritePhpTemplate(phpIni);
    ASSERT_TRUE(
        WriteExtensionLines(paths, {MakeExtensionLine(";extension=php_mysql.so", true),
                                    MakeExtensionLine(";extension=php_pdo_mysql.so", true)}));
    std::string expected = phpIni;
    expected.replace(expected.find(";extension=php_mysql"), 1, "");
    expected.replace(expected.find(";extension=php_pdo"), 1, "");
    EXPECT_EQ(PhpTemplate(), expected);
    EXPECT_FALSE(wxFileExists(paths.PhpScratchConfig()));
}

TEST_F(TemplateSwitchesTest, LinesAreNeverAddedAndDuplicatesTakeTheFirstEntry) {
    WritePhpTemplate("extension=php_gd.so\n;extension=php_gd.so\nextension=php_x.so\n");
    ASSERT_TRUE(WriteExtensionLines(paths, {";extension=php_gd.so", "extension=php_gd.so",
                                            "extension=php_new.so", "not an extension line"}));
    EXPECT_EQ(PhpTemplate(), ";extension=php_gd.so\n;extension=php_gd.so\nextension=php_x.so\n");
}

TEST_F(TemplateSwitchesTest, ThePhpModuleIsSwitchedUnderItsLabel) {
    const std::string conf = "ServerRoot \"{APACHEPATH}\"\r\n"
                             "LoadModule rewrite_module modules/mod_rewrite.so\r\n"
                             "LoadModule {PHPMODULENAME} \"{PHPPATH}/{PHPAPACHE2FILE}\"\r\n"
                             "#LoadModule rewrite_module modules/mod_rewrite.so\r\n";
    WriteApacheTemplate(conf);
    const Lines modules = ListModuleLines(paths);
    ASSERT_EQ(modules.size(), 3u);
    ASSERT_TRUE(WriteModuleLines(paths, {MakeModuleLine(modules[1], false)}));
    std::string expected = conf;
    expected.insert(expected.find("LoadModule {PHP"), "#");
    EXPECT_EQ(ApacheTemplate(), expected);
    EXPECT_FALSE(wxFileExists(paths.ApacheScratchConfig()));

    ASSERT_TRUE(WriteModuleLines(paths, {"#LoadModule rewrite_module modules/mod_rewrite.so"}));
    EXPECT_EQ(ListModuleLines(paths)[0], "#LoadModule rewrite_module modules/mod_rewrite.so");
    EXPECT_EQ(ListModuleLines(paths)[2], "#LoadModule rewrite_module modules/mod_rewrite.so");
}

TEST_F(TemplateSwitchesTest, MissingTemplateIsNotCreated) {
    EXPECT_FALSE(WriteExtensionLines(paths, {"extension=php_gd.so"}));
    EXPECT_FALSE(WriteModuleLines(paths, {"LoadModule a_module a.so"}));
    EXPECT_FALSE(wxFileExists(paths.PhpSourceConfig()));
    EXPECT_FALSE(wxFileExists(paths.ApacheSourceConfig()));
}
