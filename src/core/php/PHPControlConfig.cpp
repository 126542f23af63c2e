#include "core/php/PHPControlConfig.h"

#include "core/InstallPaths.h"
#include "core/TextFiles.h"

#include <wx/regex.h>
#include <wx/textbuf.h>

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

// Any line that a directive can match: a word, "=" and a value that begins with a letter. One per
// thread: a wxRegEx keeps the state of its last match, and the PHP dialog's jobs may overlap.
const wxRegEx& LineFilter() {
    thread_local const wxRegEx filter("^[^\t ]+[\t ]*=[\t ]*([a-zA-Z]+)", wxRE_EXTENDED);
    return filter;
}

// Calls onLine with each line of text, split at "\r\n", "\r" or "\n". A final line end leaves an
// empty last line, so joining the lines with line ends gives back the text. One buffer serves
// every line: a php.ini has thousands.
template <typename OnLine> void ForEachLine(const wxString& text, OnLine onLine) {
    wxString line;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find_first_of(wxS("\r\n"), start);
        line.assign(text, start, end == wxString::npos ? wxString::npos : end - start);
        onLine(line);
        if (end == wxString::npos)
            return;
        const bool crlf = text[end] == '\r' && end + 1 < text.length() && text[end + 1] == '\n';
        start = end + (crlf ? 2 : 1);
    }
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
        // Most lines of a php.ini are comments without "=": a scan is cheaper than the filter.
        if (line.find('=') == wxString::npos || !LineFilter().Matches(line))
            return nullptr;
        for (auto& [record, pattern] : patterns) {
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
    wxString text;
    if (!TextFiles::Read(filePath, text))
        return false;
    path = filePath;
    PassPatterns patterns(records);
    wxString letters;
    ForEachLine(text, [&](const wxString& line) {
        if (const PHPSettingRecord* record = patterns.Match(line, letters))
            records[record->directive].value = letters;
    });
    return true;
}

bool PHPControlConfig::WriteValues() const {
    wxString text;
    if (path.empty() || !TextFiles::Read(path, text))
        return false;
    PassPatterns patterns(records);
    wxString output, letters;
    output.reserve(text.length());
    bool first = true;
    ForEachLine(text, [&](const wxString& line) {
        if (!first)
            output += wxTextBuffer::GetEOL();
        first = false;
        const PHPSettingRecord* record = patterns.Match(line, letters);
        output += record ? record->GetWriteLine() : line;
    });
    return TextFiles::WriteAtomically(path, output);
}

PHPSettingRecord* PHPControlConfig::Find(const wxString& directive) {
    const auto found = records.find(directive);
    return found == records.end() ? nullptr : &found->second;
}
