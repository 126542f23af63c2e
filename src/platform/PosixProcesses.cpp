// Process, processor-time and socket services of PosixPlatform, read from /proc.
#include "platform/PosixChildProcess.h"
#include "platform/PosixPlatform.h"
#include "platform/UnixSocketAddress.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <netdb.h>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

// Numeric entries of a /proc-like folder with their inode numbers.
std::vector<ProcessListing> NumericEntriesWithInodes(const std::string& folder) {
    std::vector<ProcessListing> entries;
    DIR* dir = opendir(folder.c_str());
    if (!dir)
        return entries;
    while (dirent* entry = readdir(dir)) {
        char* end = nullptr;
        long number = std::strtol(entry->d_name, &end, 10);
        if (end != entry->d_name && *end == '\0')
            entries.push_back({number, static_cast<std::uint64_t>(entry->d_ino)});
    }
    closedir(dir);
    return entries;
}

std::vector<long> NumericEntries(const std::string& folder) {
    std::vector<long> numbers;
    for (const ProcessListing& entry : NumericEntriesWithInodes(folder))
        numbers.push_back(entry.pid);
    return numbers;
}

std::string ProcPath(long pid, const char* item) {
    return "/proc/" + std::to_string(pid) + "/" + item;
}

// The start of a small /proc file, read with one system call: the status tick reads thousands of
// them, and stream objects cost several times more than the read itself. A relative path is
// opened from the folder descriptor at (look-ups from /proc's own descriptor are cheaper).
std::string ReadSmallFile(const std::string& path, int at = AT_FDCWD) {
    char buffer[1024];
    const int fd = openat(at, path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return std::string();
    const ssize_t length = read(fd, buffer, sizeof buffer);
    close(fd);
    return length > 0 ? std::string(buffer, static_cast<size_t>(length)) : std::string();
}

std::string ReadFirstLine(const std::string& path) {
    const std::string text = ReadSmallFile(path);
    return text.substr(0, text.find('\n'));
}

std::string AsciiLower(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

// The process state letter from "pid (name) state ...", where the name may hold blanks and
// parentheses; '\0' when the process is gone.
char ReadState(const std::string& pid, int proc) {
    const std::string stat = ReadSmallFile(pid + "/stat", proc);
    const size_t close = stat.rfind(')');
    return close == std::string::npos || close + 2 >= stat.size() ? '\0' : stat[close + 2];
}

bool IsLive(char state) {
    return state != '\0' && state != 'Z' && state != 'X';
}

// Milliseconds since boot on the clock that /proc's start times count on.
std::uint64_t BootClockMs() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 +
           static_cast<std::uint64_t>(now.tv_nsec) / 1000000;
}

std::string ReadLink(const std::string& path) {
    char target[4096];
    ssize_t length = readlink(path.c_str(), target, sizeof target - 1);
    return length > 0 ? std::string(target, static_cast<size_t>(length)) : std::string();
}

// The fields of a /proc/<pid>/stat line after the parenthesised name (which may hold blanks):
// the state comes first.
std::vector<std::string> FieldsAfterName(const std::string& line) {
    size_t close = line.rfind(')');
    std::vector<std::string> fields;
    if (close == std::string::npos)
        return fields;
    std::istringstream in(line.substr(close + 1));
    std::string field;
    while (in >> field)
        fields.push_back(field);
    return fields;
}

std::vector<std::string> StatFields(long pid) {
    return FieldsAfterName(ReadFirstLine(ProcPath(pid, "stat")));
}

std::uint64_t MachineTicks() {
    std::istringstream in(ReadFirstLine("/proc/stat"));
    std::string label;
    in >> label;
    // user nice system idle iowait irq softirq steal; guest time is counted in user already.
    std::uint64_t total = 0, value = 0;
    for (int i = 0; i < 8 && in >> value; ++i)
        total += value;
    return total;
}

bool IsUnder(const wxString& path, const wxString& folder) {
    return path == folder || path.StartsWith(folder + "/");
}

// True when text holds folder as a whole path or the start of one ("/a/b" in "-f /a/b/x.conf", not
// in "/a/bc").
bool MentionsFolder(const std::string& text, const std::string& folder) {
    for (size_t at = text.find(folder); at != std::string::npos; at = text.find(folder, at + 1)) {
        const size_t end = at + folder.size();
        if (end == text.size() || text[end] == '/' || text[end] == '\0' || text[end] == '"')
            return true;
    }
    return false;
}

// Inodes of the listening TCP sockets on port, from a /proc/net/tcp-style table.
std::vector<std::string> ListeningInodes(const std::string& table, int port) {
    std::ifstream in(table);
    std::string line;
    std::getline(in, line); // header
    std::vector<std::string> inodes;
    const std::string listenState = "0A";
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string slot, local, remote, state, queues, timer, retransmits, uid, timeout, inode;
        fields >> slot >> local >> remote >> state >> queues >> timer >> retransmits >> uid >>
            timeout >> inode;
        size_t colon = local.rfind(':');
        if (state != listenState || colon == std::string::npos)
            continue;
        if (std::stol(local.substr(colon + 1), nullptr, 16) == port)
            inodes.push_back(inode);
    }
    return inodes;
}

