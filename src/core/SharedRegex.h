#pragma once

#include <wx/regex.h>
#include <wx/string.h>

#include <mutex>
#include <vector>

// A regular expression compiled once and matched from any thread. wxRegEx keeps the sub-matches
// of its last match inside itself, so a match and the reading of its groups happen under one
// lock; the lock is never contended for long, a match of one line being short. Every compiled
// pattern that outlives one call is one of these.
class SharedRegex {
public:
    explicit SharedRegex(const wxString& expression, int flags = wxRE_EXTENDED);
    SharedRegex(const SharedRegex&) = delete;
    SharedRegex& operator=(const SharedRegex&) = delete;

    bool Matches(const wxString& text) const;
    // Whether text matches, and then the whole match and every sub-match, in order.
    bool Match(const wxString& text, std::vector<wxString>& groups) const;
    // Sub-match index of text, or "" when text does not match.
    wxString Group(const wxString& text, size_t index) const;

private:
    wxRegEx regex;
    mutable std::mutex lock;
};
