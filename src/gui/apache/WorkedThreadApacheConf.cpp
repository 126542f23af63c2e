#include "gui/apache/WorkedThreadApacheConf.h"

#include "core/Cleanup.h"
#include "core/FileErrors.h"
#include "core/TemplateSwitches.h"

wxDEFINE_EVENT(EVT_APACHE_CONF_WORKER, wxThreadEvent);

namespace {

void Load(const InstallPaths& paths, bool restore, ConfigWorker& worker, ApacheConfData& data) {
    using namespace TemplateSwitches;
    if (restore)
        data.restoreFailures = Cleanup::RestoreApache(paths);
    for (const wxString& line : ListModuleLines(paths))
        data.modules.push_back({line, ModuleKeyOf(line), IsModuleLineEnabled(line)});
    if (!worker.Stopping())
        LoadVirtualHostFile(data.hosts, paths);
}

wxString Save(const InstallPaths& paths, const ApacheConfData& data) {
    using namespace TemplateSwitches;
    std::vector<wxString> lines;
    for (const SwitchLine& module : data.modules)
        lines.push_back(MakeModuleLine(module.line, module.enabled));
    if (!WriteModuleLines(paths, lines))
        return FileErrors::CannotWrite(paths.ApacheSourceConfig());
    return WriteVirtualHosts(data.hosts) ? wxString() : FileErrors::CannotWrite(data.hosts.path);
}

} // namespace

WorkedThreadApacheConf::WorkedThreadApacheConf(wxEvtHandler* dialog, const InstallPaths& paths,
                                               bool restore)
    : ConfigWorker(dialog, EVT_APACHE_CONF_WORKER, paths, restore, Load) {}

WorkedThreadApacheConf::WorkedThreadApacheConf(wxEvtHandler* dialog, const InstallPaths& paths,
                                               ApacheConfData data)
    : ConfigWorker(dialog, EVT_APACHE_CONF_WORKER, paths, std::move(data), Save) {}
