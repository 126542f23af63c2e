#include "gui/sites/WinSites.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "core/sites/LocalCertificate.h"
#include "core/sites/SiteConfig.h"
#include "gui/DialogParts.h"
#include "platform/Platform.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/listctrl.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

wxBEGIN_EVENT_TABLE(WinSites, wxDialog)
    EVT_LIST_ITEM_SELECTED(WinSites::ID_LIST, WinSites::OnSelect)
    EVT_LIST_ITEM_DESELECTED(WinSites::ID_LIST, WinSites::OnSelect)
    EVT_LIST_ITEM_ACTIVATED(WinSites::ID_LIST, WinSites::OnSelect)
    EVT_BUTTON(WinSites::ID_OPEN_HTTP, WinSites::OnOpenHttp)
    EVT_BUTTON(WinSites::ID_OPEN_HTTPS, WinSites::OnOpenHttps)
    EVT_CHECKBOX(WinSites::ID_HTTPS, WinSites::OnHttps)
    EVT_SPINCTRL(WinSites::ID_HTTPS_PORT, WinSites::OnHttpsPort)
    EVT_BUTTON(WinSites::ID_TRUST, WinSites::OnTrust)
    EVT_BUTTON(WinSites::ID_CLOSE, WinSites::OnClose)
    EVT_THREAD(WinSites::ID_TRUST_DONE, WinSites::OnTrustDone)
wxEND_EVENT_TABLE()

namespace {

const int GAP = 5;

wxButton* MakeButton(wxWindow* parent, int id, const wxString& key, const wxString& name) {
    return new wxButton(parent, id, GetLangText(key), wxDefaultPosition, wxDefaultSize, 0,
                        wxDefaultValidator, name);
}

} // namespace

WinSites::WinSites(wxWindow* parent, AppSettings& settings, const InstallPaths& paths)
    : wxDialog(parent, wxID_ANY, GetLangText("SITES"), wxDefaultPosition, wxDefaultSize,
               wxCAPTION | wxSYSTEM_MENU | wxCLOSE_BOX | wxRESIZE_BORDER, "WinSites"),
      settings(settings), paths(paths) {
    BuildControls();
    FillList();
    UpdateButtons();
    SetEscapeId(ID_CLOSE);
    Centre();
}

WinSites::~WinSites() {
    if (trustWorker.joinable())
        trustWorker.join();
}

void WinSites::BuildControls() {
    list_Sites = new wxListCtrl(this, ID_LIST, wxDefaultPosition, wxSize(560, 220),
                                wxLC_REPORT | wxLC_SINGLE_SEL, wxDefaultValidator, "list_Sites");
    list_Sites->AppendColumn(GetLangText("SITE_NAME"), wxLIST_FORMAT_LEFT, 330);
    list_Sites->AppendColumn(GetLangText("SITE_FOLDER"), wxLIST_FORMAT_LEFT, 220);
    label_Note =
        new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0, "label_Note");
    btn_OpenHttp = MakeButton(this, ID_OPEN_HTTP, "SITE_OPEN_HTTP", "btn_OpenHttp");
    btn_OpenHttps = MakeButton(this, ID_OPEN_HTTPS, "SITE_OPEN_HTTPS", "btn_OpenHttps");
    checkbox_Https = new wxCheckBox(this, ID_HTTPS, GetLangText("HTTPS_SERVE"), wxDefaultPosition,
                                    wxDefaultSize, 0, wxDefaultValidator, "checkbox_Https");
    spin_HttpsPort =
        new wxSpinCtrl(this, ID_HTTPS_PORT, "", wxDefaultPosition, wxSize(130, -1), wxSP_ARROW_KEYS,
                       1, 65535, settings.GetHttpsPort(), "spin_HttpsPort");
    checkbox_Https->SetValue(settings.GetHttpsEnabled());
    btn_Trust = MakeButton(this, ID_TRUST, "HTTPS_TRUST", "btn_Trust");

    auto* open = new wxBoxSizer(wxHORIZONTAL);
    open->Add(btn_OpenHttp, 0, wxRIGHT, GAP);
    open->Add(btn_OpenHttps);
    auto* https = new wxBoxSizer(wxHORIZONTAL);
    https->Add(checkbox_Https, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, GAP);
    https->Add(spin_HttpsPort, 0, wxALIGN_CENTER_VERTICAL);
    https->AddStretchSpacer();
    https->Add(btn_Trust);
    auto* rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(list_Sites, 1, wxEXPAND | wxALL, 2 * GAP);
    rows->Add(label_Note, 0, wxEXPAND | wxLEFT | wxRIGHT, 2 * GAP);
    rows->Add(open, 0, wxALL, 2 * GAP);
    rows->Add(https, 0, wxEXPAND | wxLEFT | wxRIGHT, 2 * GAP);
    rows->Add(MakeButton(this, ID_CLOSE, "CLOSE", "btn_Close"), 0, wxALIGN_RIGHT | wxALL, 2 * GAP);
    SetSizerAndFit(rows);
}

