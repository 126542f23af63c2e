#include "ctl/CtlTesting.h"

#include <nlohmann/json.hpp>
#include <wx/filefn.h>

namespace {

const std::string handWrittenTemplate = "Listen 80\n"
                                        "<VirtualHost *:80>\n"
                                        "  ServerName test.local\n"
                                        "  DocumentRoot {DOCUMENTPATH}/test\n"
                                        "  Alias /img {DOCUMENTPATH}/img\n"
                                        "  <Directory {DOCUMENTPATH}/test>\n"
                                        "    Options Indexes FollowSymLinks\n"
                                        "    AllowOverride All\n"
                                        "    Require all granted\n"
                                        "  </Directory>\n"
                                        "  ErrorLog logs/test.log\n"
                                        "</VirtualHost>\n"
                                        "<VirtualHost 127.0.0.1>\n"
                                        "  ServerName \"caf\xC3\xA9.local\"\n"
                                        "</VirtualHost>\n";

class CtlApacheTest : public CtlTest {
protected:
    CtlApacheTest() { Write("apache/conf/httpd_source.conf", handWrittenTemplate); }

    wxString Template() const { return tree.File("apache/conf/httpd_source.conf"); }

    CommandResult Import(const std::string& document) const {
        Write("hosts.json", document);
        return Ctl({"apache", "vhosts", "import", tree.File("hosts.json")});
    }
};

} // namespace

TEST_F(CtlApacheTest, ExportImportExportGivesTheSameDocument) {
    const CommandResult first = Ctl({"apache", "vhosts", "--json"});
    ASSERT_EQ(first.exitCode, 0) << first.err;
    EXPECT_EQ(first.out.utf8_string(),
              R"({"path":")" + Template().utf8_string() +
                  R"(","hosts":[{"address":"*:80","ServerName":"test.local","ServerAlias":"",)"
                  R"("DocumentRoot":"{DOCUMENTPATH}/test","aliases":[{"name":"/img",)"
                  R"("folder":"{DOCUMENTPATH}/img"}],"directories":[{"path":"{DOCUMENTPATH}/test",)"
                  R"("FollowSymLinks":true,"Includes":false,"Indexes":true,"MultiViews":false,)"
                  R"("AllowOverride":true,"others":["Require all granted"]}],)"
                  R"("others":["ErrorLog logs/test.log"]},{"address":"127.0.0.1","ServerName":"caf)"
                  "\xC3\xA9"
                  R"(.local","ServerAlias":"","DocumentRoot":"","aliases":[],"directories":[],)"
                  R"("others":[]}]})"
                  "\n");

    const CommandResult imported = Import(first.out.utf8_string());
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
    EXPECT_EQ(Read("apache/conf/httpd_source.conf").substr(0, 11), "Listen 80\n\n");
    EXPECT_EQ(Ctl({"apache", "vhosts", "--json"}).out, first.out);

    // The same document from standard input; nothing changes but the blank line before the blocks.
    const CommandResult piped =
        RunShell("'" KOVIXCTL_PATH "' --root '" + tree.Path() + "' apache vhosts import - < '" +
                 tree.File("hosts.json") + "'");
    ASSERT_EQ(piped.exitCode, 0) << piped.err;
    EXPECT_EQ(Read("apache/conf/httpd_source.conf").substr(0, 12), "Listen 80\n\n\n");
    EXPECT_EQ(Ctl({"apache", "vhosts", "--json"}).out, first.out);
}

TEST_F(CtlApacheTest, ListsTheHostsInColumnsForPeople) {
    EXPECT_EQ(Ctl({"apache", "vhosts"}).out,
              wxString::FromUTF8(
                  "address    ServerName  ServerAlias  DocumentRoot         aliases  "
                  "directories\n"
                  "*:80       test.local  -            {DOCUMENTPATH}/test  1        1\n"
                  "127.0.0.1  café.local  -            -                    0        0\n"));
}

TEST_F(CtlApacheTest, BadDocumentsExitOneAndLeaveTheTemplateAlone) {
    const std::string host = R"({"address":"*","ServerName":"","ServerAlias":"",
        "DocumentRoot":"","aliases":[],"directories":[],"others":[]})";
    const std::string hostWith = R"({"hosts": [)" + host.substr(0, host.size() - 1);
    const std::vector<std::string> documents = {
        "{\"hosts\": [",
        "[]",
        R"({"hosts": [1]})",
        R"({"hosts": [{"address": "*"}]})",
        hostWith + R"(,"address":5}]})",
        hostWith + R"(,"others":["a\nListen 81"]}]})",
        hostWith + R"(,"aliases":[["/a","/b"]]}]})",
        hostWith + R"(,"directories":[{"path":"/d","FollowSymLinks":"true","Includes":false,
            "Indexes":false,"MultiViews":false,"AllowOverride":false,"others":[]}]}]})",
    };
    for (const std::string& document : documents) {
        const CommandResult result = Import(document);
        EXPECT_EQ(result.exitCode, 1) << document;
        EXPECT_FALSE(result.err.empty()) << document;
        EXPECT_EQ(Read("apache/conf/httpd_source.conf"), handWrittenTemplate) << document;
    }
    EXPECT_EQ(Import(R"({"hosts": [)" + host + "]}").exitCode, 0)
        << "the shape the failures above depart from";
    EXPECT_FALSE(wxFileExists(Template() + ".temp"));

    EXPECT_EQ(Ctl({"apache", "vhosts", "import", tree.File("missing.json")}).exitCode, 1);
    EXPECT_EQ(Ctl({"apache", "vhosts", "import"}).exitCode, 2);
    wxRemoveFile(Template());
    EXPECT_EQ(Ctl({"apache", "vhosts"}).exitCode, 1);
    EXPECT_EQ(Import(R"({"hosts": []})").exitCode, 1) << "no template to rewrite";
    EXPECT_FALSE(wxFileExists(Template()));
}

TEST_F(CtlApacheTest, CatalogueEntriesAndTheirFallbacks) {
    const nlohmann::json rewrite = nlohmann::json::parse(
        Ctl({"catalogue", "module", "rewrite_module", "--json"}).out.utf8_string());
    EXPECT_TRUE(wxString::FromUTF8(rewrite["link"].get<std::string>())
                    .EndsWith("/docs/2.2/mod/mod_rewrite.html"));
    const CommandResult bz2 = Ctl({"catalogue", "extension", "bz2"});
    EXPECT_TRUE(bz2.out.EndsWith("/manual/en/book.bzip2.php\n")) << "the link on the last line";
    EXPECT_FALSE(bz2.out.StartsWith(" "));
    EXPECT_EQ(Ctl({"catalogue", "module", "Rewrite_module", "--json"}).out,
              "{\"description\":\"No Description Available\",\"link\":\"\"}\n");
    EXPECT_EQ(Ctl({"catalogue", "extension", "nosuch"}).out, "No Description Available\n");
}
