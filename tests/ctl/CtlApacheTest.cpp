#include "support/CommandRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <wx/filefn.h>
#include <wx/filename.h>

#include <string>
#include <vector>

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

class CtlApacheTest : public testing::Test {
protected:
    TempDir root;

    void SetUp() override {
        ASSERT_TRUE(
            wxFileName::Mkdir(root.File("apache/conf"), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL));
        WriteBytes(Template(), handWrittenTemplate);
    }

    wxString Template() const { return root.File("apache/conf/httpd_source.conf"); }

    CommandResult Ctl(std::vector<wxString> args) const {
        args.insert(args.begin(), {KOVIXCTL_PATH, "--root", root.Path()});
        return RunCommand(args);
    }

    CommandResult Import(const std::string& document) const {
        WriteBytes(root.File("hosts.json"), document);
        return Ctl({"apache", "vhosts", "import", root.File("hosts.json")});
    }
};

} // namespace

TEST_F(CtlApacheTest, ExportImportExportGivesTheSameDocument) {
    const CommandResult first = Ctl({"apache", "vhosts", "--json"});
    ASSERT_EQ(first.exitCode, 0) << first.err;
    const nlohmann::json document = nlohmann::json::parse(first.out.utf8_string());
    EXPECT_EQ(document["path"], Template().utf8_string());
    ASSERT_EQ(document["hosts"].size(), 2u);
    const nlohmann::json& test = document["hosts"][0];
    EXPECT_EQ(test["DocumentRoot"], "{DOCUMENTPATH}/test");
    EXPECT_EQ(test["aliases"],
              nlohmann::json::parse(R"([{"name":"/img","folder":"{DOCUMENTPATH}/img"}])"));
    EXPECT_EQ(test["directories"][0],
              nlohmann::json::parse(R"({"path":"{DOCUMENTPATH}/test","FollowSymLinks":true,
                  "Includes":false,"Indexes":true,"MultiViews":false,"AllowOverride":true,
                  "others":["Require all granted"]})"));
    EXPECT_EQ(test["others"], nlohmann::json::parse(R"(["ErrorLog logs/test.log"])"));
    EXPECT_EQ(document["hosts"][1]["ServerName"], "caf\xC3\xA9.local");
    EXPECT_TRUE(first.out.StartsWith("{\"path\":")) << "fields in the documented order";

    const CommandResult imported = Import(first.out.utf8_string());
    ASSERT_EQ(imported.exitCode, 0) << imported.err;
    EXPECT_EQ(ReadBytes(Template()).substr(0, 11), "Listen 80\n\n");
    EXPECT_EQ(Ctl({"apache", "vhosts", "--json"}).out, first.out);

    // The same document from standard input; nothing changes but the blank line before the blocks.
    const CommandResult piped =
        RunShell("'" KOVIXCTL_PATH "' --root '" + root.Path() + "' apache vhosts import - < '" +
                 root.File("hosts.json") + "'");
    ASSERT_EQ(piped.exitCode, 0) << piped.err;
    EXPECT_EQ(ReadBytes(Template()).substr(0, 12), "Listen 80\n\n\n");
    EXPECT_EQ(Ctl({"apache", "vhosts", "--json"}).out, first.out);
}

TEST_F(CtlApacheTest, ListsTheHostsInColumnsForPeople) {
    const CommandResult list = Ctl({"apache", "vhosts"});
    ASSERT_EQ(list.exitCode, 0) << list.err;
    EXPECT_EQ(list.out,
              wxString::FromUTF8(
                  "address    ServerName  ServerAlias  DocumentRoot         aliases  "
                  "directories\n"
                  "*:80       test.local  -            {DOCUMENTPATH}/test  1        1\n"
                  "127.0.0.1  café.local  -            -                    0        0\n"));
}

TEST_F(CtlApacheTest, BadDocumentsExitOneAndLeaveTheTemplateAlone) {
    const char* const host = R"({"address":"*","ServerName":"","ServerAlias":"",
        "DocumentRoot":"","aliases":[],"directories":[],"others":[]})";
    const std::string hostWith = std::string(host).substr(0, std::string(host).size() - 1);
    const std::vector<std::string> documents = {
        "",
        "{\"hosts\": [",
        "not json",
        "[]",
        R"({"path": "/x"})",
        R"({"hosts": {}})",
        R"({"hosts": [1]})",
        R"({"hosts": [{"address": "*"}]})",
        R"({"hosts": [)" + hostWith + R"(,"address":5}]})",
        R"({"hosts": [)" + hostWith + R"(,"others":["a\nListen 81"]}]})",
        R"({"hosts": [)" + hostWith + R"(,"aliases":[["/a","/b"]]}]})",
        R"({"hosts": [)" + hostWith + R"(,"directories":[{"path":"/d","FollowSymLinks":"true",
            "Includes":false,"Indexes":false,"MultiViews":false,"AllowOverride":false,
            "others":[]}]}]})",
    };
    for (const std::string& document : documents) {
        const CommandResult result = Import(document);
        EXPECT_EQ(result.exitCode, 1) << document;
        EXPECT_FALSE(result.err.empty()) << document;
        EXPECT_EQ(ReadBytes(Template()), handWrittenTemplate) << document;
    }
    EXPECT_EQ(Import(R"({"hosts": [)" + std::string(host) + "]}").exitCode, 0)
        << "the shape the failures above depart from";
    EXPECT_FALSE(wxFileExists(Template() + ".temp"));

    EXPECT_EQ(Ctl({"apache", "vhosts", "import", root.File("missing.json")}).exitCode, 1);
    EXPECT_EQ(Ctl({"apache", "vhosts", "import"}).exitCode, 2);
    EXPECT_EQ(Ctl({"apache", "vhosts", "extra"}).exitCode, 2);
    wxRemoveFile(Template());
    EXPECT_EQ(Ctl({"apache", "vhosts"}).exitCode, 1);
    EXPECT_EQ(Import(R"({"hosts": []})").exitCode, 1) << "no template to rewrite";
    EXPECT_FALSE(wxFileExists(Template()));
}

TEST_F(CtlApacheTest, CatalogueEntriesAndTheirFallbacks) {
    const CommandResult rewrite = Ctl({"catalogue", "module", "rewrite_module", "--json"});
    ASSERT_EQ(rewrite.exitCode, 0) << rewrite.err;
    const nlohmann::json entry = nlohmann::json::parse(rewrite.out.utf8_string());
    EXPECT_TRUE(wxString::FromUTF8(entry["description"].get<std::string>())
                    .StartsWith("Provides a rule-based rewriting engine"));
    EXPECT_TRUE(wxString::FromUTF8(entry["link"].get<std::string>())
                    .EndsWith("/docs/2.2/mod/mod_rewrite.html"));

    const CommandResult bz2 = Ctl({"catalogue", "extension", "bz2"});
    EXPECT_TRUE(bz2.out.EndsWith("/manual/en/book.bzip2.php\n")) << "the link on the last line";
    EXPECT_FALSE(bz2.out.StartsWith(" "));

    EXPECT_EQ(Ctl({"catalogue", "module", "Rewrite_module", "--json"}).out,
              "{\"description\":\"No Description Available\",\"link\":\"\"}\n");
    EXPECT_EQ(Ctl({"catalogue", "extension", "nosuch"}).out, "No Description Available\n");
    EXPECT_EQ(Ctl({"catalogue", "module"}).exitCode, 2);
}
