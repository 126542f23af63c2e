// One panel per user: the lock of the single-instance checker, held by a real kovix process.
#include "gui/WinMainApp.h"
#include "gui/GuiTesting.h"
#include "support/CommandRunner.h"
#include "support/FakeServer.h"
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

} // namespace
