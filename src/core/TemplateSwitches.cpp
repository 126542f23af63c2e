#include "core/TemplateSwitches.h"

#include "core/TextFiles.h"
#include "platform/Platform.h"

#include <wx/regex.h>

#include <utility>

namespace TemplateSwitches {

const char* const PHP_MODULE_LABEL = "PHP Kovix (Selected Version)";

namespace {

using KeyFunction = wxString (*)(const wxString& line);

// A line without its ending, and the ending as the file has it ("\n", "\r\n", "\r" or none).
struct TextLine {
    wxString text;
    wxString ending;
};

std::vector<TextLine> SplitLines(const wxString& text) {
    std::vector<TextLine> lines;
    size_t start = 0;
    while (start < text.length()) {
        const size_t end = text.find_first_of("\r\n", start);
        if (end == wxString::npos) {
            lines.push_back({text.Mid(start), wxString()});
            break;
        }
        const size_t endingLength = text.Mid(end, 2) == "\r\n" ? 2 : 1;
        lines.push_back({text.Mid(start, end - start), text.Mid(end, endingLength)});
        start = end + endingLength;
    }
    return lines;
}

// Group 4 of pattern in line, or "" when the line does not match.
wxString Group4(const wxRegEx& pattern, const wxString& line) {
    return pattern.Matches(line) ? pattern.GetMatch(line, 4) : wxString();
}

// A wxRegEx keeps the state of its last match, so every thread that switches lines (the GUI
// thread and the dialogs' workers) compiles the patterns once for itself.
const wxRegEx& ExtensionPattern() {
    thread_local const wxRegEx pattern("((^;extension=)|(^extension=))(.*)");
    return pattern;
}

const wxRegEx& ModulePattern() {
    thread_local const wxRegEx pattern("((^#LoadModule)|(^LoadModule))(.*)");
    return pattern;
}

std::vector<wxString> ListLines(const wxString& source, const wxRegEx& pattern) {
    std::vector<wxString> found;
    wxString text;
    if (!TextFiles::Read(source, text))
        return found;
    for (const TextLine& line : SplitLines(text))
        if (pattern.Matches(line.text))
            found.push_back(line.text);
    return found;
}

// Rewrites source with each keyed line replaced by the first entry of the same key.
bool WriteLines(const wxString& source, const wxString& scratch, KeyFunction keyOf,
                const std::vector<wxString>& entries) {
    wxString text;
    if (!TextFiles::Read(source, text))
        return false;
    std::vector<std::pair<wxString, wxString>> keyed;
    for (const wxString& entry : entries)
        keyed.emplace_back(keyOf(entry), entry);
    wxString result;
    for (const TextLine& line : SplitLines(text)) {
        const wxString key = keyOf(line.text);
        wxString replacement = line.text;
        for (const auto& [entryKey, entry] : keyed)
            if (!key.empty() && entryKey == key) {
                replacement = entry;
                break;
            }
        result += replacement + line.ending;
    }
    return TextFiles::WriteAtomically(source, result, scratch);
}

} // namespace

std::vector<wxString> ListExtensionLines(const InstallPaths& paths) {
    return ListLines(paths.PhpSourceConfig(), ExtensionPattern());
}

wxString ExtensionFileOf(const wxString& line) {
    return Group4(ExtensionPattern(), line);
}

wxString ExtensionNameOf(const wxString& file) {
    thread_local const wxRegEx pattern(Platform::Get().PhpExtensionNamePattern());
    return pattern.Matches(file) ? pattern.GetMatch(file, 1) : wxString();
}

bool IsExtensionLineEnabled(const wxString& line) {
    return line.StartsWith("extension=");
}

wxString MakeExtensionLine(const wxString& line, bool enabled) {
    return (enabled ? "extension=" : ";extension=") + ExtensionFileOf(line);
}

bool WriteExtensionLines(const InstallPaths& paths, const std::vector<wxString>& lines) {
    return WriteLines(paths.PhpSourceConfig(), paths.PhpScratchConfig(), ExtensionFileOf, lines);
}

std::vector<wxString> ListModuleLines(const InstallPaths& paths) {
    return ListLines(paths.ApacheSourceConfig(), ModulePattern());
}

wxString ModuleKeyOf(const wxString& line) {
    thread_local const wxRegEx pattern("((^#LoadModule)|(^LoadModule)) *([^ ]*).*");
    const wxString key = Group4(pattern, line);
    return key == "{PHPMODULENAME}" ? wxString(PHP_MODULE_LABEL) : key;
}

bool IsModuleLineEnabled(const wxString& line) {
    return line.StartsWith("LoadModule");
}

wxString MakeModuleLine(const wxString& line, bool enabled) {
    return (enabled ? "LoadModule" : "#LoadModule") + Group4(ModulePattern(), line);
}

bool WriteModuleLines(const InstallPaths& paths, const std::vector<wxString>& lines) {
    return WriteLines(paths.ApacheSourceConfig(), paths.ApacheScratchConfig(), ModuleKeyOf, lines);
}

} // namespace TemplateSwitches
