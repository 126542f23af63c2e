#include "core/ConfigGenerator.h"

#include "app/AppSettings.h"
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
        settings.SetPhpVersion("php_8.2");
        settings.SetPortText("8080");
        WriteTreeFile(tree.Path(), "apache/php_8.2/phpapache2_4.so", "");
    }

    wxString Root() const { return tree.Path(); }
    // The file's bytes with the tree's folder shown as "@".
    std::string Generated(const wxString& relativePath) const {
        wxString bytes = wxString::FromUTF8(ReadBytes(tree.File(relativePath)));
        bytes.Replace(Root(), "@");
        return bytes.utf8_string();
    }

    TempDir tree;
    AppSettings settings;
    InstallPaths paths;
};

wxString Placeholders(const ReplacementList& list) {
    wxString all;
    for (const Replacement& replacement : list)
        all += replacement.placeholder + " ";
    return all;
}

void SetModificationMs(const wxString& path, std::int64_t milliseconds) {
    const struct timespec time {
        static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1000000
    };
    const struct timespec times[2] = {time, time};
    ASSERT_EQ(utimensat(AT_FDCWD, path.fn_str(), times, 0), 0);
}

} // namespace

// The values are checked through the generated files below.
TEST_F(ConfigGeneratorTest, ListsHoldThePlaceholdersInReplacementOrder) {
    const ConfigGenerator generator(paths);
    EXPECT_EQ(Placeholders(generator.ApacheReplacements()),
              "{APACHEPATH} {DOCUMENTPATH} {PHPPATH} {PHPAPACHE2FILE} {PHPEXTPATH} {PHPMODULENAME} "
              "{APACHE_PORT} {ONLINE_MODE} ");
    EXPECT_EQ(Placeholders(generator.MysqlReplacements()),
              "{MYSQLPATH} {MYSQLBINPATH} {MYSQLDATAPATH} ");
}

TEST_F(ConfigGeneratorTest, AccessTextsAreExact) {
    WriteTreeFile(Root(), "apache/conf/httpd_source.conf",
                  "<Directory>\n\t{ONLINE_MODE}\tAllow from ::1\n</Directory>\n");
    ConfigGenerator(paths).GenerateApache();
    EXPECT_EQ(Generated("apache/conf/httpd.conf"),
              "<Directory>\n\tOrder deny,allow\n\tDeny from all\n\tAllow from 127.0.0.1 "
              "localhost\n\tAllow from ::1\n</Directory>\n");

    settings.SetOnline(true);
    ConfigGenerator(paths).GenerateApache();
    EXPECT_EQ(
        Generated("apache/conf/httpd.conf"),
        "<Directory>\n\tOrder allow,deny\n\tAllow from all\n\tAllow from ::1\n</Directory>\n");
}

TEST_F(ConfigGeneratorTest, ExpandReplacesEveryOccurrenceInListOrderCaseSensitivelyAsUtf8) {
    WriteTreeFile(Root(), "in", "{A} {B} {a} {A}{A}\r\ncaf\xe9 \x80\r\n");
    // {A}'s value holds {B}, which comes later and is expanded again; {B}'s value holds {A},
    // which came earlier and stays.
    ConfigGenerator::ExpandFile(tree.File("in"), tree.File("out"),
                                {{"{A}", "<{B}>"}, {"{B}", "[{A}]"}});
    EXPECT_EQ(Generated("out"), "<[{A}]> [{A}] {a} <[{A}]><[{A}]>\r\ncaf\xc3\xa9 \xe2\x82\xac\r\n");
}

TEST_F(ConfigGeneratorTest, MissingTemplateLeavesTheOutputAlone) {
    WriteTreeFile(Root(), "out", "earlier\n");
    ConfigGenerator::ExpandFile(tree.File("none"), tree.File("out"), {});
    ConfigGenerator::ExpandFile(tree.File("none"), tree.File("never"), {});
    EXPECT_EQ(Generated("out"), "earlier\n");
    EXPECT_FALSE(wxFileExists(tree.File("never")));

    WriteTreeFile(Root(), "empty", "");
    ConfigGenerator::ExpandFile(tree.File("empty"), tree.File("out"), {});
    EXPECT_EQ(Generated("out"), "") << "an empty template is a template";
}

