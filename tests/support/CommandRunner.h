#pragma once

#include <wx/string.h>

#include <vector>

// What a finished command left behind, as plain values.
struct CommandResult {
    int exitCode = -1;
    wxString out;
    wxString err;
};

// Runs argv to completion (no shell), capturing standard output and error with "\n" line ends.
CommandResult RunCommand(const std::vector<wxString>& argv);
// Runs a command line through /bin/sh -c.
CommandResult RunShell(const wxString& commandLine);
