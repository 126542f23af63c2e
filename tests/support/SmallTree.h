#pragma once

#include "support/ScopedEnv.h"
#include "support/TempDir.h"

#include <wx/string.h>

// A stack tree of folders and small files for window tests that need no real server: two PHP
// versions (php_7.4, php_8.2) with their templates, the Apache template, log files, a MySQL data
// folder and www. While it lives, KOVIX_PROCESS_SCOPE names its root, so process lookups see only
// the processes living in it (see FakeServer).
class SmallTree {
public:
    SmallTree();

    const wxString& Root() const { return dir.Path(); }
    wxString File(const wxString& relativePath) const { return dir.File(relativePath); }

private:
    TempDir dir;
    ScopedEnv scope;
};
