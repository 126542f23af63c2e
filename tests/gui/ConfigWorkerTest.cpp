// The configuration dialogs' worker: a save waits for the tree's lock, held here by another
// process as kovixctl holds it over its own saves.
#include "gui/ConfigWorker.h"
#include "gui/GuiTesting.h"
#include "platform/Platform.h"
#include "support/TempDir.h"

#include <wx/filefn.h>

#include <memory>

namespace {

wxString SaveMarker(const InstallPaths& paths, const wxString& text) {
    WriteBytes(paths.ProgramFolder() + "/saved", text.utf8_string());
    return wxString();
}

// A process that holds the tree's lock (flock(1) from util-linux) until the file "release"
// appears; killed by pid if it is still there at the end.
class OtherLockHolder {
public:
    explicit OtherLockHolder(const TempDir& tree) : tree(tree) {
        ChildSpec launch;
        launch.commandLine = "flock \"" + TreeLock::LockFilePath(tree.Path()) +
                             "\" sh -c \"touch held; while [ ! -e release ]; do sleep 0.02; done\"";
        launch.workingFolder = tree.Path();
        child = Platform::Get().StartHidden(launch);
    }
    ~OtherLockHolder() {
        Release();
        if (child && !WaitFor([this] { return !child->IsActive(); }, 5000))
            Platform::Get().KillProcess(child->Pid());
    }
    bool Holds() {
        return child && WaitFor([this] { return wxFileExists(tree.File("held")); });
    }
    void Release() { WriteBytes(tree.File("release"), ""); }

private:
    const TempDir& tree;
    std::unique_ptr<ChildProcess> child;
};

} // namespace

TEST(ConfigWorkerTest, ASaveWaitsWhileAnotherProcessHoldsTheTreeLock) {
    TempDir tree;
    AppSettings settings;
    const InstallPaths paths(tree.Path(), settings);
    wxEvtHandler dialog;
    OtherLockHolder other(tree);
    ASSERT_TRUE(other.Holds());

    ConfigWorker worker(&dialog, wxEVT_THREAD, paths, wxString("dialog"), &SaveMarker);
    ASSERT_EQ(worker.Run(), wxTHREAD_NO_ERROR);
    EXPECT_FALSE(WaitFor([&] { return wxFileExists(tree.File("saved")); }, 300));
    other.Release();
    worker.Wait();
    EXPECT_EQ(ReadBytes(tree.File("saved")), "dialog");
}
