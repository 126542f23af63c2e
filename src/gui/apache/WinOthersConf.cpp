#include "gui/apache/WinOthersConf.h"

#include "core/lang/LangTable.h"
#include "gui/DialogParts.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

using namespace DialogParts;

wxBEGIN_EVENT_TABLE(WinOthersConf, wxDialog)
    EVT_BUTTON(WinOthersConf::ID_OK, WinOthersConf::OnOk)
    EVT_BUTTON(WinOthersConf::ID_CANCEL, WinOthersConf::OnCancel)
wxEND_EVENT_TABLE()

WinOthersConf::WinOthersConf(wxWindow* parent, wxString& line, const wxString& caption)
    : wxDialog(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "dialog"),
      line(line) {
    BuildControls();
    ApplyTexts();
    edit_Name->ChangeValue(line);
    SetEscapeId(ID_CANCEL);
}

void WinOthersConf::BuildControls() {
    const int gap = FromDIP(8);
    groupBox = new wxStaticBox(this, ID_GROUP, "Parameter", wxDefaultPosition, wxDefaultSize, 0,
                               "groupBox");
    WxStaticText1 = Label(groupBox, ID_LABEL, "Parameter : ", "WxStaticText1");
    edit_Name = new wxTextCtrl(groupBox, ID_NAME, "", wxDefaultPosition, wxSize(FromDIP(380), -1),
                               0, wxDefaultValidator, "edit_Name");

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(WxStaticText1, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, gap);
    row->Add(edit_Name, 1, wxEXPAND);
    auto* group = new wxStaticBoxSizer(groupBox, wxVERTICAL);
    group->Add(row, 1, wxEXPAND | wxALL, gap);

    BodyOverClosingRow(this, group,
                       ClosingRow(this, ID_STATIC_LINE, ID_OK, ID_CANCEL, "btn_Cancel"), gap);
}

// The title stays the caption the caller gave.
void WinOthersConf::ApplyTexts() {
    groupBox->SetLabel(GetLangText("PARAMETER"));
    WxStaticText1->SetLabel(GetLangText("PARAMETER2"));
    FindWindow(ID_CANCEL)->SetLabel(GetLangText("CANCEL"));
}

void WinOthersConf::OnOk(wxCommandEvent&) {
    line = edit_Name->GetValue();
    EndDialog(wxID_OK);
}

void WinOthersConf::OnCancel(wxCommandEvent&) {
    EndDialog(wxID_CANCEL);
}
