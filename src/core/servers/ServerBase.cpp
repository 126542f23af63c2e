#include "core/servers/ServerBase.h"

#include "core/servers/ProcessLookup.h"

#include <wx/filefn.h>

bool ServerBase::IsRunning() const {
    return ProcessLookup::IsRunning(processName, paths.ProgramFolder());
}

double ServerBase::CpuUse() {
    return CpuUse(ProcessLookup::Find(processName, paths.ProgramFolder()));
}

std::unique_ptr<ServerProcess> ServerBase::NewRecord(const wxString& commandLine,
                                                     const wxString& workingFolder) const {
    auto child = std::make_unique<ServerProcess>(commandLine, workingFolder);
    if (wxDirExists(paths.LibraryFolder()))
        child->SetLibraryFolder(paths.LibraryFolder());
    return child;
}
