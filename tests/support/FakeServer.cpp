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
    if (!wxCopyFile(program, path))
        throw std::runtime_error("cannot copy " + program.utf8_string() + " to " +
                                 path.utf8_string());
    wxChmod(path, 0755);
    ChildSpec launch;
    launch.commandLine = path + " " + arguments;
    launch.workingFolder = root;
    child = Platform::Get().StartHidden(launch);
    if (!child)
        throw std::runtime_error("cannot start " + path.utf8_string());
}

FakeServer::~FakeServer() {
    if (!child->IsActive())
        return;
    Platform::Get().KillProcess(child->Pid());
    for (int i = 0; i < 400 && child->IsActive(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

long FakeServer::Pid() const {
    return child->Pid();
}

bool FakeServer::IsActive() {
    return child->IsActive();
}
