#include "gui/ConfigDialog.h"

#include "gui/DialogParts.h"
#include "gui/LoadingControl.h"

#include <wx/hyperlink.h>
#include <wx/sizer.h>
#include <wx/statbox.h>

using namespace DialogParts;

ConfigDialog::ConfigDialog(wxWindow* parent, const wxString& title)
    : wxDialog(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "dialog") {
    Bind(wxEVT_HYPERLINK, &ConfigDialog::OnLink, this);
}

ConfigDialog::~ConfigDialog() {
    workers.StopAll();
}

void ConfigDialog::AddLoadingControl() {
    // Made last, so it lies above the pages.
    loading = new LoadingControl(this, wxID_ANY, GetClientSize().y / 2 - FromDIP(20));
}

void ConfigDialog::SetBusy(const wxString& text) {
    busy = true;
    LockForJob(true);
    loading->ShowText(text);
}

void ConfigDialog::ClearBusy() {
    busy = false;
    loading->Hide();
    LockForJob(false);
}

void ConfigDialog::StartWorker(std::unique_ptr<ConfigWorker> worker) {
    if (!workers.Start(std::move(worker)) && workers.IsEmpty())
        ClearBusy();
}

bool ConfigDialog::SaveSucceeded(const wxThreadEvent& event) {
    const wxString failures = event.GetPayload<wxString>();
    if (failures.empty())
        return true;
    ClearBusy();
    ShowFailures(failures);
    return false;
}

bool ConfigDialog::AcceptCompletion(const wxThreadEvent& event, bool progress) {
    if (!workers.Knows(event.GetInt()))
        return false;
    if (!progress)
        workers.Finish(event.GetInt());
    return true;
}

wxStaticBoxSizer* ConfigDialog::DescriptionBox(wxWindow* page, int boxId, wxStaticText*& label,
                                               int labelId, const wxString& labelName,
                                               wxHyperlinkCtrl*& link, int linkId,
                                               const wxString& linkName) {
    const int gap = FromDIP(8);
    auto* box = new wxStaticBox(page, boxId, "Description", wxDefaultPosition, wxDefaultSize, 0,
                                "groupBox");
    label = DescriptionPane(box, labelId, labelName);
    link = new wxHyperlinkCtrl(box, linkId, "link", "", wxDefaultPosition, wxDefaultSize,
                               wxHL_DEFAULT_STYLE, linkName);
    UseDescriptionFont(link);
    auto* group = new wxStaticBoxSizer(box, wxVERTICAL);
    group->Add(PaneOf(label), 1, wxEXPAND | wxALL, gap);
    group->Add(link, 0, wxLEFT | wxRIGHT | wxBOTTOM, gap);
    return group;
}

void ConfigDialog::OnLink(wxHyperlinkEvent& event) {
    OpenLink(event.GetURL());
}
