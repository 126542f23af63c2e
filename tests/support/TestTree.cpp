#include "support/TestTree.h"

#include "platform/Platform.h"

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <random>
#include <regex>
#include <signal.h>
#include <sstream>
#include <stdexcept>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

const char* const ScopeVariable = "KOVIX_PROCESS_SCOPE";
const char* const TreeFolderName = "kovix tree";

// A digest of the assembler and of stack/ (names, modes and bytes): a tree assembled from other
// templates is another tree.
std::string ContentKey(const wxString& sourceDir) {
    const CommandResult digest =
        RunCommand({"bash", "-c",
                    "set -o pipefail; cd \"$0\" && tar --sort=name --mtime=@0 --owner=0 --group=0 "
                    "--numeric-owner -cf - scripts/assemble-tree.sh stack | md5sum",
                    sourceDir});
    if (digest.exitCode != 0)
        throw std::runtime_error("cannot digest the templates: " + digest.err.utf8_string());
    return digest.out.Left(16).utf8_string();
}

// An exclusive lock on a file, held while it lives.
class FileLock {
public:
    explicit FileLock(const std::string& path)
        : fd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
        if (fd < 0 || flock(fd, LOCK_EX) != 0)
            throw std::runtime_error("cannot lock " + path);
    }
    ~FileLock() { close(fd); }

private:
    int fd;
};

// The assembled trees are kept between test programs (ctest runs each test as a program of its
// own) in one folder of the system's temporary folder, one tree per content key; a tree of an
// older key is removed when a new one is made. The lock makes programs running at once assemble
// only once, and keeps a tree from being replaced while it is copied.
void CopyAssembledTree(const wxString& sourceDir, const wxString& to) {
    const std::string cache = std::filesystem::temp_directory_path().string() +
                              "/kovix-test-trees-" + std::to_string(getuid());
    std::filesystem::create_directories(cache);
    FileLock lock(cache + "/lock");
    const std::string tree = cache + "/tree-" + ContentKey(sourceDir);
    if (!std::filesystem::exists(tree + ".ready")) {
        for (const auto& entry : std::filesystem::directory_iterator(cache))
            if (entry.path().filename().string().rfind("tree-", 0) == 0)
                std::filesystem::remove_all(entry.path());
        CommandResult result =
            RunCommand({"bash", sourceDir + "/scripts/assemble-tree.sh", wxString::FromUTF8(tree)});
        if (result.exitCode != 0) {
            std::filesystem::remove_all(tree);
            throw std::runtime_error("assemble-tree.sh failed:\n" + result.err.utf8_string());
        }
        std::ofstream(tree + ".ready").put('\n');
    }
    CommandResult copy = RunCommand({"cp", "-a", wxString::FromUTF8(tree), to});
    if (copy.exitCode != 0)
        throw std::runtime_error("cannot copy the test tree: " + copy.err.utf8_string());
}

void SetMysqlPort(const wxString& root, int port) {
    const wxString path = root + "/mysql/my_source.ini";
    WriteBytes(path, std::regex_replace(ReadBytes(path), std::regex("(^|\n)port *= *[0-9]+"),
                                        "$1port=" + std::to_string(port)));
}

std::string FirstPhpVersion(const wxString& root) {
    std::vector<std::string> versions;
    for (const auto& entry : std::filesystem::directory_iterator((root + "/apache").utf8_string()))
        if (entry.is_directory() && entry.path().filename().string().rfind("php_", 0) == 0)
            versions.push_back(entry.path().filename().string());
    std::sort(versions.begin(), versions.end());
    return versions.empty() ? std::string() : versions.front();
}

std::vector<long> AllPids() {
    std::vector<long> pids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (!name.empty() && name.find_first_not_of("0123456789") == std::string::npos)
            pids.push_back(std::stol(name));
    }
    return pids;
}

std::string ReadLine(const std::string& path) {
    std::ifstream in(path);
    std::string line;
    std::getline(in, line);
    return line;
}

// State letter and parent pid from /proc/<pid>/stat; state 0 when the process is gone.
char StateOf(long pid, long* parent = nullptr) {
    const std::string line = ReadLine("/proc/" + std::to_string(pid) + "/stat");
    const size_t close = line.rfind(')');
    if (close == std::string::npos || close + 2 >= line.size())
        return 0;
    std::istringstream fields(line.substr(close + 2));
    char state = 0;
    long ppid = 0;
    fields >> state >> ppid;
    if (parent)
        *parent = ppid;
    return state;
}

bool IsServerName(const std::string& comm) {
    return comm == "httpd" || comm == "mysqld" || comm == "mysqladmin";
}

} // namespace

TestTree::TestTree(const wxString& sourceDir)
    : root(folder.Path() + "/" + TreeFolderName), scope(ScopeVariable, root) {
    // Apache started by root serves as www-data, which must enter the folders above the tree.
    std::filesystem::permissions(folder.Path().utf8_string(), std::filesystem::perms::others_exec,
                                 std::filesystem::perm_options::add);
    CopyAssembledTree(sourceDir, root);
    apachePort = FreePort();
    do
        mysqlPort = FreePort();
    while (mysqlPort == apachePort);
    SetMysqlPort(root, mysqlPort);
    WriteBytes(File("kovix.ini"), "APACHE_PORT = \"" + std::to_string(apachePort) +
                                      "\"\nPHP_CURRENT_VERSION = \"" + FirstPhpVersion(root) +
                                      "\"\n");
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
    for (long pid : AllPids()) {
        const char state = StateOf(pid);
        if (pid != getpid() && state != 0 && state != 'Z' &&
            Platform::Get().ProcessLivesIn(pid, root))
            found.push_back(pid);
    }
    return found;
}

std::vector<TestTree::ProcessState> TestTree::ProcessesNamed(const wxString& name) const {
    std::vector<ProcessState> found;
    for (long pid : AllPids()) {
        const std::string comm = ReadLine("/proc/" + std::to_string(pid) + "/comm");
        if (comm != name.utf8_string())
            continue;
        long parent = 0;
        const char state = StateOf(pid, &parent);
        // A zombie has no folders left to look at: it belongs to the tree when its parent is
        // this process (it started or adopted it).
        const bool ours =
            state == 'Z' ? parent == getpid() : Platform::Get().ProcessLivesIn(pid, root);
        if (state != 0 && ours)
            found.push_back({pid, state});
    }
    return found;
}

void TestTree::ReapEndedServers() {
    for (long pid : AllPids()) {
        long parent = 0;
        if (StateOf(pid, &parent) == 'Z' && parent == getpid() &&
            IsServerName(ReadLine("/proc/" + std::to_string(pid) + "/comm")))
            waitpid(static_cast<pid_t>(pid), nullptr, WNOHANG);
    }
}

// Below the system's range of automatic ports (32768 and up), so that no client connection of
// this machine is given the port before the server takes it.
int TestTree::FreePort() {
    static std::mt19937 random{std::random_device{}()};
    std::uniform_int_distribution<int> ports(20000, 32767);
    for (int attempt = 0; attempt < 100; ++attempt) {
        const int port = ports(random);
        int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_ANY);
        address.sin_port = htons(static_cast<uint16_t>(port));
        const bool free =
            fd >= 0 && bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        if (fd >= 0)
            close(fd);
        if (free)
            return port;
    }
    throw std::runtime_error("no free port");
}
