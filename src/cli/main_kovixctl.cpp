// kovixctl: the panel's operations from the command line (see README).
#include "cli/CtlCommand.h"
#include "core/TextFiles.h"

#include <wx/init.h>
#include <wx/log.h>

#include <iostream>

int main(int argc, char** argv) {
    wxInitializer initializer(argc, argv);
    if (!initializer.IsOk()) {
        std::cerr << "kovixctl: cannot initialise wxWidgets\n";
        return 1;
    }
    wxLog::SetActiveTarget(new wxLogStderr);
    wxLog::SetLogLevel(wxLOG_Warning);
    TextFiles::InitEncoding();
    std::vector<wxString> arguments;
    for (int i = 1; i < argc; ++i)
        arguments.push_back(wxString(argv[i], wxConvUTF8));
    return RunKovixCtl(arguments, std::cout, std::cerr);
}
