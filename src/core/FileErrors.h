#pragma once

#include <wx/string.h>

// The messages of a file operation that failed, in the current language, each naming the file
// and the system's reason. Called right after the failed call, whose reason the system still
// holds.
namespace FileErrors {

wxString CannotRead(const wxString& path);
wxString CannotWrite(const wxString& path);
wxString CannotRemove(const wxString& path);

} // namespace FileErrors