void WinSites::FillList() {
    sites = SiteConfig(paths).Sites();
    list_Sites->DeleteAllItems();
    for (const Site& site : sites.sites) {
        const long row =
            list_Sites->InsertItem(list_Sites->GetItemCount(), paths.SiteUrl(site.name, false));
        list_Sites->SetItem(row, 1, site.folder.AfterLast('/')); // the folder inside www
    }
    wxString note;
    if (!settings.GetSitesEnabled())
        note = GetLangText("SITES_OFF");
    else if (sites.sites.empty())
        note = GetLangText("SITES_NONE");
    for (const SkippedFolder& skipped : sites.skipped)
        note << (note.empty() ? "" : "\n") << skipped.Message();
    label_Note->SetLabel(note);
    label_Note->Wrap(list_Sites->GetSize().GetWidth());
    Fit();
}

void WinSites::UpdateButtons() {
    const bool selected = list_Sites->GetSelectedItemCount() == 1;
    btn_OpenHttp->Enable(selected);
    btn_OpenHttps->Enable(selected && settings.GetHttpsEnabled());
}

void WinSites::Open(bool https) {
    const long row = list_Sites->GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED);
    if (row >= 0 && row < static_cast<long>(sites.sites.size()))
        Platform::Get().OpenUrl(paths.SiteUrl(sites.sites[row].name, https));
}

void WinSites::OnSelect(wxListEvent&) {
    UpdateButtons();
}

void WinSites::OnOpenHttp(wxCommandEvent&) {
    Open(false);
}

void WinSites::OnOpenHttps(wxCommandEvent&) {
    Open(true);
}

void WinSites::OnHttps(wxCommandEvent&) {
    settings.SetBool(AppSettings::HTTPS_ENABLED, checkbox_Https->GetValue());
    SaveSettings();
    UpdateButtons();
}

void WinSites::OnHttpsPort(wxSpinEvent&) {
    settings.SetString(AppSettings::HTTPS_PORT, wxString::Format("%d", spin_HttpsPort->GetValue()));
    SaveSettings();
}

void WinSites::SaveSettings() {
    DialogParts::SaveSettingsChanges(this, settings, paths.SettingsFile());
}

void WinSites::OnTrust(wxCommandEvent&) {
    if (trustWorker.joinable())
        trustWorker.join();
    btn_Trust->Disable();
    const LocalCertificate certificate(paths);
    trustWorker = std::thread([this, certificate] {
        const wxString problem = certificate.TrustForBrowsers();
        auto* done = new wxThreadEvent(wxEVT_THREAD, ID_TRUST_DONE);
        done->SetString(
            problem.empty()
                ? wxString::Format(GetLangText("HTTPS_TRUSTED"), certificate.SystemTrustCommand())
                : wxString::Format(GetLangText("HTTPS_NOT_TRUSTED"), problem));
        done->SetInt(problem.empty() ? 1 : 0);
        wxQueueEvent(this, done);
    });
}

void WinSites::OnTrustDone(wxThreadEvent& event) {
    btn_Trust->Enable();
    wxMessageBox(event.GetString(), "Kovix",
                 wxOK | (event.GetInt() ? wxICON_INFORMATION : wxICON_WARNING), this);
}

void WinSites::OnClose(wxCommandEvent&) {
    EndModal(wxID_CLOSE);
}
