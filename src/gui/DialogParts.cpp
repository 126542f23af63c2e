#include "gui/DialogParts.h"

#include "core/AppSettings.h"
#include "core/FileErrors.h"
#include "core/TreeLock.h"
#include "platform/Platform.h"

#include <wx/button.h>
#include <wx/filefn.h>
#include <wx/listbox.h>
#include <wx/msgdlg.h>
#include <wx/scrolwin.h>
#include <wx/sizer.h>
#include <wx/statline.h>
#include <wx/stattext.h>

namespace DialogParts {

wxStaticText* Label(wxWindow* parent, int id, const wxString& text, const wxString& name) {
    return new wxStaticText(parent, id, text, wxDefaultPosition, wxDefaultSize, 0, name);
}

wxButton* Button(wxWindow* parent, int id, const wxString& label, const wxString& name) {
    return new wxButton(parent, id, label, wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator,
                        name);
}

wxButton* SmallButton(wxWindow* parent, int id, const wxString& label, const wxString& name) {
    const int side = parent->FromDIP(28);
    return new wxButton(parent, id, label, wxDefaultPosition, wxSize(side, side), wxBU_EXACTFIT,
                        wxDefaultValidator, name);
}

wxSizer* ClosingRow(wxWindow* parent, int lineId, int okId, int cancelId,
                    const wxString& cancelName, wxWindow* leftButton) {
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    if (leftButton)
        buttons->Add(leftButton);
    buttons->AddStretchSpacer();
    buttons->Add(Button(parent, okId, "OK", "btn_OK"), 0, wxRIGHT, parent->FromDIP(8));
    buttons->Add(Button(parent, cancelId, "Cancel", cancelName));
    auto* row = new wxBoxSizer(wxVERTICAL);
    row->Add(new wxStaticLine(parent, lineId, wxDefaultPosition, wxDefaultSize, wxLI_HORIZONTAL,
                              "staticLine"),
             0, wxEXPAND | wxBOTTOM, parent->FromDIP(8));
    row->Add(buttons, 0, wxEXPAND);
    return row;
}

void FillList(wxListBox* list, const std::vector<wxString>& texts, wxWindow* removeButton) {
    list->Clear();
    for (const wxString& text : texts)
        list->Append(text);
    removeButton->Disable();
}

void SelectLast(wxListBox* list, wxWindow* removeButton) {
    if (list->IsEmpty())
        return;
    list->SetSelection(list->GetCount() - 1);
    removeButton->Enable();
}

int SelectionBelow(const wxListBox* list, size_t count) {
    const int index = list->GetSelection();
    return index != wxNOT_FOUND && static_cast<size_t>(index) < count ? index : -1;
}

wxStaticText* DescriptionPane(wxWindow* parent, int labelId, const wxString& name) {
    auto* pane = new wxScrolledWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL,
                                      "descriptionPane");
    pane->SetScrollRate(0, pane->FromDIP(10));
    pane->SetMinSize(pane->FromDIP(wxSize(360, 220)));
    auto* label = Label(pane, labelId, "", name);
    UseDescriptionFont(label);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(label, 0, wxEXPAND);
    pane->SetSizer(sizer);
    return label;
}

wxWindow* PaneOf(wxStaticText* description) {
    return description->GetParent();
}

void ShowFailures(wxWindow* parent, const wxString& failures) {
    if (!failures.empty())
        wxMessageBox(wxString(failures).Trim(), "Kovix", wxOK | wxICON_ERROR, parent);
}

void SaveSettingsChanges(wxWindow* parent, AppSettings& settings, const wxString& settingsFile) {
    wxString failure;
    {
        const TreeLock lock(wxPathOnly(settingsFile));
        if (!settings.SaveChanges(settingsFile))
            failure = FileErrors::CannotWrite(settingsFile);
    }
    ShowFailures(parent, failure);
}

void OpenLink(const wxString& url) {
    if (!url.empty())
        Platform::Get().OpenUrl(url);
}

void ShowDescription(wxStaticText* description, const wxString& text) {
    auto* pane = static_cast<wxScrolledWindow*>(PaneOf(description));
    description->SetLabelText(text);
    // Leave room for the scroll bar, which long texts bring.
    description->Wrap(pane->GetClientSize().x - pane->FromDIP(20));
    pane->FitInside();
    pane->Scroll(0, 0);
}

void UseDescriptionFont(wxWindow* control) {
    wxFont font = control->GetFont();
    if (font.SetFaceName("MS Sans Serif"))
        control->SetFont(font);
}

} // namespace DialogParts
