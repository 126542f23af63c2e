#include "core/TreeLock.h"

#include "platform/Platform.h"

namespace {

std::recursive_mutex& ProcessMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

// How deep the owning thread has nested; guarded by the process mutex.
int depth = 0;

} // namespace

TreeLock::TreeLock(const wxString& programFolder) : inProcess(ProcessMutex()) {
    if (depth++ == 0)
        betweenProcesses = Platform::Get().LockFile(LockFilePath(programFolder));
}

TreeLock::~TreeLock() {
    betweenProcesses.reset();
    --depth;
}

wxString TreeLock::LockFilePath(const wxString& programFolder) {
    return programFolder + Platform::Get().PathSeparator() + "kovix.lock";
}
