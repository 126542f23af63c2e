#include "core/SharedRegex.h"

SharedRegex::SharedRegex(const wxString& expression, int flags) : regex(expression, flags) {}

bool SharedRegex::Matches(const wxString& text) const {
    std::lock_guard<std::mutex> guard(lock);
    return regex.Matches(text);
}

bool SharedRegex::Match(const wxString& text, std::vector<wxString>& groups) const {
    std::lock_guard<std::mutex> guard(lock);
    groups.clear();
    if (!regex.Matches(text))
        return false;
    for (size_t index = 0; index < regex.GetMatchCount(); ++index)
        groups.push_back(regex.GetMatch(text, index));
    return true;
}

wxString SharedRegex::Group(const wxString& text, size_t index) const {
    std::lock_guard<std::mutex> guard(lock);
    return regex.Matches(text) ? regex.GetMatch(text, index) : wxString();
}
