// The core with the Windows platform's names: backslash paths, ".exe" programs, PHP's DLL names.
#include "core/AppSettings.h"
#include "core/ConfigGenerator.h"
#include "core/InstallPaths.h"
#include "core/PhpVersions.h"
#include "core/TemplateSwitches.h"
#include "platform/Platform.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"
#include "windows/WindowsTesting.h"

#include <gtest/gtest.h>

TEST(WindowsNames, TreePathsUseBackslashesAndProgramsEndInExe) {
    AppSettings settings;
    settings.SetPhpVersion("php_8.2");
    const InstallPaths paths("C:\\Kovix Stack", settings);
    EXPECT_EQ(paths.ApacheExecutable(), "C:\\Kovix Stack\\apache\\bin\\httpd.exe");
    EXPECT_EQ(paths.SessionsFolder(), "C:\\Kovix Stack\\apache\\sessions\\");
    EXPECT_EQ(paths.ApacheExtraFolder(), "C:\\Kovix Stack\\apache\\conf\\extra\\");
    EXPECT_EQ(paths.PhpSourceConfig(), "C:\\Kovix Stack\\apache\\php_8.2\\php_source.ini");
    EXPECT_EQ(paths.MysqlAdminTool(), "C:\\Kovix Stack\\mysql\\bin\\mysqladmin.exe");
    EXPECT_EQ(paths.SqliteBrowser(), "C:\\Kovix Stack\\utils\\SQLiteBrowser.exe");
    EXPECT_EQ(InstallPaths::ApacheProcessName(), "httpd.exe");
    EXPECT_EQ(InstallPaths::MysqlProcessName(), "mysqld.exe");
    EXPECT_EQ(settings.GetTextEditor(), "notepad.exe");
    EXPECT_EQ(Platform::Get().ProgramFileFilter(), "Application (*.exe)|*.exe");
    EXPECT_EQ(Platform::Get().PathListSeparator(), ";");
}

TEST(WindowsNames, ModuleFilesOfBothPhpGenerationsAndExtensionDlls) {
    EXPECT_EQ(PhpVersions::ModuleNameOf("php5apache2_2.dll"), "php5_module");
    EXPECT_EQ(PhpVersions::ModuleNameOf("php7apache2_4.dll"), "php7_module");
    EXPECT_EQ(PhpVersions::ModuleNameOf("php8apache2_4.dll"), "php_module");
    EXPECT_EQ(PhpVersions::ModuleNameOf("phpapache2_4.so"), "");
    EXPECT_EQ(TemplateSwitches::ExtensionNameOf("php_gd.dll"), "gd");
    EXPECT_EQ(TemplateSwitches::ExtensionNameOf("php_gd.so"), "");
}

// The generated files get forward slashes and the module the platform's wildcard finds.
TEST(WindowsNames, GenerationWritesForwardSlashesAndThePhp8Module) {
    TempDir dir;
    const wxString root = WindowsPath(dir.Path());
    WriteTreeFile(root, "apache/php_8.2/php8apache2_4.dll", "");
    WriteTreeFile(root, "apache/php_8.2/php8ts.dll", "");
    WriteTreeFile(root, "apache/conf/httpd_source.conf",
                  "ServerRoot \"{APACHEPATH}\"\nLoadModule {PHPMODULENAME} "
                  "\"{PHPPATH}/{PHPAPACHE2FILE}\"\n");
    AppSettings settings;
    settings.SetPhpVersion("php_8.2");
    const InstallPaths paths(root, settings);
    ConfigGenerator(paths).GenerateApache();

    wxString forward = root;
    forward.Replace("\\", "/");
    EXPECT_EQ(ReadBytes(paths.ApacheLiveConfig()),
              "ServerRoot \"" + forward.utf8_string() + "/apache\"\nLoadModule php_module \"" +
                  forward.utf8_string() + "/apache/php_8.2/php8apache2_4.dll\"\n");
}
