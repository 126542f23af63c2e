// Process lookup, processor times and the port services of the platform, against this machine.
#include "platform/Platform.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/utils.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <thread>

#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
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
    EXPECT_TRUE(Eventually([&] {
        std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
        std::string line;
        std::getline(in, line);
        return line.find(") Z ") != std::string::npos;
    }));
    EXPECT_FALSE(Found("kovixprobe", pid));
    EXPECT_EQ(waitpid(pid, nullptr, 0), pid);
}

TEST(PosixProcesses, TheProcessLivesInItsFolders) {
    // Working folder, then the executable's folder; a longer name is another folder.
    TempDir dir;
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), wxGetCwd() + "/"));
    EXPECT_FALSE(Platform::Get().ProcessLivesIn(getpid(), dir.Path()));
    const wxString program = Platform::Get().ExecutablePath();
    EXPECT_TRUE(Platform::Get().ProcessLivesIn(getpid(), wxFileName(program).GetPath()));
    EXPECT_FALSE(Platform::Get().ProcessLivesIn(getpid(), program.Left(program.length() - 1)));
}

TEST(PosixProcesses, PortTestAndHolderNameTheListener) {
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    socklen_t length = sizeof address;
    const int fd = socket(AF_INET6, SOCK_STREAM, 0);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), length) | listen(fd, 4), 0);
    getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    const int port = ntohs(address.sin6_port);
    EXPECT_TRUE(Platform::Get().IsLocalPortTaken(port, 1000));
    EXPECT_EQ(Platform::Get().DescribePortHolder(port),
              wxString::Format("core_tests (pid %ld)", static_cast<long>(getpid())));
    close(fd);
    EXPECT_FALSE(Platform::Get().IsLocalPortTaken(port, 1000));
    EXPECT_EQ(Platform::Get().DescribePortHolder(port), "");
}
