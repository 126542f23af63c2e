#include "core/ConfigGenerator.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "platform/Platform.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

// A tree in a folder whose name has a blank, with PHP 8.2 selected.
class ConfigGeneratorTest : public testing::Test {
protected:
    ConfigGeneratorTest() : tree("kovix gen"), paths(tree.Path(), settings) {
        InitLangTable(settings, "en");
        settings.SetPhpVersion("php_8.2");
        settings.SetPortText("8080");
        Put("apache/php_8.2/phpapache2_4.so", "");
    }

    void Put(const wxString& relativePath, const std::string& bytes) {
        WriteTreeFile(tree.Path(), relativePath, bytes);
    }
    // The file's bytes with the tree's folder shown as "@".
    std::string Generated(const wxString& relativePath) const {
        wxString bytes = wxString::FromUTF8(ReadBytes(tree.File(relativePath)));
        bytes.Replace(tree.Path(), "@");
        return bytes.utf8_string();
    }
    void SetModificationMs(const wxString& relativePath, std::int64_t milliseconds) {
        const timespec time{milliseconds / 1000, (milliseconds % 1000) * 1000000};
        const timespec times[2] = {time, time};
        ASSERT_EQ(utimensat(AT_FDCWD, tree.File(relativePath).fn_str(), times, 0), 0);
    }

    TempDir tree;
    AppSettings settings;
    InstallPaths paths;
};

} // namespace

// The values are checked through the generated files below.
TEST_F(ConfigGeneratorTest, ListsHoldThePlaceholdersInReplacementOrder) {
    const ConfigGenerator generator(paths);
    wxString names;
    for (const ReplacementList& list :
         {generator.ApacheReplacements(), generator.MysqlReplacements()})
        for (const Replacement& replacement : list)
            names += replacement.placeholder + " ";
    EXPECT_EQ(names, "{APACHEPATH} {DOCUMENTPATH} {PHPPATH} {PHPAPACHE2FILE} {PHPEXTPATH} "
                     "{PHPMODULENAME} {APACHE_PORT} {ONLINE_MODE} {APACHE_LISTEN} "
                     "{SENDMAIL_COMMAND} {MYSQLPATH} "
                     "{MYSQLBINPATH} "
                     "{MYSQLDATAPATH} ");
}

TEST_F(ConfigGeneratorTest, ExpandReplacesEveryOccurrenceInListOrderCaseSensitivelyAsUtf8) {
    Put("in", "{A} {B} {a} {A}{A}\r\ncaf\xe9 \x80\r\n");
    // {A}'s value holds {B}, which comes later and is expanded again; {B}'s value holds {A},
    // which came earlier and stays.
    ConfigGenerator::ExpandFile(tree.File("in"), tree.File("out"),
                                {{"{A}", "<{B}>"}, {"{B}", "[{A}]"}});
    EXPECT_EQ(Generated("out"), "<[{A}]> [{A}] {a} <[{A}]><[{A}]>\r\ncaf\xc3\xa9 \xe2\x82\xac\r\n");
    EXPECT_EQ(ConfigGenerator::ExpandFile(tree.File("none"), tree.File("out"), {}),
              "Cannot read " + tree.File("none") + ": No such file or directory\n");
    EXPECT_EQ(Generated("out").substr(0, 6), "<[{A}]") << "a missing template leaves it alone";
    Put("empty", "");
    ConfigGenerator::ExpandFile(tree.File("empty"), tree.File("out"), {});
    EXPECT_EQ(Generated("out"), "") << "an empty template is a template";
}

