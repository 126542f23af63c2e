#pragma once

#include <wx/string.h>

#include <cstddef>
#include <deque>
#include <vector>

// What the log viewer shows: the last lines of a log (at most a capacity: older lines drop off),
// the ones that contain the filter text (case ignored), and a pause. While paused the shown lines
// stay as they are; what arrives meanwhile is kept and shown on resume.
class LogLines {
public:
    static constexpr size_t DefaultCapacity = 200000;
    explicit LogLines(size_t capacity = DefaultCapacity) : capacity(capacity) {}

    void Append(const std::vector<wxString>& lines);
    void Clear();
    void SetFilter(const wxString& text);
    void SetPaused(bool paused);
    bool IsPaused() const { return paused; }

    size_t ShownCount() const { return shown.size(); }
    const wxString& Shown(size_t index) const { return lines[shown[index] - first]; }
    size_t HeldCount() const { return held.size(); }

private:
    void Add(const wxString& line);
    bool Matches(const wxString& line) const;

    size_t capacity;
    std::deque<wxString> lines;
    size_t first = 0;           // number of the oldest kept line since the start
    std::deque<size_t> shown;   // numbers of the matching lines
    std::vector<wxString> held; // arrived while paused
    wxString filter;            // lower case
    bool paused = false;
};
