#pragma once

#include "platform/Win32Headers.h"

#include "platform/Platform.h"

// A child started with CreateProcessW, hidden: standard input from a pipe whose write end the
// panel keeps, standard output and error on one pipe whose read end the panel keeps. The PATH
// prefix and the launch's variables are put into the panel's own environment for the moment of
// the creation (the child inherits them) and taken back at once. Destruction closes the handles,
// never the child.
class Win32ChildProcess : public ChildProcess {
public:
    // Starts the child; nullptr when the program cannot be run (not found, folder missing, ...).
    static std::unique_ptr<ChildProcess> Start(const ChildSpec& launch);
    ~Win32ChildProcess() override;

    long Pid() const override { return static_cast<long>(info.dwProcessId); }
    bool IsActive() override;
    wxString ReadOutput() override;

private:
    Win32ChildProcess(const PROCESS_INFORMATION& info, HANDLE output, HANDLE input)
        : info(info), output(output), input(input) {}

    PROCESS_INFORMATION info;
    HANDLE output;
    HANDLE input;
};
