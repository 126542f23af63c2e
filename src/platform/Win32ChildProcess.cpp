#include "platform/Win32ChildProcess.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

namespace {

// One variable of the panel's own environment, changed for the moment of a child's creation and
// put back (or removed again) on destruction.
class EnvironmentChange {
public:
    explicit EnvironmentChange(const wxString& name) : name(name.ToStdWstring()) {
        existed = Read();
    }
    ~EnvironmentChange() { SetEnvironmentVariableW(name.c_str(), existed ? old.c_str() : nullptr); }
    EnvironmentChange(const EnvironmentChange&) = delete;
    EnvironmentChange& operator=(const EnvironmentChange&) = delete;

    const std::wstring& OldValue() const { return old; }
    bool Set(const std::wstring& value) {
        if (SetEnvironmentVariableW(name.c_str(), value.c_str()))
            return true;
        std::printf("SetEnvironmentVariable failed (%lu)\n", GetLastError());
        return false;
    }

private:
    // The diagnostic lines go to standard output, which nobody reads in the panel: they are for
    // whoever runs it from a console.
    bool Read() {
        std::vector<wchar_t> buffer(4096);
        SetLastError(ERROR_SUCCESS);
        DWORD length = GetEnvironmentVariableW(name.c_str(), buffer.data(), buffer.size());
        if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
            if (name == L"PATH")
                std::printf("Environment variable does not exist.\n");
            return false;
        }
        if (length > buffer.size()) {
            buffer.resize(length);
            length = GetEnvironmentVariableW(name.c_str(), buffer.data(), buffer.size());
            if (length == 0 || length >= buffer.size()) {
                std::printf("GetEnvironmentVariable failed (%lu)\n", GetLastError());
                return false;
            }
        }
        old.assign(buffer.data(), length);
        return true;
    }

    std::wstring name;
    std::wstring old;
    bool existed = false;
};

// Both ends inheritable (the child gets one of them); the caller makes its own end private.
bool CreateInheritablePipe(HANDLE& readEnd, HANDLE& writeEnd) {
    SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, TRUE};
    return CreatePipe(&readEnd, &writeEnd, &attributes, 0) != 0;
}

void CloseAll(std::initializer_list<HANDLE> handles) {
    for (HANDLE handle : handles)
        if (handle)
            CloseHandle(handle);
}

// The environment is the process's own, shared by every thread: one creation at a time.
std::mutex creationLock;

bool CreateHidden(const ChildSpec& launch, HANDLE input, HANDLE output, PROCESS_INFORMATION& info) {
    std::lock_guard<std::mutex> lock(creationLock);
    std::vector<std::unique_ptr<EnvironmentChange>> changes;
    if (!launch.pathPrefix.empty()) {
        changes.push_back(std::make_unique<EnvironmentChange>("PATH"));
        if (!changes.back()->Set(launch.pathPrefix.ToStdWstring() + changes.back()->OldValue()))
            return false;
    }
    for (const auto& [name, value] : launch.environment) {
        changes.push_back(std::make_unique<EnvironmentChange>(name));
        if (!changes.back()->Set(value.ToStdWstring()))
            return false;
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES;
    startup.wShowWindow = SW_HIDE;
    startup.hStdInput = input;
    startup.hStdOutput = output;
    startup.hStdError = output;
    std::wstring commandLine = launch.commandLine.ToStdWstring();
    const std::wstring folder = launch.workingFolder.ToStdWstring();
    return CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE,
                          CREATE_UNICODE_ENVIRONMENT, nullptr,
                          folder.empty() ? nullptr : folder.c_str(), &startup, &info) != 0;
}

} // namespace

std::unique_ptr<ChildProcess> Win32ChildProcess::Start(const ChildSpec& launch) {
    HANDLE outputRead = nullptr, outputWrite = nullptr, inputRead = nullptr, inputWrite = nullptr;
    if (!CreateInheritablePipe(outputRead, outputWrite))
        return nullptr;
    if (!CreateInheritablePipe(inputRead, inputWrite)) {
        CloseAll({outputRead, outputWrite});
        return nullptr;
    }
    SetHandleInformation(outputRead, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(inputWrite, HANDLE_FLAG_INHERIT, 0);
    PROCESS_INFORMATION info{};
    const bool created = CreateHidden(launch, inputRead, outputWrite, info);
    CloseAll({outputWrite, inputRead});
    if (!created) {
        CloseAll({outputRead, inputWrite});
        return nullptr;
    }
    return std::unique_ptr<ChildProcess>(new Win32ChildProcess(info, outputRead, inputWrite));
}

Win32ChildProcess::~Win32ChildProcess() {
    CloseAll({output, input, info.hProcess, info.hThread});
}

bool Win32ChildProcess::IsActive() {
    DWORD code = 0;
    return GetExitCodeProcess(info.hProcess, &code) && code == STILL_ACTIVE;
}

// Bytes are widened one by one (ISO 8859-1); a zero byte ends its chunk, as the servers' output
// is read as C strings. PeekNamedPipe first, so that ReadFile never waits.
wxString Win32ChildProcess::ReadOutput() {
    wxString text;
    char buffer[4096];
    DWORD available = 0;
    while (PeekNamedPipe(output, nullptr, 0, nullptr, &available, nullptr) && available > 0) {
        DWORD got = 0;
        if (!ReadFile(output, buffer, sizeof buffer, &got, nullptr) || got == 0)
            break;
        text += wxString(buffer, wxConvISO8859_1, strnlen(buffer, got));
    }
    return text;
}
