#pragma once

#include <wx/string.h>

#include <memory>
#include <mutex>

class FileLock;

// The lock of one tree, shared by the panel and kovixctl: whoever saves a file of the tree or
// starts or stops its servers holds it, so two of them never interleave. The constructor waits
// until the lock is free; it is held until the object is destroyed. Within a process it nests
// (a thread that holds it may take it again) and keeps the process's other threads out. A tree
// whose lock file can be neither opened nor created (read-only) is not locked between processes.
// A process works on one tree: a lock taken inside another is only counted.
class TreeLock {
public:
    explicit TreeLock(const wxString& programFolder);
    ~TreeLock();
    TreeLock(const TreeLock&) = delete;
    TreeLock& operator=(const TreeLock&) = delete;

    static wxString LockFilePath(const wxString& programFolder);

private:
    std::unique_lock<std::recursive_mutex> inProcess;
    std::unique_ptr<FileLock> betweenProcesses; // held by the outermost lock only
};