bool HoldsSocket(long pid, const std::vector<std::string>& links) {
    std::string fdFolder = ProcPath(pid, "fd");
    for (long fd : NumericEntries(fdFolder)) {
        std::string target = ReadLink(fdFolder + "/" + std::to_string(fd));
        for (const std::string& link : links)
            if (target == link)
                return true;
    }
    return false;
}

// A connection to a free port of the ephemeral range may be given that very port as its own
// and connect to itself: nobody listens there.
bool IsConnectedToItself(int fd) {
    sockaddr_storage local{}, peer{};
    socklen_t localLength = sizeof local, peerLength = sizeof peer;
    return getsockname(fd, reinterpret_cast<sockaddr*>(&local), &localLength) == 0 &&
           getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &peerLength) == 0 &&
           localLength == peerLength && std::memcmp(&local, &peer, localLength) == 0;
}

} // namespace

std::unique_ptr<ChildProcess> PosixPlatform::StartHidden(const ChildSpec& launch) {
    return PosixChildProcess::Start(launch);
}

// The short name in comm is read first (the cheapest file of a process); only a process of a
// wanted name has its state read, to skip zombies.
std::vector<std::vector<long>>
PosixPlatform::FindProcessesByNames(const std::vector<wxString>& names) {
    std::vector<std::string> wanted;
    for (const wxString& name : names)
        wanted.push_back(AsciiLower(name.utf8_string()) + "\n");
    std::vector<std::vector<long>> found(names.size());
    const int proc = open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (proc < 0)
        return found;
    for (long pid : NumericEntries("/proc")) {
        const std::string entry = std::to_string(pid);
        const std::string name = AsciiLower(ReadSmallFile(entry + "/comm", proc));
        for (size_t i = 0; i < wanted.size(); ++i)
            if (name == wanted[i] && IsLive(ReadState(entry, proc)))
                found[i].push_back(pid);
    }
    close(proc);
    return found;
}

// The last field of /proc/loadavg is the last pid given out in this process's pid namespace; it
// speaks for /proc only when /proc is that namespace's (then /proc/self is this process). Going
// round every pid between two looks would take millions of starts.
std::uint64_t PosixPlatform::ProcessTableVersion() {
    static const bool procIsOurs = ReadLink("/proc/self") == std::to_string(getpid());
    if (!procIsOurs)
        return 0;
    const std::string text = ReadSmallFile("/proc/loadavg");
    const size_t blank = text.find_last_of(' ');
    return blank == std::string::npos ? 0
                                      : std::strtoull(text.c_str() + blank + 1, nullptr, 10) + 1;
}

// Every /proc folder is a new inode when a process gets it, so the inode number is the token.
std::vector<ProcessListing> PosixPlatform::ListProcesses() {
    return NumericEntriesWithInodes("/proc");
}

