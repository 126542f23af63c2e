#include "gui/apache/WorkedThreadApacheConf.h"

#include "core/Cleanup.h"
#include "core/TemplateSwitches.h"

wxDEFINE_EVENT(EVT_APACHE_CONF_WORKER, wxThreadEvent);

WorkedThreadApacheConf::WorkedThreadApacheConf(wxEvtHandler* dialog, const InstallPaths& paths,
                                               bool restore)
    : ConfigWorker(dialog, EVT_APACHE_CONF_WORKER, false), paths(paths), restore(restore) {}

WorkedThreadApacheConf::WorkedThreadApacheConf(wxEvtHandler* dialog, const InstallPaths& paths,
                                               ApacheConfData data)
    : ConfigWorker(dialog, EVT_APACHE_CONF_WORKER, true), paths(paths), data(std::move(data)) {}

void WorkedThreadApacheConf::Work(wxThreadEvent& completion) {
    if (IsSave())
        Save();
    else
        Load(completion);
}

void WorkedThreadApacheConf::Load(wxThreadEvent& completion) {
    using namespace TemplateSwitches;
    if (restore)
        Cleanup::RestoreApache(paths.Get());
    for (const wxString& line : ListModuleLines(paths.Get()))
        data.modules.push_back({line, ModuleKeyOf(line), IsModuleLineEnabled(line)});
    if (Stopping())
        return;
    LoadVirtualHostFile(data.hosts, paths.Get());
    completion.SetPayload(data);
}

void WorkedThreadApacheConf::Save() const {
    using namespace TemplateSwitches;
    std::vector<wxString> lines;
    for (const SwitchLine& module : data.modules)
        lines.push_back(MakeModuleLine(module.line, module.enabled));
    WriteModuleLines(paths.Get(), lines);
    WriteVirtualHosts(data.hosts);
}
