#pragma once

#include "ctl/CtlTesting.h"

#include <sys/stat.h>
#include <unistd.h>

// A kovixctl test that also runs kovixctl as an ordinary account, nobody (POSIX only).
class NobodyCtlTest : public CtlTest {
protected:
    // Skips the test unless it runs as root, which may take another account, and lets others
    // into the tree's folder (its files stay root's: nobody may read them, not write them).
    void LetNobodyIn() const {
        if (geteuid() != 0)
            GTEST_SKIP() << "taking another account needs root";
        ASSERT_EQ(chmod(tree.Path().utf8_str(), 0755), 0);
    }
    // kovixctl run by an ordinary account, nobody; call LetNobodyIn first.
    CommandResult CtlAsNobody(std::vector<wxString> args) const {
        args.insert(args.begin(), {"setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups",
                                   KOVIXCTL_PATH, "--root", tree.Path()});
        return RunCommand(args);
    }
};
