// DataChild on POSIX: posix_spawnp with the three standard descriptors redirected.
#include "platform/PosixPlatform.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

const int PipeBytes = 1024 * 1024;

class PosixDataChild : public DataChild {
public:
    PosixDataChild(pid_t pid, int outputFd, int inputFd)
        : pid(pid), outputFd(outputFd), inputFd(inputFd) {}
    ~PosixDataChild() override {
        CloseInput();
        close(outputFd);
        if (!ended) {
            kill(pid, SIGKILL);
            Wait();
        }
    }

    long Read(char* buffer, size_t size) override {
        ssize_t got;
        do {
            got = read(outputFd, buffer, size);
        } while (got < 0 && errno == EINTR);
        return static_cast<long>(got);
    }

    bool Write(const char* data, size_t size) override {
        while (size > 0) {
            const ssize_t put = write(inputFd, data, size);
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0)
                return false;
            data += put;
            size -= static_cast<size_t>(put);
        }
        return true;
    }

    void CloseInput() override {
        if (inputFd >= 0)
            close(inputFd);
        inputFd = -1;
    }

    int Wait() override {
        int status = 0;
        pid_t result;
        do {
            result = waitpid(pid, &status, 0);
        } while (result < 0 && errno == EINTR);
        ended = true;
        return result == pid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t pid;
    int outputFd;
    int inputFd;
    bool ended = false;
};

} // namespace

std::unique_ptr<DataChild> PosixPlatform::StartDataChild(const std::vector<wxString>& argv,
                                                         const wxString& errorFile) {
    std::vector<std::string> words;
    for (const wxString& word : argv)
        words.push_back(word.utf8_string());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const int errorFd = open(errorFile.utf8_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    int input[2], output[2];
    if (errorFd < 0 || pipe2(input, O_CLOEXEC) != 0) {
        if (errorFd >= 0)
            close(errorFd);
        return nullptr;
    }
    if (pipe2(output, O_CLOEXEC) != 0) {
        close(input[0]);
        close(input[1]);
        close(errorFd);
        return nullptr;
    }
    // Large pipes let the child run on while this side compresses or decompresses a chunk.
    for (int fd : {input[1], output[0]})
        fcntl(fd, F_SETPIPE_SZ, PipeBytes);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errorFd, STDERR_FILENO);
    // A dead reader must fail the writer's write, not kill this process.
    signal(SIGPIPE, SIG_IGN);
    pid_t pid = 0;
    const int failed = posix_spawnp(&pid, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    close(errorFd);
    if (failed) {
        close(input[1]);
        close(output[0]);
        return nullptr;
    }
    return std::make_unique<PosixDataChild>(pid, output[0], input[1]);
}
