#include "ctl/CtlTesting.h"

#include <wx/filefn.h>

#include <sys/stat.h>

namespace {

const std::string phpTemplate = "[PHP]\n"
                                ";extension=php_mysql.so\n"
                                "extension=php_gd.so\n"
                                "extension_dir = \"{PHPEXTPATH}\"\n";
const std::string apacheTemplate =
    "ServerRoot \"{APACHEPATH}\"\r\n"
    "Listen {APACHE_PORT}\r\n"
    "LoadModule rewrite_module modules/mod_rewrite.so\r\n"
    "#LoadModule {PHPMODULENAME} \"{PHPPATH}/{PHPAPACHE2FILE}\"\r\n"
    "<Directory \"{DOCUMENTPATH}\">\r\n{ONLINE_MODE}</Directory>\r\n";

// Two PHP versions (only 8.2 complete), the Apache and MySQL templates and one extra template.
class CtlConfigTest : public CtlTest {
protected:
    CtlConfigTest() {
        Write("apache/php_8.2/php_source.ini", phpTemplate);
        Write("apache/php_8.2/phpapache2_4.so", "");
        MakeTreeFolder(tree.Path(), "apache/php_8.10");
        Write("apache/conf/httpd_source.conf", apacheTemplate);
        Write("apache/conf/extra/tools_source.conf", "Alias /t \"{PHPPATH}\"\n");
        Write("mysql/my_source.ini", "datadir=\"{MYSQLDATAPATH}\"\n");
    }

    // The text with every '@' replaced by the tree's root.
    std::string AtRoot(wxString text) const {
        text.Replace("@", tree.Path());
        return text.utf8_string();
    }
};

} // namespace

TEST_F(CtlConfigTest, GenerateFillsEveryTemplateWithoutStoringDefaults) {
    const CommandResult result = Ctl({"generate"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(Read("apache/conf/httpd.conf"),
              AtRoot("ServerRoot \"@/apache\"\r\nListen 80\r\n"
                     "LoadModule rewrite_module modules/mod_rewrite.so\r\n"
                     "#LoadModule php_module \"@/apache/php_8.2/phpapache2_4.so\"\r\n"
                     "<Directory \"@/www\">\r\nOrder deny,allow\n\tDeny from all\n"
                     "\tAllow from 127.0.0.1 localhost\n</Directory>\r\n"));
    EXPECT_EQ(Read("apache/php.ini"), AtRoot("[PHP]\n;extension=php_mysql.so\nextension=php_gd.so\n"
                                             "extension_dir = \"@/apache/php_8.2/ext\"\n"));
    EXPECT_EQ(Read("apache/conf/extra/tools.conf"), AtRoot("Alias /t \"@/apache/php_8.2\"\n"));
    EXPECT_EQ(Read("mysql/my.ini"), AtRoot("datadir=\"@/mysql/data\"\n"));
    EXPECT_FALSE(wxFileExists(tree.File("kovix.ini")))
        << "the first version and the port were used, not stored";
}

TEST_F(CtlConfigTest, ExtensionsByNameOrFileAndModulesByKeyAreListedAndSwitched) {
    EXPECT_EQ(Ctl({"php", "ext", "--json"}).out,
              "[{\"line\":\";extension=php_mysql.so\",\"file\":\"php_mysql.so\",\"name\":\"mysql\","
              "\"enabled\":false},{\"line\":\"extension=php_gd.so\",\"file\":\"php_gd.so\","
              "\"name\":\"gd\",\"enabled\":true}]\n");

    EXPECT_EQ(Ctl({"php", "ext", "enable", "mysql"}).exitCode, 0);
    EXPECT_EQ(Ctl({"php", "ext", "disable", "php_gd.so"}).exitCode, 0);
    EXPECT_EQ(Read("apache/php_8.2/php_source.ini"),
              "[PHP]\nextension=php_mysql.so\n;extension=php_gd.so\nextension_dir = "
              "\"{PHPEXTPATH}\"\n");
    EXPECT_FALSE(wxFileExists(tree.File("kovix.ini")));

    EXPECT_EQ(Ctl({"apache", "modules", "--json"}).out,
              "[{\"line\":\"LoadModule rewrite_module modules/mod_rewrite.so\",\"key\":"
              "\"rewrite_module\",\"enabled\":true},{\"line\":\"#LoadModule {PHPMODULENAME} "
              "\\\"{PHPPATH}/{PHPAPACHE2FILE}\\\"\",\"key\":\"PHP Kovix (Selected Version)\","
              "\"enabled\":false}]\n");

    EXPECT_EQ(Ctl({"apache", "module", "enable", "PHP Kovix (Selected Version)"}).exitCode, 0);
    EXPECT_EQ(Ctl({"apache", "module", "disable", "rewrite_module"}).exitCode, 0);
    std::string expected = apacheTemplate;
    expected.erase(expected.find("#LoadModule {PHP"), 1);
    expected.insert(expected.find("LoadModule rewrite"), "#");
    EXPECT_EQ(Read("apache/conf/httpd_source.conf"), expected);
}

TEST_F(CtlConfigTest, RefusedSwitchesWriteNothing) {
    struct stat before {
    }, after{};
    stat(tree.File("apache/php_8.2/php_source.ini").fn_str(), &before);
    const CommandResult unknown = Ctl({"php", "ext", "enable", "mysql", "nosuch"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err, "No extension line matches nosuch in " +
                               tree.File("apache/php_8.2/php_source.ini") + "\n");
    EXPECT_EQ(Ctl({"php", "ext", "enable"}).exitCode, 2);
    const CommandResult module = Ctl({"apache", "module", "disable", "nosuch_module"});
    EXPECT_EQ(module.exitCode, 1);
    EXPECT_EQ(module.err, "No module line matches nosuch_module in " +
                              tree.File("apache/conf/httpd_source.conf") + "\n");
    EXPECT_EQ(Ctl({"php", "ext", "enable", "gd"}).exitCode, 0);
    stat(tree.File("apache/php_8.2/php_source.ini").fn_str(), &after);
    EXPECT_EQ(after.st_ino, before.st_ino) << "a line already in the asked state is not rewritten";
    EXPECT_EQ(Read("apache/php_8.2/php_source.ini"), phpTemplate);
    EXPECT_EQ(Read("apache/conf/httpd_source.conf"), apacheTemplate);
}
