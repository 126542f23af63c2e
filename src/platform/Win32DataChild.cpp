// The data child, the atomic save and the listening right of Win32Platform.
#include "platform/Win32Platform.h"

#include <atomic>
#include <string>

namespace {

// A child with blocking pipes for its input and output and its error output in a file.
class Win32DataChild : public DataChild {
public:
    Win32DataChild(const PROCESS_INFORMATION& info, HANDLE output, HANDLE input)
        : info(info), output(output), input(input) {}
    ~Win32DataChild() override {
        CloseInput();
        if (WaitForSingleObject(info.hProcess, 0) == WAIT_TIMEOUT) {
            TerminateProcess(info.hProcess, 1);
            WaitForSingleObject(info.hProcess, INFINITE);
        }
        CloseHandle(output);
        CloseHandle(info.hProcess);
        CloseHandle(info.hThread);
    }

    long Read(char* buffer, size_t size) override {
        DWORD got = 0;
        if (ReadFile(output, buffer, static_cast<DWORD>(size), &got, nullptr))
            return static_cast<long>(got);
        return GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1;
    }
    bool Write(const char* data, size_t size) override {
        while (size > 0) {
            DWORD written = 0;
            if (!input || !WriteFile(input, data, static_cast<DWORD>(size), &written, nullptr))
                return false;
            data += written;
            size -= written;
        }
        return true;
    }
    void CloseInput() override {
        if (input)
            CloseHandle(input);
        input = nullptr;
    }
    int Wait() override {
        WaitForSingleObject(info.hProcess, INFINITE);
        DWORD code = 0;
        return GetExitCodeProcess(info.hProcess, &code) ? static_cast<int>(code) : -1;
    }

private:
    PROCESS_INFORMATION info;
    HANDLE output;
    HANDLE input;
};

// An argument quoted the way the C runtime splits command lines.
std::wstring Quoted(const wxString& argument) {
    std::wstring text = L"\"";
    size_t slashes = 0;
    for (wchar_t c : argument.ToStdWstring()) {
        if (c == L'\\') {
            ++slashes;
        } else {
            text.append(c == L'"' ? slashes * 2 + 1 : slashes, L'\\');
            slashes = 0;
        }
        if (c != L'\\')
            text += c;
    }
    text.append(slashes * 2, L'\\');
    return text + L"\"";
}

} // namespace

std::unique_ptr<DataChild> Win32Platform::StartDataChild(const std::vector<wxString>& argv,
                                                         const wxString& errorFile) {
    if (argv.empty())
        return nullptr;
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE outputRead, outputWrite, inputRead, inputWrite;
    if (!CreatePipe(&outputRead, &outputWrite, &inherit, 0))
        return nullptr;
    if (!CreatePipe(&inputRead, &inputWrite, &inherit, 0)) {
        CloseHandle(outputRead);
        CloseHandle(outputWrite);
        return nullptr;
    }
    SetHandleInformation(outputRead, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(inputWrite, HANDLE_FLAG_INHERIT, 0);
    HANDLE error = CreateFileW(errorFile.wc_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit,
                               CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    std::wstring commandLine;
    for (const wxString& argument : argv)
        commandLine += (commandLine.empty() ? L"" : L" ") + Quoted(argument);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    startup.hStdInput = inputRead;
    startup.hStdOutput = outputWrite;
    startup.hStdError = error != INVALID_HANDLE_VALUE ? error : outputWrite;
    PROCESS_INFORMATION info{};
    const bool created = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE,
                                        CREATE_NO_WINDOW, nullptr, nullptr, &startup, &info);
    CloseHandle(outputWrite);
    CloseHandle(inputRead);
    if (error != INVALID_HANDLE_VALUE)
        CloseHandle(error);
    if (!created) {
        CloseHandle(outputRead);
        CloseHandle(inputWrite);
        return nullptr;
    }
    return std::make_unique<Win32DataChild>(info, outputRead, inputWrite);
}

// Any process may listen on any free port here (the firewall may still ask the user).
bool Win32Platform::MayListenOn(int port) {
    return port > 0 && port < 65536;
}

// The scratch file has a name of this save alone, is flushed to disk and then moved over the
// file; a reader sees the old or the new contents.
bool Win32Platform::SaveFileAtomically(const wxString& path, const std::string& bytes) {
    static std::atomic<unsigned> counter{0};
    const wxString scratch =
        wxString::Format("%s.temp-%lu-%u", path, GetCurrentProcessId(), ++counter);
    HANDLE file = CreateFileW(scratch.wc_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    const bool whole =
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
        written == bytes.size() && FlushFileBuffers(file);
    CloseHandle(file);
    if (whole && ReplaceFile(scratch, path))
        return true;
    const DWORD reason = GetLastError(); // the caller tells the step's failure, not the clean-up's
    DeleteFileW(scratch.wc_str());
    SetLastError(reason);
    return false;
}
