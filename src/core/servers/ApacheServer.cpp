#include "core/servers/ApacheServer.h"

#include "core/lang/LangTable.h"
#include "core/servers/ApacheErrorExplainer.h"
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
    const GenerationReport report = ConfigGenerator(paths).GenerateApache();
    note = report.failures + report.leftOut;
    if (!report.failures.empty()) {
        note += wxString::Format(GetLangText("SERVER_NOT_GENERATED"), "Apache") + "\n";
        starting = false;
        return true;
    }
    // A pid file left by a killed Apache makes the next one believe it runs already.
    const wxString pidFile = paths.ApacheFolder() + "/logs/httpd.pid";
    if (wxFileExists(pidFile))
        wxRemoveFile(pidFile);
    record = NewRecord(CommandLine(), paths.ApacheFolder());
    record->SetPathPrefix(paths.PhpFolder() + Platform::Get().PathListSeparator());
    // Otherwise the system's PHP adds its own configuration folder, loading extensions twice.
    record->SetVariable("PHP_INI_SCAN_DIR", "");
    note += RunOrForget(record, paths.ApacheExecutable());
    starting = false;
    return true;
}

void ApacheServer::Stop() {
    ProcessLookup::KillAll(InstallPaths::ApacheProcessName(), paths.ProgramFolder());
    if (record)
        record->IsActive(); // reaps the killed child at once
}

wxString ApacheServer::ReadOutput() {
    const wxString text = note + (record ? record->ReadOutput() : wxString());
    note.clear();
    return text + ApacheErrorExplainer(paths).Explain(text);
}
