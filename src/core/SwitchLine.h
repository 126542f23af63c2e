#pragma once

#include <wx/string.h>

// One line of a template that a dialog switches on and off (a LoadModule line of the Apache
// template, an extension line of the PHP template): the line as the file has it, the name the
// dialog lists it under, and whether it is to be switched on.
struct SwitchLine {
    wxString line;
    wxString name;
    bool enabled = false;
};
