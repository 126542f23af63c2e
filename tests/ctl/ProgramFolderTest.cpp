// The tree's own kovixctl finds its tree in a folder with accents, whatever the locale and however
// it is started, and the generated configuration holds that folder absolute.
#include "support/LoopbackClient.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class AccentedTree : public testing::Test {
protected:
    TestTree tree{KOVIX_SOURCE_DIR, wxString::FromUTF8("Überprojekt/été kovix")};
    wxString kovixctl = tree.File("kovixctl");

    void SetUp() override {
        ASSERT_TRUE(wxCopyFile(KOVIXCTL_PATH, kovixctl) && chmod(kovixctl.utf8_str(), 0755) == 0);
    }

    // kovixctl run from folder under the locale, named as given (through env, which searches
    // the PATH it was given).
    CommandResult Run(const wxString& folder, const wxString& locale, const wxString& program,
                      const wxString& command) {
        CommandResult result =
            RunCommand({"env", "-C", folder, "-u", "LC_ALL", "-u", "LC_CTYPE", "LANG=" + locale,
                        "PATH=" + tree.Root() + ":/usr/bin:/bin", program, command});
        TestTree::ReapEndedServers();
        return result;
    }
};

} // namespace

TEST_F(AccentedTree, StartsServesAndStopsUnderEveryLocaleAndEveryWayOfStarting) {
    struct Way {
        const char* name;
        wxString folder, program;
    };
    const wxString link = tree.File("../kovixctl-link");
    ASSERT_EQ(symlink(kovixctl.utf8_str(), link.utf8_str()), 0);
    const Way ways[] = {{"relative", tree.Root(), "./kovixctl"},
                        {"absolute", "/", kovixctl},
                        {"through PATH", "/", "kovixctl"},
                        {"through a link", "/", link}};
    for (const char* locale : {"C", "C.UTF-8", "fr_FR.UTF-8"})
        for (const Way& way : ways) {
            SCOPED_TRACE(std::string(locale) + ", " + way.name);
            const CommandResult start = Run(way.folder, locale, way.program, "start");
            ASSERT_EQ(start.exitCode, 0) << start.err;
            EXPECT_EQ(HttpGet(tree.ApachePort(), "/kovix/phpinfo.php").status, 200);
            const CommandResult stop = Run(way.folder, locale, way.program, "stop");
            ASSERT_EQ(stop.exitCode, 0) << stop.err;
            EXPECT_TRUE(tree.ProcessesNamed("httpd").empty() &&
                        tree.ProcessesNamed("mysqld").empty());
        }
    EXPECT_NE(ReadBytes(tree.File("apache/conf/httpd.conf"))
                  .find("ServerRoot \"" + tree.File("apache").utf8_string() + "\""),
              std::string::npos);
    // A port set from elsewhere lands in the tree, not in the caller's folder.
    EXPECT_EQ(Run("/", "C", "kovixctl", "port").out, wxString::Format("%d\n", tree.ApachePort()));
}
