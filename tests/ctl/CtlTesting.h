#pragma once

#include "support/CommandRunner.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

// A test of kovixctl on a temporary tree that starts empty.
class CtlTest : public testing::Test {
protected:
    TempDir tree;

    CommandResult Ctl(std::vector<wxString> args) const {
        args.insert(args.begin(), {KOVIXCTL_PATH, "--root", tree.Path()});
        return RunCommand(args);
    }
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
    std::string Read(const wxString& relativePath) const {
        return ReadBytes(tree.File(relativePath));
    }
    void Write(const wxString& relativePath, const std::string& bytes) const {
        WriteTreeFile(tree.Path(), relativePath, bytes);
    }
};
