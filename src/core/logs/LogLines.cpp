#include "core/logs/LogLines.h"

void LogLines::Append(const std::vector<wxString>& arrived) {
    if (paused) {
        held.insert(held.end(), arrived.begin(), arrived.end());
        return;
    }
    for (const wxString& line : arrived)
        Add(line);
}

void LogLines::Add(const wxString& line) {
    if (Matches(line))
        shown.push_back(first + lines.size());
    lines.push_back(line);
    if (lines.size() <= capacity)
        return;
    lines.pop_front();
    ++first;
    if (!shown.empty() && shown.front() < first)
        shown.pop_front();
}

void LogLines::Clear() {
    first += lines.size();
    lines.clear();
    shown.clear();
    held.clear();
}

void LogLines::SetFilter(const wxString& text) {
    filter = text.Lower();
    shown.clear();
    for (size_t i = 0; i < lines.size(); ++i)
        if (Matches(lines[i]))
            shown.push_back(first + i);
}

void LogLines::SetPaused(bool pause) {
    paused = pause;
    if (paused)
        return;
    std::vector<wxString> arrived;
    arrived.swap(held);
    Append(arrived);
}

bool LogLines::Matches(const wxString& line) const {
    return filter.empty() || line.Lower().Find(filter) != wxNOT_FOUND;
}
