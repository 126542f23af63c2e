#include "core/php/PHPControlConfig.h"

#include "core/InstallPaths.h"
#include "core/SharedRegex.h"
#include "core/TextDocument.h"

#include <wx/regex.h>
#include <wx/textbuf.h>
#include <wx/wxcrt.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

struct Row {
    const char* label;
    const char* directive;
    const char* linkPath;
    const char* description;
};

const Row rows[] = {
#include "core/php/PHPControlConfigRows.inc"
};

const char* const manualSite = "http://www.php.net";

PHPSettingRecord MakeRecord(const Row& row) {
    PHPSettingRecord record;
    record.flags = 0;
    record.label = row.label;
    record.type = "bool";
    record.directive = row.directive;
    // Inserted as it stands: the "." of a directive matches any character, as it always has.
    record.matchPattern = "^" + record.directive + "[\t ]*=[\t ]*([a-zA-Z]+)";
    record.lineTemplate = record.directive + " = {_V_}";
    record.description = row.description;
    record.link = wxString(manualSite) + row.linkPath;
    return record;
}

// Any line that a directive can match: a word, "=" and a value that begins with a letter.
const SharedRegex& LineFilter() {
    static const SharedRegex filter("^[^\t ]+[\t ]*=[\t ]*([a-zA-Z]+)");
    return filter;
}

// Whether line begins as the pattern of directive demands ("." standing for any character), a
// test that every line the pattern matches passes and that costs far less than a match. Always
// true for a directive with other special characters, which only the pattern can judge.
bool MayMatch(const wxString& line, const wxString& directive) {
    if (line.length() < directive.length())
        return false;
    for (size_t i = 0; i < directive.length(); ++i) {
        const wxUniChar wanted = directive[i];
        if (!wxIsalnum(static_cast<wxChar>(wanted)) && wanted != '_' && wanted != '.')
            return true;
        if (wanted != '.' && line[i] != wanted)
            return false;
    }
    return true;
}

// The records' match patterns for one pass over a file, each compiled when first needed and
// released with the pass.
class PassPatterns {
public:
    explicit PassPatterns(const PHPControlConfig::Records& records) {
        for (const auto& entry : records)
            patterns.emplace_back(&entry.second, nullptr);
    }

    // The first record in table order whose pattern matches line, and the letters it captured.
    const PHPSettingRecord* Match(const wxString& line, wxString& letters) {
        // Most lines of a php.ini are comments that begin like no directive: cheap tests first.
        if (line.find('=') == wxString::npos)
            return nullptr;
        bool filtered = false;
        for (auto& [record, pattern] : patterns) {
            if (!MayMatch(line, record->directive))
                continue;
            if (!filtered && !LineFilter().Matches(line))
                return nullptr;
            filtered = true;
            if (!pattern)
                pattern = std::make_unique<wxRegEx>(record->matchPattern, wxRE_EXTENDED);
            if (pattern->Matches(line)) {
                letters = pattern->GetMatch(line, 1);
                return record;
            }
        }
        return nullptr;
    }

private:
    std::vector<std::pair<const PHPSettingRecord*, std::unique_ptr<wxRegEx>>> patterns;
};

} // namespace

PHPControlConfig::PHPControlConfig(const wxString& templatePath) {
    InitSettings();
    ReadValues(templatePath);
}

PHPControlConfig::PHPControlConfig(const InstallPaths& paths)
    : PHPControlConfig(paths.PhpSourceConfig()) {}

void PHPControlConfig::InitSettings() {
    for (const Row& row : rows)
        records[row.directive] = MakeRecord(row);
}

bool PHPControlConfig::ReadValues(const wxString& filePath) {
    TextDocument document;
    if (!document.Load(filePath))
        return false;
    path = filePath;
    PassPatterns patterns(records);
    wxString letters;
    for (const TextDocument::Line& line : document.Lines())
        if (const PHPSettingRecord* record = patterns.Match(line.text, letters))
            records[record->directive].value = letters;
    return true;
}

bool PHPControlConfig::WriteValues() const {
    TextDocument document;
    if (path.empty() || !document.Load(path))
        return false;
    PassPatterns patterns(records);
    wxString letters;
    for (TextDocument::Line& line : document.Lines())
        if (const PHPSettingRecord* record = patterns.Match(line.text, letters))
            line.text = record->GetWriteLine();
    document.UseLineEnd(wxTextBuffer::GetEOL());
    return document.Save(path);
}

PHPSettingRecord* PHPControlConfig::Find(const wxString& directive) {
    const auto found = records.find(directive);
    return found == records.end() ? nullptr : &found->second;
}