TEST_F(ConfigGeneratorTest, ApacheSetCoversHttpdPhpAndTheExtraFolder) {
    WriteTreeFile(Root(), "apache/conf/httpd_source.conf",
                  "ServerRoot \"{APACHEPATH}\"\nLoadModule {PHPMODULENAME} "
                  "\"{PHPPATH}/{PHPAPACHE2FILE}\"\nListen {APACHE_PORT}\n");
    WriteTreeFile(Root(), "apache/php_8.2/php_source.ini", "extension_dir = \"{PHPEXTPATH}\"\n");
    for (const char* name :
         {"tools_source.conf", "a_source_source.conf", "othersource.conf", "notes_source.txt"})
        WriteTreeFile(Root(), wxString("apache/conf/extra/") + name, "{DOCUMENTPATH}");
    MakeTreeFolder(Root(), "apache/conf/extra/folder_source.conf");
    WriteTreeFile(Root(), "apache/conf/extra/tools.conf", "stale");

    ConfigGenerator(paths).GenerateApache();

    EXPECT_EQ(Generated("apache/conf/httpd.conf"),
              "ServerRoot \"@/apache\"\nLoadModule php_module "
              "\"@/apache/php_8.2/phpapache2_4.so\"\nListen 8080\n");
    EXPECT_EQ(Generated("apache/php.ini"), "extension_dir = \"@/apache/php_8.2/ext\"\n");
    EXPECT_FALSE(wxFileExists(tree.File("apache/php_8.2/php.ini")));
    EXPECT_EQ(Generated("apache/conf/extra/tools.conf"), "@/www");
    EXPECT_EQ(Generated("apache/conf/extra/a_source.conf"), "@/www");
    for (const char* never : {"other.conf", "othersource.conf.conf", "notes.conf", "folder.conf"})
        EXPECT_FALSE(wxFileExists(tree.File(wxString("apache/conf/extra/") + never))) << never;
}

TEST_F(ConfigGeneratorTest, MissingModuleFileAndExtraFolderAreNoObstacle) {
    wxRemoveFile(tree.File("apache/php_8.2/phpapache2_4.so"));
    WriteTreeFile(Root(), "apache/conf/httpd_source.conf", "[{PHPAPACHE2FILE}][{PHPMODULENAME}]");
    ConfigGenerator(paths).GenerateApache();
    EXPECT_EQ(Generated("apache/conf/httpd.conf"), "[][]");
}

TEST_F(ConfigGeneratorTest, MysqlFileGetsTheMysqlFolders) {
    WriteTreeFile(
        Root(), "mysql/my_source.ini",
        "datadir=\"{MYSQLDATAPATH}\"\nsocket=\"{MYSQLPATH}/s\"\n{MYSQLBINPATH}\n{APACHEPATH}\n");
    ConfigGenerator(paths).GenerateMysql();
    EXPECT_EQ(Generated("mysql/my.ini"),
              "datadir=\"@/mysql/data\"\nsocket=\"@/mysql/s\"\n@/mysql/bin\n{APACHEPATH}\n");
}

TEST_F(ConfigGeneratorTest, StartupDefaultsFillOnlyWhatIsUnset) {
    MakeTreeFolder(Root(), "apache/php_7.4");
    ConfigGenerator::ApplyStartupDefaults(settings, paths);
    EXPECT_EQ(settings.GetPhpVersion(), "php_8.2");
    EXPECT_EQ(settings.GetPortText(), "8080");

    AppSettings blank;
    blank.SetPortText("http");
    ConfigGenerator::ApplyStartupDefaults(blank, InstallPaths(Root(), blank));
    EXPECT_EQ(blank.GetPhpVersion(), "php_7.4");
    EXPECT_EQ(blank.GetPortText(), "80");
}

TEST_F(ConfigGeneratorTest, WatchIsPrimedAndSeesMillisecondChanges) {
    const wxString source = tree.File("apache/conf/httpd_source.conf");
    WriteTreeFile(Root(), "apache/conf/httpd_source.conf", "x");
    SetModificationMs(source, 1700000000123);
    TemplateWatch watch = TemplateWatch::ApacheSource(paths);
    EXPECT_FALSE(watch.HasChanged()) << "primed at construction";

    SetModificationMs(source, 1700000000124);
    EXPECT_TRUE(watch.HasChanged());
    EXPECT_FALSE(watch.HasChanged());

    wxRemoveFile(source);
    EXPECT_FALSE(watch.HasChanged()) << "a missing template is no change";
    WriteTreeFile(Root(), "apache/conf/httpd_source.conf", "x");
    SetModificationMs(source, 1700000000124);
    EXPECT_FALSE(watch.HasChanged()) << "the remembered time survived the absence";
}

TEST_F(ConfigGeneratorTest, PhpWatchFollowsTheSelectedVersion) {
    WriteTreeFile(Root(), "apache/php_8.2/php_source.ini", "");
    WriteTreeFile(Root(), "apache/php_7.4/php_source.ini", "");
    SetModificationMs(tree.File("apache/php_8.2/php_source.ini"), 1700000000000);
    SetModificationMs(tree.File("apache/php_7.4/php_source.ini"), 1600000000000);
    TemplateWatch watch = TemplateWatch::PhpSource(paths);
    EXPECT_FALSE(watch.HasChanged());
    settings.SetPhpVersion("php_7.4");
    EXPECT_TRUE(watch.HasChanged());

    TemplateWatch missing = TemplateWatch::MysqlSource(paths);
    EXPECT_FALSE(missing.HasChanged());
    WriteTreeFile(Root(), "mysql/my_source.ini", "");
    SetModificationMs(tree.File("mysql/my_source.ini"), 1500000000000);
    EXPECT_TRUE(missing.HasChanged()) << "a template that appears after priming has changed";
}
