#include "core/apache/VirtualHostFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<wxString>;

class VirtualHostFileTest : public testing::Test {
protected:
    TempDir dir;

    wxString Template() const { return dir.File("httpd_source.conf"); }

    VirtualHostFile Read(const std::string& bytes) {
        WriteBytes(Template(), bytes);
        VirtualHostFile file;
        file.path = Template();
        EXPECT_TRUE(ReadVirtualHosts(file));
        return file;
    }

    std::string Save(const VirtualHostFile& file) {
        EXPECT_TRUE(WriteVirtualHosts(file));
        return ReadBytes(Template());
    }

    // The template after one "GET" and "SAVE" round with no edit in between.
    std::string Resave(const std::string& bytes) { return Save(Read(bytes)); }

    VirtualHostRecord OnlyHost(const std::string& bytes) {
        const VirtualHostFile file = Read(bytes);
        EXPECT_EQ(file.hosts.size(), 1u);
        return file.hosts.empty() ? VirtualHostRecord() : file.hosts.front();
    }
};

const std::string exampleBlock = "<VirtualHost *:80>\n"
                                 "#KOVIX Generate Virtual Host\n"
                                 "\tDocumentRoot \"{DOCUMENTPATH}/test\"\n"
                                 "\tServerName \"test.local\"\n"
                                 "\tAlias \"/img\" \"{DOCUMENTPATH}/img\"\n"
                                 "\t<Directory \"{DOCUMENTPATH}/test\">\n"
                                 "\t\tAllowOverride All\n"
                                 "\t\tOptions FollowSymLinks Indexes \n"
                                 "\t\tOrder allow,deny\n"
                                 "\t\tAllow from all\n"
                                 "\t</Directory>\n"
                                 "</VirtualHost>\n";

} // namespace

TEST_F(VirtualHostFileTest, HandWrittenBlockIsReadAndWrittenBackNormalised) {
    const std::string handWritten = "ServerRoot \"{APACHEPATH}\"\n"
                                    "<VirtualHost 127.0.0.1:8080>\n"
                                    "    ServerAdmin me@example.org\n"
                                    "\n"
                                    "    ServerName first.local\n"
                                    "    ServerName site.local # my site\n"
                                    "    ServerAlias \"www.site.local\"\n"
                                    "    ServerAlias last.site.local\n"
                                    "#KOVIX anything\n"
                                    "    #KOVIX indented\n"
                                    "    <Directory \"/srv/site\">\n"
                                    "        Require all granted\n"
                                    "\n"
                                    "    </Directory>\n"
                                    "    Alias /docs \"/srv/docs\"\n"
                                    "    Options Indexes\n"
                                    "    AllowOverride All\n"
                                    "    DocumentRoot /srv/site\n"
                                    "</VirtualHost>\n"
                                    "Listen 8080\n";
    const VirtualHostRecord host = OnlyHost(handWritten);
    EXPECT_EQ(Resave(handWritten), "ServerRoot \"{APACHEPATH}\"\n"
                                   "Listen 8080\n"
                                   "\n"
                                   "<VirtualHost 127.0.0.1:8080>\n"
                                   "#KOVIX Generate Virtual Host\n"
                                   "\tDocumentRoot \"/srv/site\"\n"
                                   "\tServerName \"site.local # my site\"\n"
                                   "\tServerAlias \"last.site.local\"\n"
                                   "\tServerAdmin me@example.org\n"
                                   "\t#KOVIX indented\n"
                                   "\tOptions Indexes\n"
                                   "\tAllowOverride All\n"
                                   "\tAlias \"/docs\" \"/srv/docs\"\n"
                                   "\t<Directory \"/srv/site\">\n"
                                   "\t\tAllowOverride None\n"
                                   "\t\tRequire all granted\n"
                                   "\t\t\n"
                                   "\t</Directory>\n"
                                   "</VirtualHost>\n");
    EXPECT_EQ(Read(ReadBytes(Template())).hosts, std::vector<VirtualHostRecord>{host});
}

TEST_F(VirtualHostFileTest, OnlyTheFourOptionWordsAndAllowOverrideAllSurvive) {
    const std::string none = "\t\tAllowOverride None\n";
    const std::pair<std::string, std::string> cases[] = {
        {"Options All", none},
        {"Options -Indexes", none + "\t\tOptions Indexes \n"},
        {"Options +MultiViews -FollowSymLinks", none + "\t\tOptions FollowSymLinks MultiViews \n"},
        {"Options\tINDEXES ALL", none + "\t\tOptions Indexes \n"},
        {"# Options Includes", none + "\t\tOptions Includes \n"},
        {"AllowOverride all", "\t\tAllowOverride All\n"},
        {"AllowOverride None\nAllowOverride ALL", "\t\tAllowOverride All\n"},
    };
    for (const auto& [lines, written] : cases)
        EXPECT_NE(
            Resave("<VirtualHost *>\n<Directory /d>\n" + lines + "\n</Directory>\n</VirtualHost>\n")
                .find("\t<Directory \"/d\">\n" + written + "\t</Directory>\n"),
            std::string::npos)
            << lines;
}

