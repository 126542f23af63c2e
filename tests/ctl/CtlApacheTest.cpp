#include "ctl/CtlTesting.h"

#include <nlohmann/json.hpp>
#include <wx/filefn.h>
#include <wx/filename.h>

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
const char* const templatePath = "apache/conf/httpd_source.conf";

// path with the platform's separators, as kovixctl names files.
std::string NativePath(const wxString& path) {
    return wxFileName(path).GetFullPath().utf8_string();
}

class CtlApacheTest : public CtlTest {
protected:
    CtlApacheTest() { Write(templatePath, handWrittenTemplate); }

    CommandResult Import(const std::string& document) const {
        Write("hosts.json", document);
        return Ctl({"apache", "vhosts", "import", tree.File("hosts.json")});
    }
};

} // namespace

TEST_F(CtlApacheTest, ExportImportExportGivesTheSameDocument) {
    const CommandResult first = Ctl({"apache", "vhosts", "--json"});
    EXPECT_EQ(first.out.utf8_string(),
              R"({"path":)" + nlohmann::json(NativePath(tree.File(templatePath))).dump() +
                  R"(,"hosts":[{"address":"*:80","ServerName":"test.local","ServerAlias":"",)"
                  R"("DocumentRoot":"{DOCUMENTPATH}/test","aliases":[{"name":"/img",)"
                  R"("folder":"{DOCUMENTPATH}/img"}],"directories":[{"path":"{DOCUMENTPATH}/test",)"
                  R"("FollowSymLinks":true,"Includes":false,"Indexes":true,"MultiViews":false,)"
                  R"("AllowOverride":true,"others":["Require all granted"]}],)"
                  R"("others":["ErrorLog logs/test.log"]},{"address":"127.0.0.1","ServerName":"caf)"
                  "\xC3\xA9"
                  R"(.local","ServerAlias":"","DocumentRoot":"","aliases":[],"directories":[],)"
                  R"("others":[]}]})"
                  "\n");
    ASSERT_EQ(Import(first.out.utf8_string()).exitCode, 0);
    EXPECT_EQ(Read(templatePath).substr(0, 11), "Listen 80\n\n");
    EXPECT_EQ(Ctl({"apache", "vhosts", "--json"}).out, first.out);
}

TEST_F(CtlApacheTest, BadDocumentsExitOneAndLeaveTheTemplateAlone) {
    const std::string host = R"({"hosts": [{"address":"*","ServerName":"","ServerAlias":"",
        "DocumentRoot":"","aliases":[],"directories":[],"others":[])";
    const std::vector<std::string> documents = {
        "{\"hosts\": [",
        "[]",
        R"({"hosts": [{"address": "*"}]})",
        host + R"(,"others":["a\nListen 81"]}]})",
        host + R"(,"directories":[{"path":"/d","FollowSymLinks":"true","Includes":false,
            "Indexes":false,"MultiViews":false,"AllowOverride":false,"others":[]}]}]})",
        // Quoted values Apache would read wrongly or refuse.
        host + R"(,"ServerName":"a\"b"}]})",
        host + R"(,"DocumentRoot":"/w\u0000x"}]})",
        host + R"(,"aliases":[{"name":"/i","folder":"/f\tg"}]}]})",
    };
    for (const std::string& document : documents) {
        const CommandResult result = Import(document);
        EXPECT_EQ(result.exitCode, 1) << document;
        EXPECT_FALSE(result.err.empty()) << document;
        EXPECT_EQ(Read(templatePath), handWrittenTemplate) << document;
    }
    EXPECT_EQ(Import(host + "}]}").exitCode, 0) << "the shape the failures above depart from";
    EXPECT_FALSE(wxFileExists(tree.File(templatePath) + ".temp"));
    EXPECT_EQ(Ctl({"apache", "vhosts", "import", tree.File("missing.json")}).exitCode, 1);
    EXPECT_EQ(Ctl({"apache", "vhosts", "import"}).exitCode, 2);
    wxRemoveFile(tree.File(templatePath));
    EXPECT_EQ(Import(R"({"hosts": []})").exitCode, 1) << "no template to rewrite";
    EXPECT_FALSE(wxFileExists(tree.File(templatePath)));
}

// The refusals name what is wrong, in the language of the tree's settings.
TEST_F(CtlApacheTest, RefusalsOfTheDocumentAreInTheUsersLanguage) {
    const std::string missingName = R"({"hosts": [{"address": "*"}]})";
    const wxString missingFile = tree.File("missing.json");
    EXPECT_EQ(Import(missingName).err,
              "The virtual-host document is not of the expected shape: missing \"ServerName\"\n");

    Write("kovix.ini", "CURRENT_LANG = \"fr\"\n");
    const wxString refusal = wxString::FromUTF8("Le document des hôtes virtuels n'a pas la forme "
                                                "attendue : ");
    EXPECT_EQ(Import("[]").err, refusal + wxString::FromUTF8("le document doit être un objet\n"));
    EXPECT_EQ(Import(missingName).err, refusal + wxString::FromUTF8("« ServerName » manque\n"));
    const CommandResult unreadable = Ctl({"apache", "vhosts", "import", missingFile});
    EXPECT_EQ(unreadable.exitCode, 1);
    EXPECT_TRUE(
        unreadable.err.StartsWith(wxString::FromUTF8("Impossible de lire ") + missingFile + " : "))
        << unreadable.err;
    EXPECT_EQ(Read(templatePath), handWrittenTemplate);
}
