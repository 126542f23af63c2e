#pragma once

#include "core/InstallPaths.h"
#include "core/sites/SiteList.h"

#include <wx/dialog.h>

#include <thread>

class AppSettings;
class wxButton;
class wxCheckBox;
class wxListCtrl;
class wxListEvent;
class wxSpinCtrl;
class wxSpinEvent;
class wxStaticText;
class wxThreadEvent;

// The sites made from the folders of www/: their addresses, opening one in the browser over HTTP
// or HTTPS, serving HTTPS or not and on which port (stored at once, in force at Apache's next
// start) and trusting
// the tree's local authority. Trusting runs mkcert on the dialog's own worker, which the dialog
// joins before it goes; the answer comes back by event.
class WinSites : public wxDialog {
public:
    enum {
        ID_LIST = 1800,
        ID_OPEN_HTTP,
        ID_OPEN_HTTPS,
        ID_HTTPS,
        ID_HTTPS_PORT,
        ID_TRUST,
        ID_CLOSE,
        ID_TRUST_DONE,
    };

    WinSites(wxWindow* parent, AppSettings& settings, const InstallPaths& paths);
    ~WinSites() override;

private:
    void BuildControls();
    void FillList();
    void UpdateButtons();
    void Open(bool https);
    // Writes the settings at once; says so when the file cannot be written.
    void SaveSettings();

    void OnSelect(wxListEvent& event);
    void OnOpenHttp(wxCommandEvent& event);
    void OnOpenHttps(wxCommandEvent& event);
    void OnHttps(wxCommandEvent& event);
    void OnHttpsPort(wxSpinEvent& event);
    void OnTrust(wxCommandEvent& event);
    void OnTrustDone(wxThreadEvent& event);
    void OnClose(wxCommandEvent& event);

    AppSettings& settings;
    InstallPaths paths;
    SiteList sites;
    std::thread trustWorker;

    wxListCtrl* list_Sites = nullptr;
    wxStaticText* label_Note = nullptr;
    wxButton* btn_OpenHttp = nullptr;
    wxButton* btn_OpenHttps = nullptr;
    wxCheckBox* checkbox_Https = nullptr;
    wxSpinCtrl* spin_HttpsPort = nullptr;
    wxButton* btn_Trust = nullptr;

    wxDECLARE_EVENT_TABLE();
};
