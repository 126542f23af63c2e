// The accounts part of PosixPlatform: who this process is, and handing folders to the account a
// server runs as.
#include "platform/PosixPlatform.h"

#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

// An account's ids and every group it belongs to.
struct Account {
    uid_t uid = 0;
    gid_t gid = 0;
    std::vector<gid_t> groups;
};

bool LookUp(const wxString& name, Account& account) {
    const std::string bytes = name.utf8_string();
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwnam_r(bytes.c_str(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return false;
    account.uid = found->pw_uid;
    account.gid = found->pw_gid;
    int count = 64;
    account.groups.resize(static_cast<size_t>(count));
    if (getgrouplist(bytes.c_str(), account.gid, account.groups.data(), &count) < 0) {
        account.groups.resize(static_cast<size_t>(count));
        getgrouplist(bytes.c_str(), account.gid, account.groups.data(), &count);
    }
    account.groups.resize(static_cast<size_t>(count));
    return true;
}

// The permission bits decide (access control lists are not consulted).
bool MayEnter(const Account& account, const struct stat& status) {
    if (account.uid == 0)
        return true;
    if (status.st_uid == account.uid)
        return status.st_mode & S_IXUSR;
    for (gid_t group : account.groups)
        if (group == status.st_gid)
            return status.st_mode & S_IXGRP;
    return status.st_mode & S_IXOTH;
}

} // namespace

bool PosixPlatform::IsPrivileged() {
    return geteuid() == 0;
}

bool PosixPlatform::AccountExists(const wxString& account) {
    Account found;
    return LookUp(account, found);
}

wxString PosixPlatform::FolderClosedTo(const wxString& account, const wxString& folder) {
    Account found;
    if (!LookUp(account, found))
        return folder;
    std::filesystem::path way;
    for (const std::filesystem::path& part : std::filesystem::path(folder.utf8_string())) {
        way /= part;
        struct stat status;
        if (stat(way.c_str(), &status) != 0 || !MayEnter(found, status))
            return wxString::FromUTF8(way.string());
    }
    return wxString();
}

// Entries that are the account's already are left alone: a data folder given before costs only
// the walk.
bool PosixPlatform::GiveFolderTo(const wxString& account, const wxString& folder) {
    Account found;
    if (!LookUp(account, found))
        return false;
    auto give = [&found](const std::filesystem::path& path) {
        struct stat status;
        return lstat(path.c_str(), &status) == 0 &&
               ((status.st_uid == found.uid && status.st_gid == found.gid) ||
                lchown(path.c_str(), found.uid, found.gid) == 0);
    };
    const std::filesystem::path top(folder.utf8_string());
    bool given = give(top);
    std::error_code error;
    for (auto entry = std::filesystem::recursive_directory_iterator(top, error);
         !error && entry != std::filesystem::recursive_directory_iterator(); entry.increment(error))
        given = give(entry->path()) && given;
    return given && !error;
}

bool PosixPlatform::OwnsFile(const wxString& path) {
    struct stat status;
    return stat(path.utf8_str(), &status) == 0 && status.st_uid == geteuid();
}

// The sticky bit, as on /tmp: a member of the group adds files and removes only its own.
bool PosixPlatform::LetAccountAddFiles(const wxString& account, const wxString& folder) {
    Account found;
    const std::string path = folder.utf8_string();
    struct stat status;
    if (!LookUp(account, found) || stat(path.c_str(), &status) != 0)
        return false;
    const mode_t wanted = (status.st_mode & 07777) | S_IWGRP | S_IXGRP | S_ISVTX;
    return chown(path.c_str(), static_cast<uid_t>(-1), found.gid) == 0 &&
           chmod(path.c_str(), wanted) == 0;
}
