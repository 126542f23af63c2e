// One panel per user: the lock of the single-instance checker, held by a real kovix process.
#include "app/WinMainApp.h"
#include "gui/GuiDialogs.h"
#include "gui/GuiWait.h"
#include "platform/Platform.h"
#include "support/SmallTree.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>
#include <wx/utils.h>

namespace {

// Points HOME, where the checker keeps its lock file, at a fresh folder for the test's length.
class TempHome {
public:
    TempHome() {
        hadHome = wxGetEnv("HOME", &previous);
        wxSetEnv("HOME", dir.Path());
    }
    ~TempHome() {
        if (hadHome)
            wxSetEnv("HOME", previous);
        else
            wxUnsetEnv("HOME");
    }
    wxString LockFile() const { return dir.File(WinMainApp::InstanceName()); }

private:
    TempDir dir{"kovix-home"};
    wxString previous;
    bool hadHome = false;
};

TEST(WinMainAppTest, FirstPanelOfAUserClaimsTheLockAndReleasesIt) {
    TempHome home;
    std::unique_ptr<wxSingleInstanceChecker> checker;
    EXPECT_NO_DIALOG(EXPECT_TRUE(WinMainApp::ClaimSingleInstance(checker)));
    EXPECT_TRUE(wxFileExists(home.LockFile()));
    checker.reset();
    EXPECT_FALSE(wxFileExists(home.LockFile()));
}

TEST(WinMainAppTest, SecondPanelIsRefusedWhileARealPanelRuns) {
    TempHome home;
    SmallTree tree;
    ASSERT_TRUE(wxCopyFile(KOVIX_PATH, tree.File("kovix")));
    wxChmod(tree.File("kovix"), 0755);
    WriteBytes(tree.File("kovix.ini"), "START_ON_START = \"0\"\n");
    ChildSpec launch;
    launch.commandLine = tree.File("kovix");
    launch.workingFolder = tree.Root();
    std::unique_ptr<ChildProcess> panel = Platform::Get().StartHidden(launch);
    ASSERT_TRUE(panel);
    // The lock holds the panel's pid once it is claimed (the file appears empty first).
    ASSERT_TRUE(WaitFor([&] { return !ReadBytes(home.LockFile()).empty(); }, 20000));

    std::unique_ptr<wxSingleInstanceChecker> checker;
    wxString message, caption;
    wxTEST_DIALOG(EXPECT_FALSE(WinMainApp::ClaimSingleInstance(checker)),
                  ExpectMessage(message, caption));
    EXPECT_EQ(message, "Kovix is already running.");
    EXPECT_EQ(caption, "Kovix");
    EXPECT_TRUE(panel->IsActive());

    Platform::Get().KillProcess(panel->Pid());
    EXPECT_TRUE(WaitFor([&] { return !panel->IsActive(); }));
    // A lock left by a killed panel is taken over.
    checker.reset();
    EXPECT_NO_DIALOG(EXPECT_TRUE(WinMainApp::ClaimSingleInstance(checker)));
}

} // namespace
