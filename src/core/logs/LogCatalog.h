#pragma once

#include <wx/string.h>

#include <vector>

class InstallPaths;

// The logs of the tree a person follows, by the names kovixctl uses for them.
struct LogEntry {
    wxString name;    // "apache-error", "apache-access", "php", "mysql"
    wxString textKey; // language key of its label
    wxString path;
};

namespace LogCatalog {

// In this order: Apache error, Apache access, PHP errors, MySQL errors. The MySQL log is the one
// the last generated my.ini names, else the usual file of the data folder.
std::vector<LogEntry> Entries(const InstallPaths& paths);
// The entry of that name; false when there is none.
bool Find(const InstallPaths& paths, const wxString& name, LogEntry& entry);

} // namespace LogCatalog
