#pragma once

#include <wx/log.h>
#include <wx/string.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// What a hidden child needs to start: the whole command line (executable first, unquoted; quoted
// arguments may contain blanks), its working folder and the changes to the inherited environment.
struct ChildSpec {
    wxString commandLine;
    wxString workingFolder;
    wxString pathPrefix; // put in front of PATH for the child only
    // Searched first for the child's shared libraries (a portable tree carries its own); empty
    // leaves the search as inherited.
    wxString libraryFolder;
    std::vector<std::pair<wxString, wxString>> environment; // set (or, with empty value, emptied)
};

// A started child with its output pipe (stdout and stderr together) and its input pipe.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;
    virtual long Pid() const = 0;
    // Asks the system whether the child still runs; reaps it once it has ended.
    virtual bool IsActive() = 0;
    // Everything the child has written so far and not yet read; never blocks.
    virtual wxString ReadOutput() = 0;
};

// A child that a worker feeds and drains: its standard input and output are blocking pipes that
// carry data (a database dump, a load); its standard error goes to a file read afterwards.
// Destruction kills a child still running and reaps it.
class DataChild {
public:
    virtual ~DataChild() = default;
    // Reads up to size bytes of the child's output: the count, 0 at its end, -1 on failure.
    virtual long Read(char* buffer, size_t size) = 0;
    // Writes every byte to the child's input; false when the child no longer reads it.
    virtual bool Write(const char* data, size_t size) = 0;
    // Ends the child's input, so that it sees the end of its data.
    virtual void CloseInput() = 0;
    // Waits until the child ends: its exit code, -1 when a signal ended it.
    virtual int Wait() = 0;
};

// An exclusive lock on a file, held by this process until the object is destroyed.
class FileLock {
public:
    virtual ~FileLock() = default;
};

// Cumulative processor time of one process and of the whole machine, in clock ticks.
struct ProcessorTimes {
    std::uint64_t process = 0;
    std::uint64_t machine = 0;
};

// One entry of the process table as a single pass lists it, before anything of the process is
// read. The token changes when the pid is given to another process (Linux: the inode number of the
// process's /proc folder, new for each process), so a cache can skip a process it has seen.
struct ProcessListing {
    long pid = 0;
    std::uint64_t token = 0;
};

// What a lookup by name reads of one process. The pid and the start time (in the system's own
// units) together name one process: a reused pid comes with another start time.
struct ProcessFacts {
    std::uint64_t startTime = 0;
    std::uint64_t ageMs = 0;
    wxString name;     // the executable's file name, as FindProcessesByNames compares it
    bool live = false; // false for a zombie
};

// The operating-system services the panel needs beyond wxWidgets. One implementation per system;
// nothing outside src/platform asks the system directly.
class Platform {
public:
    virtual ~Platform() = default;
    static Platform& Get();

    // The system's words for why the last failed call of this thread failed ("Permission
    // denied"). Meaningful right after a call of this interface or of wxWidgets answered failure:
    // the implementations keep the system's error of the step that failed.
    static wxString LastFailureReason() { return wxSysErrorMsgStr(wxSysErrorCode()); }

    // Identity and defaults.
    // The absolute path of the running executable, symbolic links resolved.
    virtual wxString ExecutablePath() = 0;
    // Makes file names and narrow texts UTF-8 for the rest of the run, whatever the locale; once,
    // at start-up. Nothing to do where the system's file names are wide characters.
    virtual void UseUtf8Texts() {}
    virtual wxString LoginName() = 0;
    // The user's interface language as a lower-case two-letter code ("en", "fr", ...), or "".
    virtual wxString DefaultUiLanguage() = 0;
    virtual wxString DefaultTextEditor() = 0;
    // Separator between PATH entries (":" here, ";" on Windows).
    virtual wxString PathListSeparator() = 0;

    // Names in the stack tree.
    // Separator the tree's paths are joined with ("/" here, "\\" on Windows).
    virtual wxString PathSeparator() = 0;
    // Ending of program files ("" here, ".exe" on Windows): "httpd" + it is Apache's file name.
    virtual wxString ProgramSuffix() = 0;
    // Wildcard of a PHP version's Apache module file, and the regular expression whose first
    // group, followed by "_module", is the module's name in LoadModule.
    virtual wxString PhpModuleWildcard() = 0;
    virtual wxString PhpModuleNamePattern() = 0;
    // Regular expression whose first group is the extension name of an extension file.
    virtual wxString PhpExtensionNamePattern() = 0;
    // File-dialog filter for choosing a program ("Label|wildcard").
    virtual wxString ProgramFileFilter() = 0;

