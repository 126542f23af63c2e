#include "core/TextDocument.h"

namespace {

const wxString LF = "\n", CRLF = "\r\n", CR = "\r";

// Where the line that starts at start ends, and the length of its line end (0 at the end).
template <class Char>
size_t FindLineEnd(const Char* text, size_t length, size_t start, size_t& endingLength) {
    size_t end = start;
    while (end < length && text[end] != '\n' && text[end] != '\r')
        ++end;
    const bool crlf = end + 1 < length && text[end] == '\r' && text[end + 1] == '\n';
    endingLength = end == length ? 0 : crlf ? 2 : 1;
    return end;
}

// A php.ini has a hundred thousand lines: the lines are counted first so that none is copied
// twice (wxString has no move), and the text is scanned directly rather than through find.
template <class Char, class MakeText>
void Split(const Char* text, size_t length, std::vector<TextDocument::Line>& lines,
           MakeText makeText) {
    size_t endingLength = 0, count = 0;
    for (size_t start = 0; start < length; ++count)
        start = FindLineEnd(text, length, start, endingLength) + endingLength;
    lines.reserve(count);
    for (size_t start = 0; start < length;) {
        const size_t end = FindLineEnd(text, length, start, endingLength);
        lines.emplace_back();
        makeText(lines.back().text, text + start, end - start);
        if (endingLength > 0)
            lines.back().ending = endingLength == 2 ? CRLF : text[end] == '\n' ? LF : CR;
        start = end + endingLength;
    }
}

} // namespace

TextDocument::TextDocument(const wxString& text) {
    Split(text.wc_str(), text.length(), lines,
          [](wxString& line, const wxChar* start, size_t length) { line.assign(start, length); });
}

// A plain ASCII file, the common case, is split from its bytes: no decoded copy of the whole.
bool TextDocument::Load(const wxString& path, TextFiles::InvalidCharacters invalid) {
    std::string bytes;
    if (!TextFiles::ReadBytes(path, bytes))
        return false;
    std::vector<Line> read;
    if (TextFiles::IsPlainAscii(bytes)) {
        Split(bytes.data(), bytes.size(), read,
              [](wxString& line, const char* start, size_t length) {
                  wxString ascii(TextFiles::FromAsciiBytes(start, length));
                  line.swap(ascii);
              });
    } else {
        wxString text;
        if (!TextFiles::Decode(bytes, text, invalid))
            return false;
        read = std::move(TextDocument(text).lines);
    }
    lines.swap(read);
    return true;
}

bool TextDocument::Save(const wxString& path) const {
    return TextFiles::WriteAtomically(path, Text());
}

wxString TextDocument::Text() const {
    size_t length = 0;
    for (const Line& line : lines)
        length += line.text.length() + line.ending.length();
    wxString text;
    text.reserve(length);
    for (const Line& line : lines)
        text.append(line.text).append(line.ending);
    return text;
}

void TextDocument::UseLineEnd(const wxString& ending) {
    for (Line& line : lines)
        if (!line.ending.empty())
            line.ending = ending;
}

const wxString& TextDocument::LineReader::ReadLine() {
    static const wxString none;
    return AtEnd() ? none : lines[next++].text;
}
