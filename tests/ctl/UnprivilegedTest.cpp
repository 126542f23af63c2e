// kovixctl run by an ordinary account (nobody): what it may not do is refused before anything
// starts, in the user's language.
#include "ctl/NobodyTesting.h"

#include <wx/filefn.h>

namespace {

class Unprivileged : public NobodyCtlTest {
protected:
    void SetUp() override {
        LetNobodyIn();
        MakeTreeFolder(tree.Path(), "apache");
    }
};

} // namespace

TEST_F(Unprivileged, APortBelow1024IsRefusedInTheUsersLanguageNamingAWayOut) {
    const CommandResult english = CtlAsNobody({"start"});
    EXPECT_EQ(english.exitCode, 1);
    EXPECT_EQ(english.err,
              "Apache may not use port 80: on this computer only the administrator may use ports "
              "below 1024. Choose a port from 1024 up, for example 8080, in the preferences or "
              "with \"kovixctl port 8080\".\n");
    EXPECT_FALSE(wxFileExists(tree.File("apache/conf/httpd.conf"))) << "nothing generated";
    Write("kovix.ini", "APACHE_PORT = \"443\"\nCURRENT_LANG = \"fr\"\n");
    const CommandResult french = CtlAsNobody({"start", "apache"});
    EXPECT_EQ(french.exitCode, 1);
    EXPECT_TRUE(french.err.StartsWith(
        wxString::FromUTF8("Apache ne peut pas utiliser le port 443 : sur cet ordinateur")))
        << french.err;
    // MySQL alone needs no Apache port, and root may use any port.
    EXPECT_FALSE(CtlAsNobody({"start", "mysql"}).err.Contains("443"));
    EXPECT_FALSE(Ctl({"start", "apache"}).err.Contains(wxString::FromUTF8("ne peut pas")));
}