TEST_F(ConfigGeneratorTest, ApacheSetCoversHttpdPhpAndTheExtraFolderMysqlItsOwnFile) {
    Put("apache/conf/httpd_source.conf", "ServerRoot \"{APACHEPATH}\"\nLoadModule {PHPMODULENAME} "
                                         "\"{PHPPATH}/{PHPAPACHE2FILE}\"\nListen {APACHE_PORT}\n");
    Put("apache/php_8.2/php_source.ini", "extension_dir = \"{PHPEXTPATH}\"\n");
    for (const char* name :
         {"tools_source.conf", "a_source_source.conf", "othersource.conf", "notes_source.txt"})
        Put(wxString("apache/conf/extra/") + name, "{DOCUMENTPATH}");
    MakeTreeFolder(tree.Path(), "apache/conf/extra/folder_source.conf");
    Put("apache/conf/extra/tools.conf", "stale");
    Put("mysql/my_source.ini",
        "datadir=\"{MYSQLDATAPATH}\"\n{MYSQLPATH} {MYSQLBINPATH} {APACHEPATH}");

    ConfigGenerator(paths).GenerateApache();
    ConfigGenerator(paths).GenerateMysql();
    EXPECT_EQ(Generated("apache/conf/httpd.conf"),
              "ServerRoot \"@/apache\"\nLoadModule php_module "
              "\"@/apache/php_8.2/phpapache2_4.so\"\nListen 8080\n");
    EXPECT_EQ(Generated("apache/php.ini"), "extension_dir = \"@/apache/php_8.2/ext\"\n");
    EXPECT_FALSE(wxFileExists(tree.File("apache/php_8.2/php.ini")));
    EXPECT_EQ(Generated("apache/conf/extra/tools.conf"), "@/www");
    EXPECT_EQ(Generated("apache/conf/extra/a_source.conf"), "@/www");
    for (const char* never : {"other.conf", "othersource.conf.conf", "notes.conf", "folder.conf"})
        EXPECT_FALSE(wxFileExists(tree.File(wxString("apache/conf/extra/") + never))) << never;
    EXPECT_EQ(Generated("mysql/my.ini"),
              "datadir=\"@/mysql/data\"\n@/mysql @/mysql/bin {APACHEPATH}");
}

TEST_F(ConfigGeneratorTest, OnlineAccessTextIsExact) {
    Put("apache/conf/httpd_source.conf",
        "<Directory>\n\t{ONLINE_MODE}\tAllow from ::1\n</Directory>\n");
    settings.SetOnline(true);
    ConfigGenerator(paths).GenerateApache();
    EXPECT_EQ(
        Generated("apache/conf/httpd.conf"),
        "<Directory>\n\tOrder allow,deny\n\tAllow from all\n\tAllow from ::1\n</Directory>\n");
}

TEST_F(ConfigGeneratorTest, OfflineApacheListensOnTheLoopbackAddressesOnly) {
    Put("apache/conf/httpd_source.conf", "{APACHE_LISTEN}\nServerName localhost:{APACHE_PORT}\n");
    ConfigGenerator(paths).GenerateApache();
    const std::string ipv6 = Platform::Get().HasIpv6Loopback() ? "Listen [::1]:8080\n" : "";
    EXPECT_EQ(Generated("apache/conf/httpd.conf"),
              "Listen 127.0.0.1:8080\n" + ipv6 + "ServerName localhost:8080\n");
    settings.SetOnline(true);
    ConfigGenerator(paths).GenerateApache();
    EXPECT_EQ(Generated("apache/conf/httpd.conf"), "Listen 8080\nServerName localhost:8080\n");
    EXPECT_EQ(ConfigGenerator::ListenText(443, true, "https"), "Listen 443 https");
}

TEST_F(ConfigGeneratorTest, WatchesArePrimedSeeMillisecondChangesAndFollowTheVersion) {
    Put("apache/conf/httpd_source.conf", "x");
    SetModificationMs("apache/conf/httpd_source.conf", 1700000000123);
    TemplateWatch watch = TemplateWatch::ApacheSource(paths);
    EXPECT_FALSE(watch.HasChanged()) << "primed at construction";
    SetModificationMs("apache/conf/httpd_source.conf", 1700000000124);
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());
    wxRemoveFile(tree.File("apache/conf/httpd_source.conf"));
    EXPECT_FALSE(watch.HasChanged()) << "a missing template is no change";

    TemplateWatch php = TemplateWatch::PhpSource(paths); // primed without a template
    Put("apache/php_7.4/php_source.ini", "");
    SetModificationMs("apache/php_7.4/php_source.ini", 1600000000000);
    settings.SetPhpVersion("php_7.4");
    EXPECT_TRUE(php.HasChanged());
}
