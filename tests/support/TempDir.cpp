#include "support/TempDir.h"

#include <wx/filename.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

TempDir::TempDir(const wxString& prefix) {
    std::string pattern = (wxFileName::GetTempDir() + "/" + prefix + "-XXXXXX").utf8_string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("cannot create a temporary folder");
    path = wxString::FromUTF8(pattern);
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
