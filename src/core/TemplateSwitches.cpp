#include "core/TemplateSwitches.h"

#include "core/SharedRegex.h"
#include "core/TextDocument.h"
#include "platform/Platform.h"

#include <utility>

namespace TemplateSwitches {

const char* const PHP_MODULE_LABEL = "PHP Kovix (Selected Version)";

namespace {

using KeyFunction = wxString (*)(const wxString& line);

const SharedRegex& ExtensionPattern() {
    static const SharedRegex pattern("((^;extension=)|(^extension=))(.*)");
    return pattern;
}

const SharedRegex& ModulePattern() {
    static const SharedRegex pattern("((^#LoadModule)|(^LoadModule))(.*)");
    return pattern;
}

std::vector<wxString> ListLines(const wxString& source, const SharedRegex& pattern) {
    std::vector<wxString> found;
    TextDocument document;
    if (!document.Load(source))
        return found;
    for (const TextDocument::Line& line : document.Lines())
        if (pattern.Matches(line.text))
            found.push_back(line.text);
    return found;
}

// Rewrites source with each keyed line replaced by the first entry of the same key.
bool WriteLines(const wxString& source, KeyFunction keyOf, const std::vector<wxString>& entries) {
    TextDocument document;
    if (!document.Load(source))
        return false;
    std::vector<std::pair<wxString, wxString>> keyed;
    for (const wxString& entry : entries)
        keyed.emplace_back(keyOf(entry), entry);
    for (TextDocument::Line& line : document.Lines()) {
        const wxString key = keyOf(line.text);
        for (const auto& [entryKey, entry] : keyed)
            if (!key.empty() && entryKey == key) {
                line.text = entry;
                break;
            }
    }
    return document.Save(source);
}

} // namespace

std::vector<wxString> ListExtensionLines(const InstallPaths& paths) {
    return ListLines(paths.PhpSourceConfig(), ExtensionPattern());
}

wxString ExtensionFileOf(const wxString& line) {
    return ExtensionPattern().Group(line, 4);
}

wxString ExtensionNameOf(const wxString& file) {
    static const SharedRegex pattern(Platform::Get().PhpExtensionNamePattern());
    return pattern.Group(file, 1);
}

bool IsExtensionLineEnabled(const wxString& line) {
    return line.StartsWith("extension=");
}

wxString MakeExtensionLine(const wxString& line, bool enabled) {
    return (enabled ? "extension=" : ";extension=") + ExtensionFileOf(line);
}

bool WriteExtensionLines(const InstallPaths& paths, const std::vector<wxString>& lines) {
    return WriteLines(paths.PhpSourceConfig(), ExtensionFileOf, lines);
}

std::vector<wxString> ListModuleLines(const InstallPaths& paths) {
    return ListLines(paths.ApacheSourceConfig(), ModulePattern());
}

wxString ModuleKeyOf(const wxString& line) {
    static const SharedRegex pattern("((^#LoadModule)|(^LoadModule)) *([^ ]*).*");
    const wxString key = pattern.Group(line, 4);
    return key == "{PHPMODULENAME}" ? wxString(PHP_MODULE_LABEL) : key;
}

bool IsModuleLineEnabled(const wxString& line) {
    return line.StartsWith("LoadModule");
}

wxString MakeModuleLine(const wxString& line, bool enabled) {
    return (enabled ? "LoadModule" : "#LoadModule") + ModulePattern().Group(line, 4);
}

bool WriteModuleLines(const InstallPaths& paths, const std::vector<wxString>& lines) {
    return WriteLines(paths.ApacheSourceConfig(), ModuleKeyOf, lines);
}

} // namespace TemplateSwitches
