#include "support/TempDir.h"

#include <wx/filefn.h>
#include <wx/filename.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

// A fresh scratch file name is unique (mkdtemp is not on every system): the folder takes its place.
TempDir::TempDir(const wxString& prefix) {
    const wxString name =
        wxFileName::CreateTempFileName(wxFileName::GetTempDir() + "/" + prefix + "-");
    if (name.empty() || !wxRemoveFile(name) || !wxMkdir(name, 0700))
        throw std::runtime_error("cannot create a temporary folder");
    path = name;
}

TempDir::~TempDir() {
    wxFileName::Rmdir(path, wxPATH_RMDIR_RECURSIVE);
}

std::string ReadBytes(const wxString& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path.fn_str(), std::ios::binary).rdbuf();
    return bytes.str();
}

void WriteBytes(const wxString& path, const std::string& bytes) {
    std::ofstream(path.fn_str(), std::ios::binary | std::ios::trunc) << bytes;
}
