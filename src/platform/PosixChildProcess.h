#pragma once

#include "platform/Platform.h"

#include <sys/types.h>

#include <string>
#include <vector>

// A child started with fork/exec in its own session: standard input from a pipe whose write end
// the panel keeps, standard output and error on one pipe whose read end the panel keeps
// (non-blocking). The child ignores SIGPIPE, so a server outlives the panel that started it even
// when it writes to its output afterwards. Destruction closes the pipes, never the child.
class PosixChildProcess : public ChildProcess {
public:
    // Starts the child; nullptr when the program cannot be run (not found, folder missing, ...).
    static std::unique_ptr<ChildProcess> Start(const ChildSpec& launch);
    ~PosixChildProcess() override;

    long Pid() const override { return pid; }
    bool IsActive() override;
    wxString ReadOutput() override;

private:
    PosixChildProcess(pid_t pid, int outputFd, int inputFd)
        : pid(pid), outputFd(outputFd), inputFd(inputFd) {}

    pid_t pid;
    int outputFd;
    int inputFd;
    bool ended = false;
};

// The environment of the child as "NAME=value" entries: the panel's own, with the PATH prefix and
// the launch's variables applied.
std::vector<std::string> ChildEnvironment(const ChildSpec& launch, char** inherited);
