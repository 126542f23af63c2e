#pragma once

#include "core/SwitchLine.h"
#include "core/php/PHPControlConfig.h"
#include "gui/ConfigWorker.h"

#include <vector>

// What the PHP dialog edits: the extension lines of the current PHP version's template and the
// values of its editable settings.
struct PhpConfData {
    std::vector<SwitchLine> extensions; // named by extension name
    PHPControlConfig settings{wxString()};
    wxString restoreFailures; // what a restore before the load could not write
};

wxDECLARE_EVENT(EVT_PHP_EXT_WORKER, wxThreadEvent);
#define EVT_PHP_EXT_WORKER_DONE(handler)                                                           \
    wx__DECLARE_EVT0(EVT_PHP_EXT_WORKER, wxThreadEventHandler(handler))

// The PHP dialog's worker, a ConfigWorker with the PHP template's load and save. "GET" reads the
// extension lines and the setting values of the template and hands them over as the completion's
// PhpConfData payload; asked to restore, it first puts php_initial.ini back over the template and
// posts RESTORED. "SAVE" switches the extension lines and writes the setting values of its copy.
class WorkedThread : public ConfigWorker {
public:
    static constexpr const char* RESTORED = "RESTORED";

    WorkedThread(wxEvtHandler* dialog, const InstallPaths& paths, bool restore);
    WorkedThread(wxEvtHandler* dialog, const InstallPaths& paths, PhpConfData data);
};
