#include "platform/PosixPlatform.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The file a path names: a symbolic link (or a chain of them) resolved, so that a save writes the
// target and leaves the link; the path itself when it names nothing yet.
std::string SaveTarget(const std::string& path) {
    char resolved[PATH_MAX];
    return realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

// Creates a scratch file beside target under a name that no other save, in this process or
// another, uses at the same moment; -1 when the folder refuses.
int CreateScratch(const std::string& target, std::string& scratch) {
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 100; ++attempt) {
        scratch = target + ".temp-" + std::to_string(getpid()) + "-" + std::to_string(++counter);
        const int fd = open(scratch.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

bool WriteAll(int fd, const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = write(fd, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += static_cast<size_t>(written);
    }
    return true;
}

// The old file's permission bits and owner; a new file keeps what the umask gave it. Changing
// the owner is only possible for root and is not required.
bool KeepAttributes(int fd, const std::string& target) {
    struct stat old;
    if (stat(target.c_str(), &old) != 0)
        return true;
    [[maybe_unused]] const int ownerKept = fchown(fd, old.st_uid, old.st_gid);
    return fchmod(fd, old.st_mode & 07777) == 0;
}

} // namespace

bool PosixPlatform::SaveFileAtomically(const wxString& path, const std::string& bytes) {
    const std::string target = SaveTarget(std::string(path.fn_str()));
    std::string scratch;
    const int fd = CreateScratch(target, scratch);
    if (fd < 0)
        return false;
    bool written = WriteAll(fd, bytes) && KeepAttributes(fd, target) && fsync(fd) == 0;
    written = close(fd) == 0 && written;
    if (written &&
        ReplaceFile(wxString(scratch.c_str(), wxConvFile), wxString(target.c_str(), wxConvFile)))
        return true;
    const int reason = errno; // the caller tells the step's failure, not the clean-up's
    unlink(scratch.c_str());
    errno = reason;
    return false;
}
