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
#include <thread>

#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool Contains(const std::vector<long>& pids, long pid) {
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

// A child of this process renamed to name, sleeping until killed.
pid_t StartNamed(const char* name) {
    pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_NAME, name);
        pause();
        _exit(0);
    }
    return pid;
}

bool IsZombie(pid_t pid) {
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    std::getline(in, line);
    return line.find(") Z ") != std::string::npos;
}

} // namespace

TEST(PosixProcesses, LookupByNameIgnoresCaseSkipsZombiesAndKillEndsTheProcess) {
    Platform& platform = Platform::Get();
    const pid_t pid = StartNamed("KovixProbe");
    ASSERT_GT(pid, 0);
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!Contains(platform.FindProcessesByName("kovixprobe"), pid) &&
           std::chrono::steady_clock::now() < giveUp)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_TRUE(Contains(platform.FindProcessesByName("kovixprobe"), pid));
    EXPECT_TRUE(Contains(platform.FindProcessesByName("KOVIXPROBE"), pid));
    EXPECT_FALSE(Contains(platform.FindProcessesByName("kovixprob"), pid));

    platform.KillProcess(pid);
    // Killed but not reaped: a zombie that still carries the name, and no longer counts.
    while (!IsZombie(pid) && std::chrono::steady_clock::now() < giveUp)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_FALSE(Contains(platform.FindProcessesByName("kovixprobe"), pid));
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
    wxString here = wxGetCwd();
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), here));
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), here + "/"));
    EXPECT_FALSE(Platform::Get().ProcessLivesIn(getpid(), dir.Path()));
    // The test program is named on its own command line; a longer name is another folder.
    wxString program = Platform::Get().ExecutablePath();
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), wxFileName(program).GetPath()));
    EXPECT_FALSE(Platform::Get().ProcessLivesIn(getpid(), program.Left(program.length() - 1)));
}

TEST(PosixProcesses, PortTestAndHolderNameTheListener) {
    int freePort;
    {
        Listener probe;
        freePort = probe.port;
    }
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
    EXPECT_FALSE(Platform::Get().IsLocalSocketAccepting(""));
}
