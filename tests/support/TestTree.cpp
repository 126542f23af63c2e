#include "support/TestTree.h"

#include "platform/Platform.h"

#include <wx/utils.h>

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
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

std::string MakeTempFolder(const char* prefix) {
    std::string pattern =
        std::filesystem::temp_directory_path().string() + "/" + prefix + "-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("cannot create a temporary folder");
    // Apache started by root serves as www-data, which must enter the folders above the tree.
    std::filesystem::permissions(pattern, std::filesystem::perms::others_exec,
                                 std::filesystem::perm_options::add);
    return pattern;
}

// FNV-1a of the assembler and of every file of stack/ (names and bytes): a tree assembled from
// other templates is another tree.
std::string ContentKey(const wxString& sourceDir) {
    const std::filesystem::path source = sourceDir.utf8_string();
    std::vector<std::filesystem::path> files{source / "scripts/assemble-tree.sh"};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(source / "stack"))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::uint64_t hash = 14695981039346656037ull;
    auto add = [&hash](const std::string& bytes) {
        for (unsigned char byte : bytes)
            hash = (hash ^ byte) * 1099511628211ull;
    };
    for (const auto& file : files) {
        add(file.string());
        std::ifstream in(file, std::ios::binary);
        add(std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()));
    }
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
    return text;
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
    const std::string path = (root + "/mysql/my_source.ini").utf8_string();
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    const std::string changed = std::regex_replace(text.str(), std::regex("(^|\n)port *= *[0-9]+"),
                                                   "$1port=" + std::to_string(port));
    std::ofstream(path, std::ios::trunc) << changed;
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

TestTree::TestTree(const wxString& sourceDir) {
    folder = wxString::FromUTF8(MakeTempFolder("kovix-test"));
    root = folder + "/" + TreeFolderName;
    try {
        CopyAssembledTree(sourceDir, root);
    } catch (...) {
        std::filesystem::remove_all(folder.utf8_string());
        throw;
    }
    apachePort = FreePort();
    do
        mysqlPort = FreePort();
    while (mysqlPort == apachePort);
    SetMysqlPort(root, mysqlPort);
    std::ofstream(File("kovix.ini").utf8_string())
        << "APACHE_PORT = \"" << apachePort << "\"\nPHP_CURRENT_VERSION = \""
        << FirstPhpVersion(root) << "\"\n";

    hadScope = wxGetEnv(ScopeVariable, &previousScope);
    wxSetEnv(ScopeVariable, root);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

TestTree::~TestTree() {
    StopServers();
    if (hadScope)
        wxSetEnv(ScopeVariable, previousScope);
    else
        wxUnsetEnv(ScopeVariable);
    std::error_code ignored;
    std::filesystem::remove_all(folder.utf8_string(), ignored);
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

void TestTree::StopServers() {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (auto pids = Processes(); !pids.empty() && std::chrono::steady_clock::now() < giveUp;
         pids = Processes()) {
        for (long pid : pids)
            kill(static_cast<pid_t>(pid), SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ReapEndedServers();
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
