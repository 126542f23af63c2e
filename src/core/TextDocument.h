#pragma once

#include "core/TextFiles.h"

#include <wx/string.h>

#include <vector>

// A text file held as lines, each with the line end the file gave it ("\n", "\r\n", "\r", or
// none for a last line without one), for edits that change some lines and must leave every other
// line byte for byte as it was. The one place where text is split into lines: LF, CR LF and a
// lone CR each end a line, and a line end at the very end of the text starts no further, empty
// line ("a\n" is one line, "a\n\n" two). Joining the lines with their ends gives the text back.
class TextDocument {
public:
    struct Line {
        wxString text;
        wxString ending;
    };

    TextDocument() = default;
    explicit TextDocument(const wxString& text);

    // Reads and decodes the file (TextFiles::Read). False, with the document unchanged, when the
    // file is missing or cannot be decoded.
    bool Load(const wxString& path,
              TextFiles::InvalidCharacters invalid = TextFiles::InvalidCharacters::Reject);
    // Writes the joined lines over path, atomically (TextFiles::WriteAtomically).
    bool Save(const wxString& path) const;

    std::vector<Line>& Lines() { return lines; }
    const std::vector<Line>& Lines() const { return lines; }
    wxString Text() const;
    // Gives every line that has a line end this one instead (e.g. the platform's own).
    void UseLineEnd(const wxString& ending);

    // Hands out the lines one at a time, without their line ends. The document must outlive it.
    class LineReader {
    public:
        explicit LineReader(const TextDocument& document) : lines(document.Lines()) {}

        bool AtEnd() const { return next >= lines.size(); }
        // The next line; an empty text once at end.
        const wxString& ReadLine();

    private:
        const std::vector<Line>& lines;
        size_t next = 0;
    };

private:
    std::vector<Line> lines;
};
