#include "platform/PosixPlatform.h"

#include <wx/stdpaths.h>
#include <wx/utils.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

Platform& Platform::Get() {
    static PosixPlatform platform;
    return platform;
}

// The kernel's own record of the running file: absolute, links resolved, whatever argv[0] and the
// working folder were. Its bytes are taken as UTF-8 whatever the locale says.
wxString PosixPlatform::ExecutablePath() {
    std::string bytes(PATH_MAX, '\0');
    const ssize_t length = readlink("/proc/self/exe", bytes.data(), bytes.size());
    if (length <= 0 || static_cast<size_t>(length) == bytes.size())
        return wxStandardPaths::Get().GetExecutablePath();
    bytes.resize(static_cast<size_t>(length));
    return wxString::FromUTF8(bytes);
}

// wxWidgets turns file names and narrow texts into characters through LC_CTYPE; under "C" or
// "POSIX" that reads "Überprojekt" as Latin-1 and writes it back as other bytes. Only the character
// type changes: the user's language is still read from the environment.
void PosixPlatform::UseUtf8Texts() {
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
}

wxString PosixPlatform::LoginName() {
    wxString name = wxGetUserId();
    return name.empty() ? wxString::Format("uid%ld", static_cast<long>(getuid())) : name;
}

// The first non-empty of the locale variables, in the order the C library consults them.
wxString PosixPlatform::DefaultUiLanguage() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value && *value)
            return wxString(value).Left(2).Lower();
    }
    return wxString();
}

wxString PosixPlatform::DefaultTextEditor() {
    return "xdg-open";
}

wxString PosixPlatform::PathListSeparator() {
    return ":";
}

wxString PosixPlatform::PathSeparator() {
    return "/";
}

wxString PosixPlatform::ProgramSuffix() {
    return wxString();
}

// The tree links Debian's Apache 2.4 module as "phpapache2_4.so" (module "php_module").
wxString PosixPlatform::PhpModuleWildcard() {
    return "*apache2_4.so";
}

wxString PosixPlatform::PhpModuleNamePattern() {
    return "(.*)apache2_4.so";
}

wxString PosixPlatform::PhpExtensionNamePattern() {
    return "php_(.*).so";
}

wxString PosixPlatform::ProgramFileFilter() {
    return "Application (*)|*";
}

// stat's nanosecond field: wxFileName only reports whole seconds here.
bool PosixPlatform::FileModificationTime(const wxString& path, std::int64_t& milliseconds) {
    struct stat status;
    if (stat(path.fn_str(), &status) != 0)
        return false;
    milliseconds =
        static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
    return true;
}

// rename(2) replaces the target atomically; the old file stays until the new one is whole.
bool PosixPlatform::ReplaceFile(const wxString& from, const wxString& to) {
    return std::rename(from.fn_str(), to.fn_str()) == 0;
}

namespace {

// flock on a descriptor of its own: the lock ends with the descriptor, also when the process dies.
class PosixFileLock : public FileLock {
public:
    explicit PosixFileLock(int fd) : fd(fd) {}
    ~PosixFileLock() override { close(fd); }

private:
    int fd;
};

} // namespace

std::unique_ptr<FileLock> PosixPlatform::LockFile(const wxString& path) {
    const std::string name = path.utf8_string();
    int fd = open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0)
        fd = open(name.c_str(), O_RDONLY | O_CLOEXEC); // a read-only tree is still locked
    if (fd < 0)
        return nullptr;
    while (flock(fd, LOCK_EX) != 0 && errno == EINTR) {
    }
    return std::make_unique<PosixFileLock>(fd);
}

namespace {

// Starts argv detached from the panel (own session, no terminal), without waiting for it.
bool SpawnDetached(const std::vector<std::string>& argv) {
    pid_t pid = fork();
    if (pid < 0)
        return false;
    if (pid == 0) {
        setsid();
        if (fork() != 0)
            _exit(0);
        std::vector<char*> args;
        for (const std::string& arg : argv)
            args.push_back(const_cast<char*>(arg.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return true;
}

} // namespace

bool PosixPlatform::OpenUrl(const wxString& url) {
    return SpawnDetached({"xdg-open", url.utf8_string()});
}

bool PosixPlatform::OpenFolder(const wxString& folder) {
    return SpawnDetached({"xdg-open", folder.utf8_string()});
}

bool PosixPlatform::OpenProgram(const wxString& program, const wxString& argument) {
    std::vector<std::string> argv{program.utf8_string()};
    if (!argument.empty())
        argv.push_back(argument.utf8_string());
    return SpawnDetached(argv);
}
