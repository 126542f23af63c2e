// Process, processor-time and socket services of Win32Platform.
#include "platform/UnixSocketAddress.h"
#include "platform/Win32ChildProcess.h"
#include "platform/Win32Platform.h"

#include <afunix.h>
#include <iphlpapi.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

// Closes a process handle when it goes out of scope.
class ProcessHandle {
public:
    ProcessHandle(long pid, DWORD rights)
        : handle(OpenProcess(rights, FALSE, static_cast<DWORD>(pid))) {}
    ~ProcessHandle() {
        if (handle)
            CloseHandle(handle);
    }
    ProcessHandle(const ProcessHandle&) = delete;
    ProcessHandle& operator=(const ProcessHandle&) = delete;

    explicit operator bool() const { return handle != nullptr; }
    HANDLE Get() const { return handle; }

private:
    HANDLE handle;
};

const DWORD QUERY_RIGHTS = PROCESS_QUERY_INFORMATION | PROCESS_VM_READ;

// Every process id of the system; the table grows until one call leaves room to spare.
std::vector<DWORD> AllProcessIds() {
    std::vector<DWORD> ids(1024);
    for (;;) {
        DWORD bytes = 0;
        if (!EnumProcesses(ids.data(), ids.size() * sizeof(DWORD), &bytes))
            return {};
        if (bytes < ids.size() * sizeof(DWORD)) {
            ids.resize(bytes / sizeof(DWORD));
            return ids;
        }
        ids.resize(ids.size() * 2);
    }
}

bool IsRunning(HANDLE process) {
    DWORD code = 0;
    return GetExitCodeProcess(process, &code) && code == STILL_ACTIVE;
}

// Full path of the process's first module, its executable; "" when it cannot be read.
wxString ExecutableOf(HANDLE process) {
    HMODULE module = nullptr;
    DWORD needed = 0;
    wchar_t path[MAX_PATH] = L"";
    if (!EnumProcessModules(process, &module, sizeof module, &needed) ||
        GetModuleFileNameExW(process, module, path, MAX_PATH) == 0)
        return wxString();
    return wxString(path);
}

wxString FileNameOf(const wxString& path) {
    return path.AfterLast('\\');
}

std::uint64_t Ticks(const FILETIME& time) {
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

// Winsock is started once for the whole program and never stopped.
bool StartWinsock() {
    static const bool started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return started;
}

// Closes a socket when it goes out of scope.
class Socket {
public:
    Socket(int family, int type)
        : handle(StartWinsock() ? socket(family, type, 0) : INVALID_SOCKET) {}
    ~Socket() {
        if (handle != INVALID_SOCKET)
            closesocket(handle);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    explicit operator bool() const { return handle != INVALID_SOCKET; }
    SOCKET Get() const { return handle; }

private:
    SOCKET handle;
};

bool WaitForConnection(SOCKET socket, int timeoutMs) {
    fd_set writable, failed;
    FD_ZERO(&writable);
    FD_ZERO(&failed);
    FD_SET(socket, &writable);
    FD_SET(socket, &failed);
    timeval timeout{timeoutMs / 1000, (timeoutMs % 1000) * 1000};
    if (select(0, nullptr, &writable, &failed, &timeout) != 1 || !FD_ISSET(socket, &writable))
        return false;
    int error = 0;
    int length = sizeof error;
    return getsockopt(socket, SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &length) ==
               0 &&
           error == 0;
}

bool Connects(const addrinfo& address, int timeoutMs) {
    Socket client(AF_INET, SOCK_STREAM);
    if (!client)
        return false;
    u_long nonBlocking = 1;
    ioctlsocket(client.Get(), FIONBIO, &nonBlocking);
    if (connect(client.Get(), address.ai_addr, static_cast<int>(address.ai_addrlen)) == 0)
        return true;
    return WSAGetLastError() == WSAEWOULDBLOCK && WaitForConnection(client.Get(), timeoutMs);
}

// The owner of a listening TCP socket on port in the table of one address family; 0 when none.
template <typename Table> DWORD ListenerIn(ULONG family, int port) {
    DWORD size = 0;
    GetExtendedTcpTable(nullptr, &size, FALSE, family, TCP_TABLE_OWNER_PID_LISTENER, 0);
    std::vector<char> buffer(size + 1024);
    size = buffer.size();
    if (GetExtendedTcpTable(buffer.data(), &size, FALSE, family, TCP_TABLE_OWNER_PID_LISTENER, 0) !=
        NO_ERROR)
        return 0;
    const Table* table = reinterpret_cast<const Table*>(buffer.data());
    for (DWORD i = 0; i < table->dwNumEntries; ++i)
        if (ntohs(static_cast<u_short>(table->table[i].dwLocalPort)) == port)
            return table->table[i].dwOwningPid;
    return 0;
}

} // namespace

std::unique_ptr<ChildProcess> Win32Platform::StartHidden(const ChildSpec& launch) {
    return Win32ChildProcess::Start(launch);
}

// Processes that cannot be opened (other users', the system's) are skipped, as are those that
// have ended while somebody still holds a handle to them.
std::vector<std::vector<long>>
Win32Platform::FindProcessesByNames(const std::vector<wxString>& names) {
    std::vector<std::vector<long>> found(names.size());
    for (DWORD pid : AllProcessIds()) {
        ProcessHandle process(pid, QUERY_RIGHTS);
        if (!process || !IsRunning(process.Get()))
            continue;
        const wxString name = FileNameOf(ExecutableOf(process.Get()));
        for (size_t i = 0; i < names.size(); ++i)
            if (!name.empty() && name.CmpNoCase(names[i]) == 0)
                found[i].push_back(static_cast<long>(pid));
    }
    return found;
}

// The snapshot names every process without opening it. A reused pid usually comes with another
// parent or program, which changes the token; one that does not keeps its name, and a lookup
// reads the facts of every process of a wanted name anyway.
std::vector<ProcessListing> Win32Platform::ListProcesses() {
    std::vector<ProcessListing> listed;
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return listed;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more;
         more = Process32NextW(snapshot, &entry)) {
        std::uint64_t token = entry.th32ParentProcessID; // FNV-1a over the parent and the name
        for (const wchar_t* c = entry.szExeFile; *c; ++c)
            token = (token ^ static_cast<std::uint64_t>(*c)) * 1099511628211ULL;
        listed.push_back({static_cast<long>(entry.th32ProcessID), token});
    }
    CloseHandle(snapshot);
    return listed;
}

