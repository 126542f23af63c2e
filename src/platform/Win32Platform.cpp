#include "platform/Win32Platform.h"

#include <shellapi.h>

#include <vector>

Platform& Platform::Get() {
    static Win32Platform platform;
    return platform;
}

// The buffer grows until the whole path fits (paths may exceed MAX_PATH).
wxString Win32Platform::ExecutablePath() {
    std::vector<wchar_t> buffer(MAX_PATH);
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), buffer.size());
        if (length == 0)
            return wxString();
        if (length < buffer.size())
            return wxString(buffer.data(), length);
        buffer.resize(buffer.size() * 2);
    }
}

wxString Win32Platform::LoginName() {
    wchar_t name[256 + 1];
    DWORD length = sizeof name / sizeof name[0];
    if (!GetUserNameW(name, &length))
        return "user";
    return wxString(name);
}

// The three-letter abbreviation of the user's interface language ("ENU", "FRA", "DEU"), of which
// the first two letters, lower-cased, name the language. A well-formed answer is three letters
// (length 4 with the terminator) and comes with a country abbreviation (more than 3 with it);
// when either test fails the buffer is still taken as it stands.
wxString Win32Platform::DefaultUiLanguage() {
    const LCID locale = MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT);
    wchar_t language[10] = L"";
    const int languageLength = GetLocaleInfoW(locale, LOCALE_SABBREVLANGNAME, language, 10);
    if (languageLength == 4) {
        wchar_t country[10] = L"";
        if (GetLocaleInfoW(locale, LOCALE_SABBREVCTRYNAME, country, 10) <= 3)
            OutputDebugStringW(L"Kovix: no country abbreviation for the UI language\n");
    }
    return wxString(language).Left(2).Lower();
}

wxString Win32Platform::DefaultTextEditor() {
    return "notepad.exe";
}

wxString Win32Platform::PathListSeparator() {
    return ";";
}

wxString Win32Platform::PathSeparator() {
    return "\\";
}

wxString Win32Platform::ProgramSuffix() {
    return ".exe";
}

// PHP 5 shipped "php5apache2_2.dll" (module "php5_module"); PHP 8 ships "php8apache2_4.dll",
// whose module is "php_module": the version digit 8 is not part of the name.
wxString Win32Platform::PhpModuleWildcard() {
    return "*apache2_?.dll";
}

wxString Win32Platform::PhpModuleNamePattern() {
    return "^(.*[^8])8?apache2_[24]\\.dll$";
}

wxString Win32Platform::PhpExtensionNamePattern() {
    return "php_(.*).dll";
}

wxString Win32Platform::ProgramFileFilter() {
    return "Application (*.exe)|*.exe";
}

namespace {

const std::int64_t WINDOWS_TO_UNIX_EPOCH = 116444736000000000LL; // in 100 ns units

bool ShellOpen(const wxString& target, const wxString& parameters) {
    const HINSTANCE result =
        ShellExecuteW(nullptr, L"open", target.wc_str(),
                      parameters.empty() ? nullptr : parameters.wc_str(), nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > 32;
}

} // namespace

bool Win32Platform::FileModificationTime(const wxString& path, std::int64_t& milliseconds) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(path.wc_str(), GetFileExInfoStandard, &data))
        return false;
    ULARGE_INTEGER time;
    time.LowPart = data.ftLastWriteTime.dwLowDateTime;
    time.HighPart = data.ftLastWriteTime.dwHighDateTime;
    milliseconds = (static_cast<std::int64_t>(time.QuadPart) - WINDOWS_TO_UNIX_EPOCH) / 10000;
    return true;
}

// MoveFileExW replaces the target in one step; write-through makes the rename durable before it
// returns.
bool Win32Platform::ReplaceFile(const wxString& from, const wxString& to) {
    return MoveFileExW(from.wc_str(), to.wc_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

namespace {

// LockFileEx over the whole file on a handle of its own; closing the handle ends the lock, also
// when the process dies.
class Win32FileLock : public FileLock {
public:
    explicit Win32FileLock(HANDLE file) : file(file) {}
    ~Win32FileLock() override { CloseHandle(file); }

private:
    HANDLE file;
};

} // namespace

std::unique_ptr<FileLock> Win32Platform::LockFile(const wxString& path) {
    const DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    HANDLE file = CreateFileW(path.wc_str(), GENERIC_READ | GENERIC_WRITE, sharing, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) // a read-only tree is still locked
        file = CreateFileW(path.wc_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    OVERLAPPED whole{};
    if (!LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &whole)) {
        CloseHandle(file);
        return nullptr;
    }
    return std::make_unique<Win32FileLock>(file);
}

bool Win32Platform::OpenUrl(const wxString& url) {
    return ShellOpen(url, wxString());
}

bool Win32Platform::OpenFolder(const wxString& folder) {
    return ShellOpen(folder, wxString());
}

bool Win32Platform::OpenProgram(const wxString& program, const wxString& argument) {
    return ShellOpen(program, argument.empty() ? argument : "\"" + argument + "\"");
}

// The servers run as the user who starts them: there is no administrator's account to leave.
bool Win32Platform::IsPrivileged() {
    return false;
}

bool Win32Platform::AccountExists(const wxString&) {
    return true;
}

wxString Win32Platform::FolderClosedTo(const wxString&, const wxString&) {
    return wxString();
}

bool Win32Platform::GiveFolderTo(const wxString&, const wxString&) {
    return true;
}

bool Win32Platform::OwnsFile(const wxString&) {
    return true;
}

bool Win32Platform::LetAccountAddFiles(const wxString&, const wxString&) {
    return true;
}