// One read of /proc/<pid>/stat: "pid (name) state ...". The start time, in clock ticks since
// boot, is field 22 of the line (20th after the name).
bool PosixPlatform::ReadProcessFacts(long pid, ProcessFacts& facts) {
    const std::string line = ReadFirstLine(ProcPath(pid, "stat"));
    const std::vector<std::string> fields = FieldsAfterName(line);
    const size_t open = line.find('(');
    if (fields.size() < 20 || open == std::string::npos)
        return false;
    facts.startTime = std::strtoull(fields[19].c_str(), nullptr, 10);
    const std::uint64_t startMs =
        facts.startTime * 1000 / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    const std::uint64_t nowMs = BootClockMs();
    facts.ageMs = nowMs > startMs ? nowMs - startMs : 0;
    facts.name = wxString::FromUTF8(line.substr(open + 1, line.rfind(')') - open - 1));
    facts.live = IsLive(fields[0][0]);
    return true;
}

void PosixPlatform::KillProcess(long pid) {
    if (pid > 0)
        kill(static_cast<pid_t>(pid), SIGKILL);
}

bool PosixPlatform::ReadProcessorTimes(long pid, ProcessorTimes& times) {
    // utime and stime are fields 14 and 15 of the line, 12 and 13 after the state.
    std::vector<std::string> fields = StatFields(pid);
    if (fields.size() < 13)
        return false;
    times.process = std::stoull(fields[11]) + std::stoull(fields[12]);
    times.machine = MachineTicks();
    return true;
}

bool PosixPlatform::ProcessLivesIn(long pid, const wxString& folder) {
    wxString root = folder;
    while (root.length() > 1 && root.EndsWith("/"))
        root.RemoveLast();
    if (IsUnder(wxString::FromUTF8(ReadLink(ProcPath(pid, "cwd"))), root) ||
        IsUnder(wxString::FromUTF8(ReadLink(ProcPath(pid, "exe"))), root))
        return true;
    std::ifstream in(ProcPath(pid, "cmdline"), std::ios::binary);
    const std::string commandLine((std::istreambuf_iterator<char>(in)),
                                  std::istreambuf_iterator<char>());
    return MentionsFolder(commandLine, root.utf8_string());
}

bool PosixPlatform::IsLocalPortTaken(int port, int timeoutMs) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* address = nullptr;
    if (getaddrinfo("localhost", std::to_string(port).c_str(), &hints, &address) != 0)
        return false;
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    bool connected = false;
    if (fd >= 0) {
        int result = connect(fd, address->ai_addr, address->ai_addrlen);
        if (result == 0) {
            connected = true;
        } else if (errno == EINPROGRESS) {
            pollfd wait{fd, POLLOUT, 0};
            int error = 0;
            socklen_t length = sizeof error;
            connected = poll(&wait, 1, timeoutMs) == 1 &&
                        getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
        }
        connected = connected && !IsConnectedToItself(fd);
        close(fd);
    }
    freeaddrinfo(address);
    return connected;
}

bool PosixPlatform::MayListenOn(int port) {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return true;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool refused =
        bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 && errno == EACCES;
    close(fd);
    return !refused;
}

bool PosixPlatform::HasIpv6Loopback() {
    int fd = socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    const bool bound = bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    return bound;
}

bool PosixPlatform::IsLocalSocketAccepting(const wxString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (!FillUnixSocketPath(path, address))
        return false;
    int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool connected =
        fd >= 0 && connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    if (fd >= 0)
        close(fd);
    return connected;
}

wxString PosixPlatform::DescribePortHolder(int port) {
    std::vector<std::string> links;
    for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"})
        for (const std::string& inode : ListeningInodes(table, port))
            links.push_back("socket:[" + inode + "]");
    if (links.empty())
        return wxString();
    // The lowest pid: with forking servers the parent that opened the socket.
    std::vector<long> pids = NumericEntries("/proc");
    std::sort(pids.begin(), pids.end());
    for (long pid : pids) {
        if (HoldsSocket(pid, links)) {
            wxString name = wxString::FromUTF8(ReadFirstLine(ProcPath(pid, "comm")));
            return wxString::Format("%s (pid %ld)", name, pid);
        }
    }
    return wxString();
}
