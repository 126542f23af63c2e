#include "gui/apache/WinAliasConf.h"

#include "core/lang/LangTable.h"
#include "gui/DialogParts.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

using namespace DialogParts;

wxBEGIN_EVENT_TABLE(WinAliasConf, wxDialog)
    EVT_BUTTON(WinAliasConf::ID_OK, WinAliasConf::OnOk)
    EVT_BUTTON(WinAliasConf::ID_CANCEL, WinAliasConf::OnCancel)
wxEND_EVENT_TABLE()

WinAliasConf::WinAliasConf(wxWindow* parent, AliasRecord& record, const wxString& caption)
    : wxDialog(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "dialog"),
      record(record) {
    BuildControls();
    ApplyTexts();
    edit_Name->ChangeValue(record.name);
    edit_Folder->ChangeValue(record.folder);
    SetEscapeId(ID_CANCEL);
}

void WinAliasConf::BuildControls() {
    const int gap = FromDIP(8);
    groupBox =
        new wxStaticBox(this, ID_GROUP, "Alias", wxDefaultPosition, wxDefaultSize, 0, "groupBox");
    WxStaticText1 = Label(groupBox, ID_LABEL_NAME, "Alias Name :", "WxStaticText1");
    WxStaticText2 = Label(groupBox, ID_LABEL_FOLDER, "Alias Folder : ", "WxStaticText2");
    const wxSize editSize(FromDIP(320), -1);
    edit_Name = new wxTextCtrl(groupBox, ID_NAME, "", wxDefaultPosition, editSize, 0,
                               wxDefaultValidator, "edit_Name");
    edit_Folder = new wxTextCtrl(groupBox, ID_FOLDER, "", wxDefaultPosition, editSize, 0,
                                 wxDefaultValidator, "edit_Folder");

    auto* grid = new wxFlexGridSizer(2, gap, gap);
    grid->AddGrowableCol(1);
    grid->Add(WxStaticText1, 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(edit_Name, 1, wxEXPAND);
    grid->Add(WxStaticText2, 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(edit_Folder, 1, wxEXPAND);
    auto* group = new wxStaticBoxSizer(groupBox, wxVERTICAL);
    group->Add(grid, 1, wxEXPAND | wxALL, gap);

    BodyOverClosingRow(this, group,
                       ClosingRow(this, ID_STATIC_LINE, ID_OK, ID_CANCEL, "btn_Cancel"), gap);
}

void WinAliasConf::ApplyTexts() {
    SetTitle(GetLangText("ALIAS"));
    groupBox->SetLabel(GetLangText("ALIAS"));
    WxStaticText1->SetLabel(GetLangText("ALIAS_NAME"));
    WxStaticText2->SetLabel(GetLangText("ALIAS_FOLDER"));
    FindWindow(ID_CANCEL)->SetLabel(GetLangText("CANCEL"));
}

void WinAliasConf::OnOk(wxCommandEvent&) {
    record.name = edit_Name->GetValue();
    record.folder = edit_Folder->GetValue();
    EndDialog(wxID_OK);
}

void WinAliasConf::OnCancel(wxCommandEvent&) {
    EndDialog(wxID_CANCEL);
}
