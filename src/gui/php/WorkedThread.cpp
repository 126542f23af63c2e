#include "gui/php/WorkedThread.h"

#include "core/Cleanup.h"
#include "core/FileErrors.h"
#include "core/TemplateSwitches.h"

wxDEFINE_EVENT(EVT_PHP_EXT_WORKER, wxThreadEvent);

namespace {

void Load(const InstallPaths& paths, bool restore, ConfigWorker& worker, PhpConfData& data) {
    using namespace TemplateSwitches;
    if (restore) {
        data.restoreFailures = Cleanup::RestorePhp(paths);
        worker.Post(WorkedThread::RESTORED);
    }
    for (const wxString& line : ListExtensionLines(paths))
        data.extensions.push_back(
            {line, ExtensionNameOf(ExtensionFileOf(line)), IsExtensionLineEnabled(line)});
    if (!worker.Stopping())
        data.settings = PHPControlConfig(paths);
}

wxString Save(const InstallPaths& paths, const PhpConfData& data) {
    using namespace TemplateSwitches;
    std::vector<wxString> lines;
    for (const SwitchLine& extension : data.extensions)
        lines.push_back(MakeExtensionLine(extension.line, extension.enabled));
    if (!WriteExtensionLines(paths, lines))
        return FileErrors::CannotWrite(paths.PhpSourceConfig());
    return data.settings.WriteValues() ? wxString()
                                       : FileErrors::CannotWrite(data.settings.GetPath());
}

} // namespace

WorkedThread::WorkedThread(wxEvtHandler* dialog, const InstallPaths& paths, bool restore)
    : ConfigWorker(dialog, EVT_PHP_EXT_WORKER, paths, restore, Load) {}

WorkedThread::WorkedThread(wxEvtHandler* dialog, const InstallPaths& paths, PhpConfData data)
    : ConfigWorker(dialog, EVT_PHP_EXT_WORKER, paths, std::move(data), Save) {}
