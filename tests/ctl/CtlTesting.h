#pragma once

#include "support/CommandRunner.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// A test of kovixctl on a temporary tree that starts empty.
class CtlTest : public testing::Test {
protected:
    TempDir tree;

    CommandResult Ctl(std::vector<wxString> args) const {
        args.insert(args.begin(), {KOVIXCTL_PATH, "--root", tree.Path()});
        return RunCommand(args);
    }
    std::string Read(const wxString& relativePath) const {
        return ReadBytes(tree.File(relativePath));
    }
    void Write(const wxString& relativePath, const std::string& bytes) const {
        WriteTreeFile(tree.Path(), relativePath, bytes);
    }
};
