#include "gui/WinMainApp.h"

#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "gui/WinKovix.h"
#include "gui/WinTaskBarIcon.h"
#include "platform/Platform.h"

#include <wx/image.h>
#include <wx/msgdlg.h>

bool WinMainApp::OnInit() {
    TextFiles::InitEncoding();
    const wxString programFolder = InstallPaths::ExecutableFolder();
    settings = std::make_unique<AppSettings>();
    settings->Load(InstallPaths(programFolder, *settings).SettingsFile());
    InitLangTable(*settings);
    if (!ClaimSingleInstance(instanceChecker))
        return false;
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);

    auto* window = new WinKovix(programFolder, *settings);
    SetTopWindow(window);
    // With no tray to return from, tray mode would leave the panel unreachable.
    if (!settings->GetStartInTray() || !WinTaskBarIcon::IsAvailable())
        window->Show();
    return true;
}

int WinMainApp::OnExit() {
    instanceChecker.reset();
    settings.reset();
    return wxApp::OnExit();
}

wxString WinMainApp::InstanceName() {
    return wxString::Format("Kovix-Server-%s", Platform::Get().LoginName());
}

bool WinMainApp::ClaimSingleInstance(std::unique_ptr<wxSingleInstanceChecker>& checker) {
    checker = std::make_unique<wxSingleInstanceChecker>(InstanceName());
    if (!checker->IsAnotherRunning())
        return true;
    wxMessageBox("Kovix is already running.", "Kovix", wxOK);
    return false;
}
