#pragma once

#include "support/TempDir.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/string.h>

#include <windows.h>

// Paths of the build reach the tests as Unix paths ("/work/..."); under Wine the Z: drive is the
// Unix root. Windows paths pass unchanged, with backslashes.
inline wxString WindowsPath(const wxString& path) {
    wxString result = path.StartsWith("/") ? "Z:" + path : path;
    result.Replace("/", "\\");
    return result;
}

// The small console program of tests/windows/ChildProgram.cpp.
inline wxString ChildProgram() {
    return WindowsPath(CHILD_PROGRAM);
}

// A copy of the child program at relativePath inside dir (folders made), as a Windows path.
inline wxString CopyChildProgram(const TempDir& dir, const wxString& relativePath) {
    const wxString path = WindowsPath(dir.File(relativePath));
    wxFileName::Mkdir(wxFileName(path).GetPath(), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
    return wxCopyFile(ChildProgram(), path) ? path : wxString();
}

// Polls condition every 10 ms for up to 10 s.
template <typename Condition> bool WaitUntil(Condition condition) {
    for (int attempt = 0; attempt < 1000; ++attempt) {
        if (condition())
            return true;
        Sleep(10);
    }
    return condition();
}
