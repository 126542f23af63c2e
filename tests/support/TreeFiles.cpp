#include "support/TreeFiles.h"

#include "support/TempDir.h"

#include <wx/filename.h>

void MakeTreeFolder(const wxString& root, const wxString& relativePath) {
    wxFileName::Mkdir(root + "/" + relativePath, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
}

void WriteTreeFile(const wxString& root, const wxString& relativePath, const std::string& bytes) {
    const wxString path = root + "/" + relativePath;
    wxFileName::Mkdir(wxFileName(path).GetPath(), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
    WriteBytes(path, bytes);
}
