#pragma once

#include <wx/arrstr.h>
#include <wx/string.h>

// One editable php.ini directive: what the settings list shows, how the directive is found in a
// php.ini file, and the value found there (empty until read, and when the file does not set the
// directive in letters).
struct PHPSettingRecord {
    int flags = 0;
    wxString label;
    wxString directive;
    // "^" + directive + "[\t ]*=[\t ]*([a-zA-Z]+)", the directive unescaped.
    wxString matchPattern;
    wxString lineTemplate;
    wxString description;
    wxString link;
    wxString type;
    wxString value;

    // "On", "Off" for a "bool" record; nothing for any other type.
    wxArrayString GetValueChoices() const;
    // True when text is the value, ignoring letter case.
    bool ValueEquals(const wxString& text) const;
    // The line that replaces the directive's lines in the file.
    wxString GetWriteLine() const { return directive + " = " + value; }
};
