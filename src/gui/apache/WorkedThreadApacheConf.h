#pragma once

#include "core/SwitchLine.h"
#include "core/apache/VirtualHostFile.h"
#include "gui/ConfigWorker.h"

#include <vector>

// What the Apache dialog edits: the virtual hosts and the LoadModule lines of the Apache template.
struct ApacheConfData {
    VirtualHostFile hosts;
    std::vector<SwitchLine> modules; // named by module key
    wxString restoreFailures;        // what a restore before the load could not write
};

wxDECLARE_EVENT(EVT_APACHE_CONF_WORKER, wxThreadEvent);
#define EVT_APACHE_CONF_WORKER_DONE(handler)                                                       \
    wx__DECLARE_EVT0(EVT_APACHE_CONF_WORKER, wxThreadEventHandler(handler))

// The Apache dialog's worker, a ConfigWorker with the Apache template's load and save. "GET"
// reads the module lines and the virtual hosts of the template, after putting
// httpd_initial.conf back over it when asked to restore, and hands them over as the completion's
// ApacheConfData payload. "SAVE" switches the module lines and writes the virtual hosts of its
// copy.
class WorkedThreadApacheConf : public ConfigWorker {
public:
    WorkedThreadApacheConf(wxEvtHandler* dialog, const InstallPaths& paths, bool restore);
    WorkedThreadApacheConf(wxEvtHandler* dialog, const InstallPaths& paths, ApacheConfData data);
};
