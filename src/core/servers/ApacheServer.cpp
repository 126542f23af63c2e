#include "core/servers/ApacheServer.h"

#include "core/servers/ProcessLookup.h"

#include <wx/filefn.h>

ApacheServer::ApacheServer(const InstallPaths& paths)
    : ServerBase(paths, InstallPaths::ApacheProcessName()),
      apacheSource(TemplateWatch::ApacheSource(paths)), phpSource(TemplateWatch::PhpSource(paths)) {
}

wxString ApacheServer::CommandLine() const {
    return paths.ApacheExecutable() + " -DFOREGROUND -f \"" + paths.ApacheLiveConfig() + "\"";
}

bool ApacheServer::Start() {
    if (KeepIfActive(record))
        return true;
    if (starting)
        return false;
    starting = true;
    note = ConfigGenerator(paths).GenerateApache();
    // A pid file left by a killed Apache makes the next one believe it runs already.
    const wxString pidFile = paths.ApacheFolder() + "/logs/httpd.pid";
    if (wxFileExists(pidFile))
        wxRemoveFile(pidFile);
    record = NewRecord(CommandLine(), paths.ApacheFolder());
    record->SetPathPrefix(paths.PhpFolder() + Platform::Get().PathListSeparator());
    // Otherwise the system's PHP adds its own configuration folder, loading extensions twice.
    record->SetVariable("PHP_INI_SCAN_DIR", "");
    RunOrForget(record);
    starting = false;
    return true;
}

void ApacheServer::Stop() {
    ProcessLookup::KillAll(InstallPaths::ApacheProcessName(), paths.ProgramFolder());
    if (record)
        record->IsActive(); // reaps the killed child at once
}

wxString ApacheServer::ReadOutput() {
    wxString text = note + (record ? record->ReadOutput() : wxString());
    note.clear();
    return text;
}