TEST_F(VirtualHostFileTest, CommentedOutExampleBlockBecomesARealHost) {
    const std::string commented = "#<VirtualHost *:80>\n"
                                  "#    ServerName dummy.example.com\n"
                                  "#    DocumentRoot \"/www/dummy\"\n"
                                  "#</VirtualHost>\n";
    EXPECT_EQ(Resave(commented), "\n\n<VirtualHost *:80>\n"
                                 "#KOVIX Generate Virtual Host\n"
                                 "\t#    ServerName dummy.example.com\n"
                                 "\t#    DocumentRoot \"/www/dummy\"\n"
                                 "</VirtualHost>\n");
}

TEST_F(VirtualHostFileTest, UnclosedBlocksRunOn) {
    const std::string unclosedHost = "Listen 80\n"
                                     "<VirtualHost a>\n"
                                     "ServerName a.local\n"
                                     "<VirtualHost b>\n"
                                     "Listen 81\n";
    EXPECT_EQ(Resave(unclosedHost), "Listen 80\n\n<VirtualHost a>\n#KOVIX Generate Virtual Host\n"
                                    "\tServerName \"a.local\"\n"
                                    "\t<VirtualHost b>\n\tListen 81\n</VirtualHost>\n");
}

TEST_F(VirtualHostFileTest, CrLfAndCp1252TemplatesReadLikeUtf8AndAreWrittenWithLineFeeds) {
    const std::string crlf = "Listen 80\r\n<VirtualHost *:80>\r\n\tServerName \"caf\xE9.local\"\r\n"
                             "\t<Directory /srv>\r\n\t\tAllowOverride All\r\n\t</Directory>\r\n"
                             "\tHeader set X-Old \"\x80\"\r</VirtualHost>\r\n";
    const VirtualHostRecord host = OnlyHost(crlf);
    EXPECT_EQ(host.ServerName, wxString::FromUTF8("café.local"));
    EXPECT_EQ(host.others, Texts{L"Header set X-Old \"\u20ac\""}) << "a lone CR ends a line too";

    const std::string saved = Resave(crlf);
    EXPECT_EQ(saved.find('\r'), std::string::npos);
    EXPECT_NE(saved.find("Listen 80\n\n<VirtualHost *:80>\n#KOVIX Generate Virtual Host\n"
                         "\tServerName \"caf\xC3\xA9.local\"\n"),
              std::string::npos);
    EXPECT_EQ(Read(saved).hosts, std::vector<VirtualHostRecord>{host});
}

TEST_F(VirtualHostFileTest, TemplateWithoutBlocksKeepsItsLinesAndTogglesItsLastBlankLine) {
    EXPECT_TRUE(Read("ServerRoot /x\nListen 80\n").hosts.empty());
    EXPECT_EQ(Resave("ServerRoot /x\nListen 80\n\n"), "ServerRoot /x\nListen 80\n");
    EXPECT_EQ(Resave("ServerRoot /x\nListen 80\n"), "ServerRoot /x\nListen 80\n\n");
    EXPECT_EQ(Resave(""), "");
    EXPECT_EQ(Resave("\n"), "") << "one empty line, copied without a line end";
}

TEST_F(VirtualHostFileTest, WritesTheExampleHostByteForByteAndEverySaveAddsABlankLine) {
    const std::string head = "Listen 80\n#KOVIX Generate Virtual Host";
    VirtualHostFile file = Read(head + "\n");
    ASSERT_TRUE(file.hosts.empty());
    file.hosts.push_back({"*:80",
                          "test.local",
                          "",
                          "{DOCUMENTPATH}/test",
                          {{"/img", "{DOCUMENTPATH}/img"}},
                          {{{"Order allow,deny", "Allow from all"},
                            "{DOCUMENTPATH}/test",
                            true,
                            false,
                            true,
                            false,
                            true}},
                          {}});
    std::string saved = Save(file);
    for (const char* blanks : {"\n\n", "\n\n\n", "\n\n\n\n"}) {
        EXPECT_EQ(saved, head + blanks + exampleBlock);
        const VirtualHostFile reread = Read(saved);
        EXPECT_EQ(reread.hosts, file.hosts);
        saved = Save(reread);
    }
}

TEST_F(VirtualHostFileTest, TemplateThatCannotBeReadIsNeverReplaced) {
    VirtualHostFile file = Read("Listen 80\n" + exampleBlock);
    // A template that does not decode would otherwise be replaced by the blocks alone.
    const std::string undecodable = "Listen 80\n\x81\x8D\n";
    WriteBytes(Template(), undecodable);
    EXPECT_FALSE(ReadVirtualHosts(file));
    EXPECT_FALSE(WriteVirtualHosts(file));
    EXPECT_EQ(ReadBytes(Template()), undecodable);
}
