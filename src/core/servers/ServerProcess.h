#pragma once

#include "platform/Platform.h"

#include <wx/string.h>

#include <memory>

// One hidden server child: its command line (executable first, unquoted; quoted arguments may
// hold blanks), working folder and environment changes, and once run, the child with its output
// pipe. Whether the child still lives is always asked of the system. Destroying the record
// closes its pipes but leaves the child running.
class ServerProcess {
public:
    ServerProcess(const wxString& commandLine, const wxString& workingFolder);

    // Put in front of the inherited PATH for the child only.
    void SetPathPrefix(const wxString& prefix) { launch.pathPrefix = prefix; }
    // Searched first for the child's shared libraries.
    void SetLibraryFolder(const wxString& folder) { launch.libraryFolder = folder; }
    // An extra variable of the child's environment (an empty value sets it empty).
    void SetVariable(const wxString& name, const wxString& value);

    // True when the child was created.
    bool Run();
    bool IsActive();
    // Everything the child has written and not yet read; never blocks.
    wxString ReadOutput();
    long Pid() const;

    const wxString& CommandLine() const { return launch.commandLine; }

private:
    ChildSpec launch;
    std::unique_ptr<ChildProcess> child;
};

// Keeps the record while its child is active; otherwise destroys it and answers false.
bool KeepIfActive(std::unique_ptr<ServerProcess>& record);
// Runs the record, and forgets it when the child cannot be created: then answers the line that
// says why program could not be run (the system's reason), else "".
wxString RunOrForget(std::unique_ptr<ServerProcess>& record, const wxString& program);
