#pragma once

#include <wx/string.h>

// Compares two release numbers "major.minor.third.fourth", whose fields may be separated by "."
// or ",". A field counts by its leading digits (none: 0), missing fields count 0 and fields after
// the fourth are ignored, so "1.1" equals "1.1.0.0" and "1,2" equals "1.2".
// Returns 1 when a is older than b, -1 when a is newer, 0 when both name the same release.
int CompareVersions(const wxString& a, const wxString& b);
