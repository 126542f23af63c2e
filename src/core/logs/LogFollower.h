#pragma once

#include <wx/file.h>
#include <wx/string.h>

#include <string>
#include <vector>

// Follows one growing log file by its complete lines. Open reads the last tailBytes of the file
// (a partial first line there is dropped), so a huge log opens at once; each Poll returns the
// lines added since. A log that was emptied, removed or replaced (it got shorter, or its first
// bytes changed) is followed again from its new start. A line still being written (no line end
// yet) waits for the next Poll. Lines are decoded as UTF-8, else as Latin-1.
class LogFollower {
public:
    static constexpr size_t DefaultTailBytes = 4 * 1024 * 1024;

    explicit LogFollower(const wxString& path, size_t tailBytes = DefaultTailBytes)
        : path(path), tailBytes(tailBytes) {}

    std::vector<wxString> Open();
    std::vector<wxString> Poll();
    // True when the last Poll found the log replaced and read it from its new start.
    bool Restarted() const { return restarted; }

    const wxString& Path() const { return path; }

private:
    // Reads from offset to the end of the file; false when the file cannot be read.
    bool ReadFrom(wxFileOffset start, std::string& bytes);
    std::vector<wxString> TakeLines(std::string bytes);
    bool WasReplaced(wxFileOffset length);
    std::string Head();

    wxString path;
    size_t tailBytes;
    wxFileOffset offset = 0;
    std::string head;    // the first bytes of the file followed, to notice a new file
    std::string pending; // a line not yet ended
    bool restarted = false;
};
