// Fuzzes the php.ini reader and writer with arbitrary file contents. Beyond not crashing or
// hanging, the values read and the file written must agree with a plain statement of the
// matching rules: lines that no directive claims come back unchanged, claimed lines become
// "directive = value", and every line end becomes "\n".
#include "FuzzSupport.h"
#include "core/TextFiles.h"
#include "core/php/PHPControlConfig.h"

#include <map>
#include <string>
#include <vector>

namespace {

bool IsBlank(wchar_t c) {
    return c == ' ' || c == '\t';
}

bool IsLetter(wchar_t c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Past optional blanks, "=" and optional blanks, where the letters of the value begin; or npos.
size_t ValueStart(const wxString& line, size_t at) {
    while (at < line.length() && IsBlank(line[at]))
        ++at;
    if (at >= line.length() || line[at] != '=')
        return wxString::npos;
    ++at;
    while (at < line.length() && IsBlank(line[at]))
        ++at;
    return at < line.length() && IsLetter(line[at]) ? at : wxString::npos;
}

// A first word, then "=" and a letter: the word may end at any "=" inside it.
bool PassesFilter(const wxString& line) {
    for (size_t end = 1; end <= line.length() && !IsBlank(line[end - 1]); ++end)
        if (ValueStart(line, end) != wxString::npos)
            return true;
    return false;
}

// The letters of the value when line sets directive, a "." of which stands for any character.
bool SetsDirective(const wxString& line, const wxString& directive, wxString& letters) {
    if (line.length() < directive.length())
        return false;
    for (size_t i = 0; i < directive.length(); ++i)
        if (directive[i] != '.' && directive[i] != line[i])
            return false;
    size_t at = ValueStart(line, directive.length());
    if (at == wxString::npos)
        return false;
    letters.clear();
    while (at < line.length() && IsLetter(line[at]))
        letters += line[at++];
    return true;
}

const PHPSettingRecord* Claimant(const PHPControlConfig& table, const wxString& line,
                                 wxString& letters) {
    if (!PassesFilter(line))
        return nullptr;
    for (const auto& entry : table.GetRecords())
        if (SetsDirective(line, entry.first, letters))
            return &entry.second;
    return nullptr;
}

std::vector<wxString> Lines(const wxString& text) {
    std::vector<wxString> lines;
    size_t start = 0;
    for (size_t i = 0; i < text.length(); ++i)
        if (text[i] == '\r' || text[i] == '\n') {
            lines.push_back(text.Mid(start, i - start));
            if (text[i] == '\r' && i + 1 < text.length() && text[i + 1] == '\n')
                ++i;
            start = i + 1;
        }
    lines.push_back(text.Mid(start));
    return lines;
}

std::string Utf8Bytes(const wxString& text) {
    const wxScopedCharBuffer utf8 = text.utf8_str();
    return std::string(utf8.data(), utf8.length());
}

void CheckRoundTrip(const wxString& path, const std::string& bytes) {
    PHPControlConfig table(path);
    wxString text;
    if (!TextFiles::Read(path, text)) {
        if (!table.GetPath().empty() || table.WriteValues() || FuzzSupport::ReadFile(path) != bytes)
            FuzzSupport::Fail("an unreadable file was taken or changed");
        return;
    }
    const std::vector<wxString> lines = Lines(text);
    std::map<wxString, wxString> values;
    wxString letters;
    for (const wxString& line : lines)
        if (const PHPSettingRecord* record = Claimant(table, line, letters))
            values[record->directive] = letters;
    for (const auto& [directive, record] : table.GetRecords())
        if (record.value != values[directive])
            FuzzSupport::Fail("a value read differs from the rules");

    size_t index = bytes.size();
    for (const auto& entry : table.GetRecords())
        table.Find(entry.first)->value = ++index % 3 == 0 ? "" : "Off";
    wxString expected;
    for (size_t i = 0; i < lines.size(); ++i) {
        const PHPSettingRecord* record = Claimant(table, lines[i], letters);
        expected += (i == 0 ? "" : "\n") + (record ? record->GetWriteLine() : lines[i]);
    }
    if (!table.WriteValues())
        FuzzSupport::Fail("a readable file was not written");
    if (FuzzSupport::ReadFile(path) != Utf8Bytes(expected))
        FuzzSupport::Fail("the file written differs from the rules");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const wxString path = FuzzSupport::ScratchFolder() + "/php_source.ini";
    FuzzSupport::WriteFile(path, data, size);
    CheckRoundTrip(path, std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
