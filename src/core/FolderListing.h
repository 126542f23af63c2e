#pragma once

#include <wx/dir.h>
#include <wx/string.h>

#include <vector>

// The names (not paths) of the entries of folder that match wildcard, of the kinds flags asks
// for (wxDIR_FILES, wxDIR_DIRS, wxDIR_HIDDEN), in the order the file system lists them; none
// when the folder is missing or cannot be opened.
std::vector<wxString> ListFolder(const wxString& folder, const wxString& wildcard, int flags);
