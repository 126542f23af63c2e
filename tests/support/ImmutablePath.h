#pragma once

#include <wx/string.h>

// A file or folder that nothing may replace, remove or (for a folder) add to, even root
// (chattr +i), until the guard goes. made is false where the file system has no such flag.
struct ImmutablePath {
    explicit ImmutablePath(const wxString& path);
    ~ImmutablePath();
    ImmutablePath(const ImmutablePath&) = delete;
    ImmutablePath& operator=(const ImmutablePath&) = delete;

    wxString path;
    bool made;
};
