#pragma once

#include "platform/Platform.h"

// Linux implementation: /proc for processes and sockets, fork/exec for children, xdg-open for
// the desktop.
class PosixPlatform : public Platform {
public:
    wxString ExecutablePath() override;
    void UseUtf8Texts() override;
    wxString LoginName() override;
    wxString DefaultUiLanguage() override;
    wxString DefaultTextEditor() override;
    wxString PathListSeparator() override;

    wxString PathSeparator() override;
    wxString ProgramSuffix() override;
    wxString PhpModuleWildcard() override;
    wxString PhpModuleNamePattern() override;
    wxString PhpExtensionNamePattern() override;
    wxString ProgramFileFilter() override;

    std::unique_ptr<ChildProcess> StartHidden(const ChildSpec& launch) override;
    std::unique_ptr<DataChild> StartDataChild(const std::vector<wxString>& argv,
                                              const wxString& errorFile) override;
    std::vector<std::vector<long>>
    FindProcessesByNames(const std::vector<wxString>& names) override;
    std::uint64_t ProcessTableVersion() override;
    std::vector<ProcessListing> ListProcesses() override;
    bool ReadProcessFacts(long pid, ProcessFacts& facts) override;
    void KillProcess(long pid) override;
    bool ReadProcessorTimes(long pid, ProcessorTimes& times) override;
    bool ProcessLivesIn(long pid, const wxString& folder) override;

    bool IsPrivileged() override;
    bool AccountExists(const wxString& account) override;
    wxString FolderClosedTo(const wxString& account, const wxString& folder) override;
    bool GiveFolderTo(const wxString& account, const wxString& folder) override;
    bool OwnsFile(const wxString& path) override;
    bool LetAccountAddFiles(const wxString& account, const wxString& folder) override;

    bool IsLocalPortTaken(int port, int timeoutMs) override;
    bool IsLocalSocketAccepting(const wxString& path) override;
    bool MayListenOn(int port) override;
    bool HasIpv6Loopback() override;
    wxString DescribePortHolder(int port) override;

    bool FileModificationTime(const wxString& path, std::int64_t& milliseconds) override;
    bool ReplaceFile(const wxString& from, const wxString& to) override;
    bool SaveFileAtomically(const wxString& path, const std::string& bytes) override;
    std::unique_ptr<FileLock> LockFile(const wxString& path) override;

    bool OpenUrl(const wxString& url) override;
    bool OpenFolder(const wxString& folder) override;
    bool OpenProgram(const wxString& program, const wxString& argument) override;
};