    // Processes.
    virtual std::unique_ptr<ChildProcess> StartHidden(const ChildSpec& launch) = 0;
    // Starts argv (no shell, found on PATH); nullptr when it cannot be run.
    virtual std::unique_ptr<DataChild> StartDataChild(const std::vector<wxString>& argv,
                                                      const wxString& errorFile) = 0;
    // For each name, the live processes whose executable name equals it, ignoring case; one pass
    // over the process table serves every name. Zombies are skipped.
    virtual std::vector<std::vector<long>>
    FindProcessesByNames(const std::vector<wxString>& names) = 0;
    std::vector<long> FindProcessesByName(const wxString& name) {
        return FindProcessesByNames({name}).front();
    }
    // A number that changes whenever a process gets a pid (so also when a pid is reused), for a
    // caller to skip listing a table that cannot have new processes; 0 where the system cannot
    // tell, and the caller lists every time.
    virtual std::uint64_t ProcessTableVersion() { return 0; }
    // Every process of the table, cheaply: nothing of a process is read.
    virtual std::vector<ProcessListing> ListProcesses() = 0;
    // Reads one process's facts; false when it is gone or cannot be read.
    virtual bool ReadProcessFacts(long pid, ProcessFacts& facts) = 0;
    virtual void KillProcess(long pid) = 0;
    virtual bool ReadProcessorTimes(long pid, ProcessorTimes& times) = 0;
    // True when the process's working folder, executable or command line lies in folder.
    virtual bool ProcessLivesIn(long pid, const wxString& folder) = 0;

    // Accounts. A server started by the administrator is handed to an unprivileged account.
    // True when this process has the administrator's rights (root).
    virtual bool IsPrivileged() = 0;
    virtual bool AccountExists(const wxString& account) = 0;
    // The first folder on the way to folder (itself included) that account may not enter; ""
    // when it reaches folder.
    virtual wxString FolderClosedTo(const wxString& account, const wxString& folder) = 0;
    // Makes folder and everything in it (links not followed) the account's. False when the
    // system refuses.
    virtual bool GiveFolderTo(const wxString& account, const wxString& folder) = 0;
    // Whether path belongs to the account this process runs as (always, where files have no
    // owner that keeps others from writing).
    virtual bool OwnsFile(const wxString& path) = 0;
    // Lets account add files of its own to folder, which stays its owner's, without the right
    // to remove or replace the files of others. False when the system refuses.
    virtual bool LetAccountAddFiles(const wxString& account, const wxString& folder) = 0;

    // Network.
    // True when something accepts a connection on localhost:port within timeoutMs.
    virtual bool IsLocalPortTaken(int port, int timeoutMs) = 0;
    // True when something accepts a connection on the local (Unix) socket file at path.
    virtual bool IsLocalSocketAccepting(const wxString& path) = 0;
    // False when this process is not allowed to listen on the port (a port below 1024 without
    // the right to bind it); a port merely in use answers true.
    virtual bool MayListenOn(int port) = 0;
    // True when this machine has the IPv6 loopback address ::1 (containers often have none).
    virtual bool HasIpv6Loopback() = 0;
    // Name and pid of the process listening on the port, e.g. "nginx (pid 812)"; "" when unseen.
    virtual wxString DescribePortHolder(int port) = 0;

    // Files.
    // Last modification time of path in milliseconds since the epoch; false when it cannot be read.
    virtual bool FileModificationTime(const wxString& path, std::int64_t& milliseconds) = 0;
    // Puts the file from in the place of to in one step: a reader sees the old or the new file,
    // never none. False (both left as they are) when the system refuses.
    virtual bool ReplaceFile(const wxString& from, const wxString& to) = 0;
    // Replaces the contents of the file at path with bytes, never leaving it half-written: they go
    // to a scratch file of a name no other save uses, beside the file, flushed to disk, with the
    // file's permission bits and owner, then put in its place by ReplaceFile. A symbolic link is
    // followed, so its target gets the new contents and the link stays. False, with the file
    // untouched and no scratch file left, on any failure.
    virtual bool SaveFileAtomically(const wxString& path, const std::string& bytes) = 0;
    // Waits until this process holds the exclusive lock of path, creating the file when missing
    // and allowed; nullptr when the file can be neither opened nor created. Advisory: it only
    // keeps out whoever asks for the same lock.
    virtual std::unique_ptr<FileLock> LockFile(const wxString& path) = 0;

    // Desktop.
    virtual bool OpenUrl(const wxString& url) = 0;
    virtual bool OpenFolder(const wxString& folder) = 0;
    virtual bool OpenProgram(const wxString& program, const wxString& argument) = 0;
};
