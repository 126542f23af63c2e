#include "gui/php/WorkedThread.h"

#include "core/Cleanup.h"
#include "core/TemplateSwitches.h"

wxDEFINE_EVENT(EVT_PHP_EXT_WORKER, wxThreadEvent);

WorkedThread::WorkedThread(wxEvtHandler* dialog, const InstallPaths& paths, bool restore)
    : ConfigWorker(dialog, EVT_PHP_EXT_WORKER, false), paths(paths), restore(restore) {}

WorkedThread::WorkedThread(wxEvtHandler* dialog, const InstallPaths& paths, PhpConfData data)
    : ConfigWorker(dialog, EVT_PHP_EXT_WORKER, true), paths(paths), data(std::move(data)) {}

void WorkedThread::Work(wxThreadEvent& completion) {
    if (IsSave())
        Save();
    else
        Load(completion);
}

void WorkedThread::Load(wxThreadEvent& completion) {
    using namespace TemplateSwitches;
    if (restore) {
        Cleanup::RestorePhp(paths.Get());
        Post(RESTORED);
    }
    for (const wxString& line : ListExtensionLines(paths.Get()))
        data.extensions.push_back(
            {line, ExtensionNameOf(ExtensionFileOf(line)), IsExtensionLineEnabled(line)});
    if (Stopping())
        return;
    data.settings = PHPControlConfig(paths.Get());
    completion.SetPayload(data);
}

void WorkedThread::Save() const {
    using namespace TemplateSwitches;
    std::vector<wxString> lines;
    for (const SwitchLine& extension : data.extensions)
        lines.push_back(MakeExtensionLine(extension.line, extension.enabled));
    WriteExtensionLines(paths.Get(), lines);
    data.settings.WriteValues();
}
