#pragma once

#include <wx/string.h>

// Hands out the lines of a text one at a time, without their line ends. LF, CR LF and a lone CR
// each end a line; a line end at the very end of the text does not start another, empty line,
// so "a\n" is one line and "a\n\n" is two ("a" and ""); wxTextInputStream would give one more
// empty line after a final line end, which the template editors count. The text must outlive
// the reader.
class TextLineReader {
public:
    explicit TextLineReader(const wxString& text) : text(text) {}

    bool AtEnd() const { return position >= text.length(); }
    // The next line; an empty text once at end.
    wxString ReadLine();

private:
    const wxString& text;
    size_t position = 0;
};
