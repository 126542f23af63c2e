#include "support/FakeServer.h"

#include <wx/filefn.h>
#include <wx/filename.h>

#include <chrono>
#include <stdexcept>
#include <thread>

FakeServer::FakeServer(const wxString& root, const wxString& relativePath, const wxString& program,
                       const wxString& arguments) {
    const wxString path = root + "/" + relativePath;
    wxFileName::Mkdir(wxFileName(path).GetPath(), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
    ChildSpec launch;
    launch.commandLine = path + " " + arguments;
    launch.workingFolder = root;
    if (!wxCopyFile(program, path) || wxChmod(path, 0755) != 0 ||
        !(child = Platform::Get().StartHidden(launch)))
        throw std::runtime_error("cannot start " + path.utf8_string());
}

FakeServer::~FakeServer() {
    if (child->IsActive())
        Platform::Get().KillProcess(child->Pid());
    for (int i = 0; i < 400 && child->IsActive(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}
