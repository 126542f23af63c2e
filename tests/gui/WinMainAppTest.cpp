// A real kovix process: one panel per user (the lock of the single-instance checker), and what its
// close does to kovix.ini.
#include "gui/WinMainApp.h"
#include "gui/GuiTesting.h"
#include "support/CommandRunner.h"
#include "support/FakeServer.h"
#include "support/ImmutablePath.h"
#include "support/ScopedEnv.h"
#include "support/SmallTree.h"
#include "support/X11Windows.h"

#include <wx/filefn.h>

namespace {

TEST(WinMainAppTest, SecondPanelIsRefusedWhileARealPanelRunsAndTakesOverItsLockAfter) {
    TempDir home("kovix-home"); // where the checker keeps its lock file
    ScopedEnv homeVariable("HOME", home.Path());
    const wxString lock = home.File(WinMainApp::InstanceName());
    SmallTree tree;
    WriteBytes(tree.File("kovix.ini"), "START_ON_START = \"0\"\n");
    FakeServer panel(tree.Root(), "kovix", KOVIX_PATH, "");
    // The lock holds the panel's pid once it is claimed (the file appears empty first).
    ASSERT_TRUE(WaitFor([&] { return !ReadBytes(lock).empty(); }, 20000));

    std::unique_ptr<wxSingleInstanceChecker> checker;
    wxString message, caption;
    wxTEST_DIALOG(EXPECT_FALSE(WinMainApp::ClaimSingleInstance(checker)),
                  ExpectMessage(message, caption));
    EXPECT_EQ(message, "Kovix is already running.");
    EXPECT_EQ(caption, "Kovix");
    EXPECT_TRUE(panel.IsActive());

    Platform::Get().KillProcess(panel.Pid());
    EXPECT_TRUE(WaitFor([&] { return !panel.IsActive(); }));
    // A lock left by a killed panel is taken over, and released by its new owner.
    checker.reset();
    EXPECT_NO_DIALOG(EXPECT_TRUE(WinMainApp::ClaimSingleInstance(checker)));
    EXPECT_TRUE(wxFileExists(lock));
    checker.reset();
    EXPECT_FALSE(wxFileExists(lock));
}

// Settings another program wrote while the panel was open outlive the panel's exit.
TEST(WinMainAppTest, APortSetByKovixctlWhileThePanelIsOpenStaysAfterTheUserClosesIt) {
    TempDir home("kovix-home");
    ScopedEnv homeVariable("HOME", home.Path());
    SmallTree tree;
    WriteBytes(tree.File("kovix.ini"), "START_ON_START = \"0\"\nAPACHE_PORT = \"18080\"\n");
    FakeServer panel(tree.Root(), "kovix", KOVIX_PATH, "");
    // The instance lock is claimed once the panel has read its settings.
    const wxString lock = home.File(WinMainApp::InstanceName());
    ASSERT_TRUE(WaitFor([&] { return !ReadBytes(lock).empty(); }, 20000));

    const CommandResult port = RunCommand({KOVIXCTL_PATH, "--root", tree.Root(), "port", "18081"});
    ASSERT_EQ(port.exitCode, 0) << port.err;
    ASSERT_TRUE(WaitFor([&] { return X11Windows::RequestClose(panel.Pid()); }, 20000));
    ASSERT_TRUE(WaitFor([&] { return !panel.IsActive(); }, 20000));
    const std::string settings = ReadBytes(tree.File("kovix.ini"));
    EXPECT_NE(settings.find("APACHE_PORT = \"18081\""), std::string::npos) << settings;
    EXPECT_NE(settings.find("START_ON_START = \"0\""), std::string::npos) << settings;
}

// A settings file that cannot be replaced is not lost in silence: the close shows a box (the
// window tests read its text) before the panel goes, and the file stays as it was.
TEST(WinMainAppTest, AClosingPanelThatCannotWriteItsSettingsSaysSoBeforeItGoes) {
    TempDir home("kovix-home");
    ScopedEnv homeVariable("HOME", home.Path());
    SmallTree tree;
    const std::string before = "START_ON_START = \"0\"\nAPACHE_PORT = \"18080\"\n";
    WriteBytes(tree.File("kovix.ini"), before);
    FakeServer panel(tree.Root(), "kovix", KOVIX_PATH, "");
    const wxString lock = home.File(WinMainApp::InstanceName());
    ASSERT_TRUE(WaitFor([&] { return !ReadBytes(lock).empty(); }, 20000));
    // The panel has changed a setting to write: its PHP version, chosen at start-up.
    const ImmutablePath frozen(tree.File("kovix.ini"));
    if (!frozen.made)
        GTEST_SKIP() << "this file system has no immutable files";

    ASSERT_TRUE(WaitFor([&] { return X11Windows::RequestClose(panel.Pid()); }, 20000));
    ASSERT_TRUE(WaitFor([&] { return X11Windows::ViewableWindowCount(panel.Pid()) == 2; }, 20000))
        << "no message box over the panel";
    EXPECT_TRUE(panel.IsActive());
    ASSERT_TRUE(X11Windows::RequestClose(panel.Pid())); // the box's close; the window ignores it
    EXPECT_TRUE(WaitFor([&] { return !panel.IsActive(); }, 20000));
    EXPECT_EQ(ReadBytes(tree.File("kovix.ini")), before);
}

} // namespace
