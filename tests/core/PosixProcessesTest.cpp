// Process lookup, processor times and the port services of the platform, against this machine.
#include "platform/Platform.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/utils.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <functional>
#include <thread>

#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool Eventually(const std::function<bool()>& condition) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition() && std::chrono::steady_clock::now() < giveUp)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return condition();
}

bool Found(const wxString& name, long pid) {
    const std::vector<long> pids = Platform::Get().FindProcessesByName(name);
    return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

// A listening socket on a free port of every local address.
struct Listener {
    int fd = socket(AF_INET6, SOCK_STREAM, 0);
    int port = 0;
    Listener() {
        sockaddr_in6 address{};
        address.sin6_family = AF_INET6;
        socklen_t length = sizeof address;
        bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(fd, 4);
        getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
        port = ntohs(address.sin6_port);
    }
    ~Listener() { close(fd); }
};

} // namespace

TEST(PosixProcesses, LookupByNameIgnoresCaseSkipsZombiesAndKillEndsTheProcess) {
    const pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_NAME, "KovixProbe");
        pause();
        _exit(0);
    }
    ASSERT_GT(pid, 0);
    EXPECT_TRUE(Eventually([&] { return Found("kovixprobe", pid); }));
    EXPECT_TRUE(Found("KOVIXPROBE", pid));
    EXPECT_FALSE(Found("kovixprob", pid));

    Platform::Get().KillProcess(pid);
    // Killed but not reaped: a zombie that still carries the name, and no longer counts.
    const auto isZombie = [&] {
        std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
        std::string line;
        std::getline(in, line);
        return line.find(") Z ") != std::string::npos;
    };
    EXPECT_TRUE(Eventually(isZombie));
    EXPECT_FALSE(Found("kovixprobe", pid));
    EXPECT_EQ(waitpid(pid, nullptr, 0), pid);
}

TEST(PosixProcesses, ProcessorTimesGrowWithWork) {
    ProcessorTimes before, after;
    ASSERT_TRUE(Platform::Get().ReadProcessorTimes(getpid(), before));
    volatile double sink = 0;
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
    while (std::chrono::steady_clock::now() < until)
        sink = sink + 1;
    ASSERT_TRUE(Platform::Get().ReadProcessorTimes(getpid(), after));
    EXPECT_GT(after.process, before.process);
    EXPECT_GT(after.machine - before.machine, after.process - before.process);
    EXPECT_FALSE(Platform::Get().ReadProcessorTimes(999999999, after));
}

TEST(PosixProcesses, ProcessLivesInItsFolderExecutableOrCommandLine) {
    TempDir dir;
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), wxGetCwd() + "/"));
    EXPECT_FALSE(Platform::Get().ProcessLivesIn(getpid(), dir.Path()));
    // The test program is named on its own command line; a longer name is another folder.
    const wxString program = Platform::Get().ExecutablePath();
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), wxFileName(program).GetPath()));
    EXPECT_FALSE(Platform::Get().ProcessLivesIn(getpid(), program.Left(program.length() - 1)));
}

TEST(PosixProcesses, PortTestAndHolderNameTheListener) {
    const int freePort = Listener().port;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(Platform::Get().IsLocalPortTaken(freePort, 1000));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1100));
    EXPECT_EQ(Platform::Get().DescribePortHolder(freePort), "");
    Listener listener;
    EXPECT_TRUE(Platform::Get().IsLocalPortTaken(listener.port, 1000));
    EXPECT_EQ(Platform::Get().DescribePortHolder(listener.port),
              wxString::Format("core_tests (pid %ld)", static_cast<long>(getpid())));
}

TEST(PosixProcesses, SocketFileTestSeesOnlyAListeningSocket) {
    TempDir dir;
    const wxString path = dir.File("server.sock");
    EXPECT_FALSE(Platform::Get().IsLocalSocketAccepting(path));
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.utf8_str());
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(Platform::Get().IsLocalSocketAccepting(path)); // bound, not listening
    ASSERT_EQ(listen(fd, 4), 0);
    EXPECT_TRUE(Platform::Get().IsLocalSocketAccepting(path));
    close(fd);
    EXPECT_FALSE(Platform::Get().IsLocalSocketAccepting(path)); // the file stays, nobody answers
}
