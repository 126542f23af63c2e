#include "core/IniReader.h"

#include "core/TextDocument.h"

namespace {

const wxChar* const blanks = wxS(" \t");

wxString Trimmed(const wxString& text) {
    const size_t first = text.find_first_not_of(blanks);
    if (first == wxString::npos)
        return wxString();
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The key is the run of non-spaces before the blanks that precede "="; tabs right after the word
// still belong to it up to the first space ("TAB\t=" has the key "TAB\t", "NAME \t=" "NAME").
wxString KeyBefore(const wxString& line, size_t equals) {
    size_t end = equals;
    while (end > 0 && (line[end - 1] == ' ' || line[end - 1] == '\t'))
        --end;
    while (end < equals && line[end] == '\t')
        ++end;
    size_t start = end;
    while (start > 0 && line[start - 1] != ' ')
        --start;
    return line.substr(start, end - start);
}

} // namespace

std::vector<IniEntry> ReadIniEntries(const wxString& text) {
    std::vector<IniEntry> entries;
    wxString section;
    const TextDocument document(text);
    for (const TextDocument::Line& line : document.Lines()) {
        const wxString trimmed = Trimmed(line.text);
        if (trimmed.StartsWith("[")) {
            section = trimmed;
            continue;
        }
        const size_t equals = line.text.find('=');
        if (equals == wxString::npos)
            continue;
        entries.push_back(
            {section, KeyBefore(line.text, equals), Trimmed(line.text.substr(equals + 1))});
    }
    return entries;
}

bool QuotedPrefix(const wxString& value, wxString& inside) {
    const size_t closing = value.find('"', 1);
    if (!value.StartsWith("\"") || closing == wxString::npos)
        return false;
    inside = value.substr(1, closing - 1);
    return true;
}

wxString WithoutQuotes(const wxString& value) {
    if (value.length() >= 2 && value.StartsWith("\"") && value.EndsWith("\""))
        return value.substr(1, value.length() - 2);
    return value;
}