// The start time is the creation time in 100 ns units. A process that cannot be opened (another
// user's, the system's) is not read, as FindProcessesByNames skips it.
bool Win32Platform::ReadProcessFacts(long pid, ProcessFacts& facts) {
    ProcessHandle process(pid, QUERY_RIGHTS);
    FILETIME created, exited, kernel, user, now;
    if (!process || !GetProcessTimes(process.Get(), &created, &exited, &kernel, &user))
        return false;
    GetSystemTimeAsFileTime(&now);
    facts.startTime = Ticks(created);
    facts.ageMs = Ticks(now) > facts.startTime ? (Ticks(now) - facts.startTime) / 10000 : 0;
    facts.name = FileNameOf(ExecutableOf(process.Get()));
    facts.live = IsRunning(process.Get());
    return true;
}

void Win32Platform::KillProcess(long pid) {
    ProcessHandle process(pid, PROCESS_TERMINATE);
    if (process)
        TerminateProcess(process.Get(), 1);
}

// Kernel and user time of the process against those of the whole machine (the kernel time of
// the system includes its idle time), both in 100 ns units summed over every processor.
bool Win32Platform::ReadProcessorTimes(long pid, ProcessorTimes& times) {
    ProcessHandle process(pid, QUERY_RIGHTS);
    FILETIME created, exited, kernel, user, idle, systemKernel, systemUser;
    if (!process || !GetProcessTimes(process.Get(), &created, &exited, &kernel, &user) ||
        !GetSystemTimes(&idle, &systemKernel, &systemUser))
        return false;
    times.process = Ticks(kernel) + Ticks(user);
    times.machine = Ticks(systemKernel) + Ticks(systemUser);
    return true;
}

// Only the executable counts here: another process's working folder and command line are not
// reachable through the documented API.
bool Win32Platform::ProcessLivesIn(long pid, const wxString& folder) {
    ProcessHandle process(pid, QUERY_RIGHTS);
    if (!process)
        return false;
    wxString root = folder;
    root.Replace("/", "\\");
    while (root.EndsWith("\\"))
        root.RemoveLast();
    const wxString executable = ExecutableOf(process.Get()).Lower();
    return !root.empty() && executable.StartsWith(root.Lower() + "\\");
}

// The lines for the debugger tell how far the test went; nobody else sees them.
bool Win32Platform::IsLocalPortTaken(int port, int timeoutMs) {
    if (!StartWinsock())
        return false;
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* address = nullptr;
    if (getaddrinfo("localhost", std::to_string(port).c_str(), &hints, &address) != 0)
        return false;
    const bool connected = Connects(*address, timeoutMs);
    freeaddrinfo(address);
    OutputDebugStringW(L"TEST1\n");
    if (connected) {
        OutputDebugStringW(L"TEST2\n");
        OutputDebugStringW(L"TEST3\n");
        OutputDebugStringW(L"TEST4\n");
        return true;
    }
    OutputDebugStringW(L"TEST10\n");
    return false;
}

bool Win32Platform::HasIpv6Loopback() {
    Socket probe(AF_INET6, SOCK_STREAM);
    if (!probe)
        return false;
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr.s6_addr[15] = 1; // ::1
    return bind(probe.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

// Windows 10 has Unix sockets too; a tree whose MySQL listens on TCP only never asks.
bool Win32Platform::IsLocalSocketAccepting(const wxString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (!FillUnixSocketPath(path, address))
        return false;
    Socket client(AF_UNIX, SOCK_STREAM);
    return client &&
           connect(client.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

wxString Win32Platform::DescribePortHolder(int port) {
    DWORD pid = ListenerIn<MIB_TCPTABLE_OWNER_PID>(AF_INET, port);
    if (pid == 0)
        pid = ListenerIn<MIB_TCP6TABLE_OWNER_PID>(AF_INET6, port);
    if (pid == 0)
        return wxString();
    ProcessHandle process(pid, PROCESS_QUERY_LIMITED_INFORMATION);
    wchar_t path[MAX_PATH] = L"";
    DWORD length = MAX_PATH;
    const wxString name = process && QueryFullProcessImageNameW(process.Get(), 0, path, &length)
                              ? FileNameOf(wxString(path, length))
                              : wxString("?");
    return wxString::Format("%s (pid %lu)", name, pid);
}
