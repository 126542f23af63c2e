#pragma once

#include <wx/string.h>

#include <string>

// A fresh folder under the system's temporary folder, removed with everything in it at the end.
class TempDir {
public:
    explicit TempDir(const wxString& prefix = "kovix-test");
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const wxString& Path() const { return path; }
    wxString File(const wxString& name) const { return path + "/" + name; }

private:
    wxString path;
};

// Whole-file helpers for tests: raw bytes in and out, no encoding applied.
std::string ReadBytes(const wxString& path);
void WriteBytes(const wxString& path, const std::string& bytes);
