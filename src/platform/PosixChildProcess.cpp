#include "platform/PosixChildProcess.h"

#include "platform/CommandLineWords.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

bool IsExecutableFile(const wxString& path) {
    struct stat info {};
    std::string bytes = path.utf8_string();
    return stat(bytes.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           access(bytes.c_str(), X_OK) == 0;
}

void SetEntry(std::vector<std::string>& environment, const std::string& name,
              const std::string& value) {
    std::string prefix = name + "=";
    for (std::string& entry : environment) {
        if (entry.compare(0, prefix.size(), prefix) == 0) {
            entry = prefix + value;
            return;
        }
    }
    environment.push_back(prefix + value);
}

const char* FindEntry(const std::vector<std::string>& environment, const std::string& name) {
    std::string prefix = name + "=";
    for (const std::string& entry : environment)
        if (entry.compare(0, prefix.size(), prefix) == 0)
            return entry.c_str() + prefix.size();
    return nullptr;
}

std::vector<char*> Pointers(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    for (std::string& text : strings)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

void CloseBoth(int fds[2]) {
    close(fds[0]);
    close(fds[1]);
}

[[noreturn]] void ReportAndExit(int status) {
    int error = errno;
    ssize_t ignored = write(status, &error, sizeof error);
    (void)ignored;
    _exit(127);
}

// Nothing else of the panel (sockets, the display connection) may reach the server.
void CloseOtherDescriptors(int keep) {
    const int first = STDERR_FILENO + 1;
    if ((keep == first || close_range(first, keep - 1, 0) == 0) &&
        close_range(keep + 1, ~0U, 0) == 0)
        return;
    for (int fd = first; fd < 4096; ++fd)
        if (fd != keep)
            close(fd);
}

// In the forked child: only async-signal-safe calls until exec. On failure the errno goes to
// the status pipe and the child ends. The pipe ends are first moved above the standard
// descriptors so that none is overwritten by another.
[[noreturn]] void ExecChild(const char* folder, char** argv, char** envp, int input, int output,
                            int status) {
    setsid();
    // Dispositions the panel ignores would survive the exec (a server ignoring SIGCHLD cannot
    // wait for its own children).
    for (int signalNumber = 1; signalNumber < NSIG; ++signalNumber)
        if (signalNumber != SIGKILL && signalNumber != SIGSTOP)
            signal(signalNumber, SIG_DFL);
    signal(SIGPIPE, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    status = fcntl(status, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    input = fcntl(input, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    output = fcntl(output, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (status < 0)
        _exit(127);
    if (input < 0 || output < 0 || dup2(input, STDIN_FILENO) < 0 ||
        dup2(output, STDOUT_FILENO) < 0 || dup2(output, STDERR_FILENO) < 0 ||
        (*folder && chdir(folder) != 0))
        ReportAndExit(status);
    CloseOtherDescriptors(status);
    execvpe(argv[0], argv, envp);
    ReportAndExit(status);
}

// Waits for the exec of the child: the status pipe closes on success, carries errno on failure,
// which becomes this thread's errno.
bool ExecSucceeded(int statusFd) {
    int error = 0;
    ssize_t got;
    do {
        got = read(statusFd, &error, sizeof error);
    } while (got < 0 && errno == EINTR);
    if (got == static_cast<ssize_t>(sizeof error))
        errno = error;
    return got == 0;
}

} // namespace

std::vector<std::string> ChildEnvironment(const ChildSpec& launch, char** inherited) {
    std::vector<std::string> environment;
    for (char** entry = inherited; entry && *entry; ++entry)
        environment.emplace_back(*entry);
    if (!launch.pathPrefix.empty()) {
        const char* old = FindEntry(environment, "PATH");
        SetEntry(environment, "PATH", launch.pathPrefix.utf8_string() + (old ? old : ""));
    }
    if (!launch.libraryFolder.empty()) {
        const char* old = FindEntry(environment, "LD_LIBRARY_PATH");
        SetEntry(environment, "LD_LIBRARY_PATH",
                 launch.libraryFolder.utf8_string() + (old && *old ? std::string(":") + old : ""));
    }
    for (const auto& [name, value] : launch.environment)
        SetEntry(environment, name.utf8_string(), value.utf8_string());
    return environment;
}

std::unique_ptr<ChildProcess> PosixChildProcess::Start(const ChildSpec& launch) {
    std::vector<std::string> words;
    for (const wxString& word : CommandLineWords::Split(launch.commandLine, IsExecutableFile))
        words.push_back(word.utf8_string());
    if (words.empty())
        return nullptr;
    std::vector<std::string> environment = ChildEnvironment(launch, environ);
    std::vector<char*> argv = Pointers(words);
    std::vector<char*> envp = Pointers(environment);
    std::string folder = launch.workingFolder.utf8_string();

    int output[2], input[2], status[2];
    if (pipe2(output, O_CLOEXEC) != 0)
        return nullptr;
    if (pipe2(input, O_CLOEXEC) != 0) {
        CloseBoth(output);
        return nullptr;
    }
    if (pipe2(status, O_CLOEXEC) != 0) {
        CloseBoth(output);
        CloseBoth(input);
        return nullptr;
    }
    pid_t pid = fork();
    if (pid == 0)
        ExecChild(folder.c_str(), argv.data(), envp.data(), input[0], output[1], status[1]);
    close(output[1]);
    close(input[0]);
    close(status[1]);
    bool started = pid > 0 && ExecSucceeded(status[0]);
    close(status[0]);
    if (!started) {
        const int reason = errno; // why the exec failed, kept over the clean-up
        if (pid > 0)
            waitpid(pid, nullptr, 0);
        close(output[0]);
        close(input[1]);
        errno = reason;
        return nullptr;
    }
    fcntl(output[0], F_SETFL, fcntl(output[0], F_GETFL) | O_NONBLOCK);
    return std::unique_ptr<ChildProcess>(new PosixChildProcess(pid, output[0], input[1]));
}

PosixChildProcess::~PosixChildProcess() {
    close(outputFd);
    close(inputFd);
}

bool PosixChildProcess::IsActive() {
    if (ended)
        return false;
    pid_t result = waitpid(pid, nullptr, WNOHANG);
    if (result == 0)
        return true;
    // Reaped now, or already gone (somebody else reaped it).
    ended = true;
    return false;
}

// Bytes are widened one by one (ISO 8859-1); a zero byte ends its chunk, as the servers' output
// is read as C strings.
wxString PosixChildProcess::ReadOutput() {
    wxString text;
    char buffer[4096];
    for (;;) {
        ssize_t got = read(outputFd, buffer, sizeof buffer);
        if (got <= 0)
            break;
        text += wxString(buffer, wxConvISO8859_1, strnlen(buffer, static_cast<size_t>(got)));
    }
    return text;
}
