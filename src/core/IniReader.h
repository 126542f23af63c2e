#pragma once

#include <wx/string.h>

#include <vector>

// The "key = value" lines of an INI-style text (kovix.ini, my.ini), each with the [section] it
// stands in. The key is the word right before "=" (it stops at a blank, so leading blanks and
// anything before them are not part of it; blanks and tabs may separate it from "="); the value
// is what follows "=" and its blanks, trailing blanks dropped. A section line is one whose first
// non-blank character is "["; lines without "=" are skipped. Entries come in file order, so a
// later one with the same key is meant to win.
struct IniEntry {
    wxString section; // the section line without blanks, e.g. "[mysqld]"; "" before the first
    wxString key;
    wxString value;
};

std::vector<IniEntry> ReadIniEntries(const wxString& text);

// The text between the value's opening double quote and the next one ("first" of
// "\"first\" \"second\""); false when the value does not begin with a quote or has no second.
bool QuotedPrefix(const wxString& value, wxString& inside);
// The value without the pair of double quotes around it, when it has such a pair.
wxString WithoutQuotes(const wxString& value);
