#include "support/TestTree.h"

#include "platform/Platform.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <random>
#include <signal.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

// The assembled tree is kept between test programs, one per digest of the assembler and stack/
// (older ones removed); the lock makes programs running at once assemble only once. The copy
// gets the MySQL port ($3) and a kovix.ini with the Apache port ($2) and the first PHP version.
const char* const Setup = R"sh(set -eo pipefail
cache="${TMPDIR:-/tmp}/kovix-test-trees-$(id -u)"; mkdir -p "$cache"; exec 9>"$cache/lock"; flock 9
key=$(cd "$0" && tar --sort=name --mtime=@0 --owner=0 --group=0 --numeric-owner -cf - \
  scripts/assemble-tree.sh stack | md5sum | cut -c1-16)
tree="$cache/tree-$key"
if [ ! -e "$tree.ready" ]; then
  rm -rf "$cache"/tree-*
  bash "$0/scripts/assemble-tree.sh" "$tree" || { rm -rf "$tree"; exit 1; }
  touch "$tree.ready"
fi
mkdir -p "$(dirname "$1")"; cp -a "$tree" "$1"
sed -i -E "s/^port *= *[0-9]+/port=$3/" "$1/mysql/my_source.ini"
php=$(cd "$1/apache" && ls -d php_* | LC_ALL=C sort | head -n1)
printf 'APACHE_PORT = "%s"\nPHP_CURRENT_VERSION = "%s"\n' "$2" "$php" >"$1/kovix.ini")sh";

std::vector<long> AllPids() {
    std::vector<long> pids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos)
            pids.push_back(std::stol(name));
    }
    return pids;
}

std::string ReadLine(long pid, const char* file) {
    std::string line;
    std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/" + file), line);
    return line;
}

// State letter from /proc/<pid>/stat, 0 when the process is gone; the parent pid in parent.
char StateOf(long pid, long& parent) {
    const std::string line = ReadLine(pid, "stat");
    const size_t close = line.rfind(')');
    char state = 0;
    if (close != std::string::npos)
        std::istringstream(line.substr(close + 1)) >> state >> parent;
    return state;
}

} // namespace

TestTree::TestTree(const wxString& sourceDir, const wxString& name)
    : root(folder.Path() + "/" + name), scope("KOVIX_PROCESS_SCOPE", root) {
    // Apache started by root serves as www-data, which must enter the folders above the tree.
    std::filesystem::permissions(folder.Path().utf8_string(), std::filesystem::perms::others_exec,
                                 std::filesystem::perm_options::add);
    apachePort = FreePort();
    do
        mysqlPort = FreePort();
    while (mysqlPort == apachePort);
    const CommandResult setup =
        RunCommand({"bash", "-c", Setup, sourceDir, root, wxString::Format("%d", apachePort),
                    wxString::Format("%d", mysqlPort)});
    if (setup.exitCode != 0)
        throw std::runtime_error("cannot make the test tree:\n" + setup.err.utf8_string());
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

// Kills every process of the tree and waits until none is left; the folder goes afterwards.
TestTree::~TestTree() {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (auto pids = Processes(); !pids.empty() && std::chrono::steady_clock::now() < giveUp;
         pids = Processes()) {
        for (long pid : pids)
            kill(static_cast<pid_t>(pid), SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ReapEndedServers();
}

CommandResult TestTree::Ctl(const wxString& kovixctlPath, std::vector<wxString> arguments) const {
    arguments.insert(arguments.begin(), {kovixctlPath, "--root", root});
    CommandResult result = RunCommand(arguments);
    ReapEndedServers();
    return result;
}

std::vector<long> TestTree::Processes() const {
    std::vector<long> found;
    for (const ProcessState& process : ProcessesNamed(""))
        if (process.state != 'Z' && process.pid != getpid())
            found.push_back(process.pid);
    return found;
}

std::vector<TestTree::ProcessState> TestTree::ProcessesNamed(const wxString& name) const {
    std::vector<ProcessState> found;
    for (long pid : AllPids()) {
        long parent = 0;
        const bool named = name.empty() || ReadLine(pid, "comm") == name.utf8_string();
        const char state = named ? StateOf(pid, parent) : 0;
        // A zombie has no folders left to look at: it is the tree's when this process is its
        // parent (it started or adopted it).
        if (state == 'Z' ? parent == getpid() : state && Platform::Get().ProcessLivesIn(pid, root))
            found.push_back({pid, state});
    }
    return found;
}

void TestTree::ReapEndedServers() {
    for (long pid : AllPids()) {
        long parent = 0;
        const std::string comm = ReadLine(pid, "comm");
        if (StateOf(pid, parent) == 'Z' && parent == getpid() &&
            (comm == "httpd" || comm == "mysqld" || comm == "mysqladmin"))
            waitpid(static_cast<pid_t>(pid), nullptr, WNOHANG);
    }
}

// Below the system's range of automatic ports (32768 and up), so that no client connection of
// this machine is given the port before the server takes it.
int TestTree::FreePort() {
    static std::mt19937 random{std::random_device{}()};
    for (int attempt = 0; attempt < 100; ++attempt) {
        const int port = std::uniform_int_distribution<int>(20000, 32767)(random);
        const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(port));
        const bool free = bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        close(fd);
        if (free)
            return port;
    }
    throw std::runtime_error("no free port");
}
