#include "gui/apache/WinDirectoryConf.h"

#include "core/lang/LangTable.h"
#include "gui/DialogParts.h"
#include "gui/apache/WinOthersConf.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

using namespace DialogParts;

wxBEGIN_EVENT_TABLE(WinDirectoryConf, wxDialog)
    EVT_LISTBOX(WinDirectoryConf::ID_OTHERS, WinDirectoryConf::OnOthersSelected)
    EVT_LISTBOX_DCLICK(WinDirectoryConf::ID_OTHERS, WinDirectoryConf::OnOthersDoubleClick)
    EVT_BUTTON(WinDirectoryConf::ID_OTHERS_ADD, WinDirectoryConf::OnOthersAdd)
    EVT_BUTTON(WinDirectoryConf::ID_OTHERS_REMOVE, WinDirectoryConf::OnOthersRemove)
    EVT_BUTTON(WinDirectoryConf::ID_OK, WinDirectoryConf::OnOk)
    EVT_BUTTON(WinDirectoryConf::ID_CANCEL, WinDirectoryConf::OnCancel)
wxEND_EVENT_TABLE()

WinDirectoryConf::WinDirectoryConf(wxWindow* parent, DirectoryRecord& record,
                                   const wxString& caption)
    : wxDialog(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "dialog"),
      record(record), working(record) {
    BuildControls();
    ApplyTexts();
    ShowRecord();
    SetEscapeId(ID_CANCEL);
}

void WinDirectoryConf::BuildControls() {
    const int gap = FromDIP(8);
    groupBox = new wxStaticBox(this, ID_GROUP, "Directory", wxDefaultPosition, wxDefaultSize, 0,
                               "groupBox");
    auto* group = new wxStaticBoxSizer(groupBox, wxVERTICAL);
    group->Add(BuildFields(), 0, wxEXPAND | wxALL, gap);
    group->Add(BuildCustomList(), 1, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, gap);

    BodyOverClosingRow(this, group,
                       ClosingRow(this, ID_STATIC_LINE, ID_OK, ID_CANCEL, "btn_Cancel"), gap);
}

// Path, options and AllowOverride, one labelled row each.
wxSizer* WinDirectoryConf::BuildFields() {
    const int gap = FromDIP(8);
    auto check = [this](int id, const char* label, const char* name) {
        return new wxCheckBox(groupBox, id, label, wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, name);
    };
    WxStaticText1 = Label(groupBox, ID_LABEL_DIRECTORY, "Directory :", "WxStaticText1");
    edit_Directory =
        new wxTextCtrl(groupBox, ID_DIRECTORY, "", wxDefaultPosition, wxSize(FromDIP(400), -1), 0,
                       wxDefaultValidator, "edit_Directory");
    check_OptionsFollowSymLinks =
        check(ID_FOLLOW_SYMLINKS, "Follow SymLinks", "check_OptionsFollowSymLinks");
    check_OptionsIncludes = check(ID_INCLUDES, "Includes", "check_OptionsIncludes");
    check_OptionsIndexes = check(ID_INDEXES, "Indexes", "check_OptionsIndexes");
    check_OptionsMultiViews = check(ID_MULTIVIEWS, "MultiViews", "check_OptionsMultiViews");
    radio_OverRideAll =
        new wxRadioButton(groupBox, ID_OVERRIDE_ALL, "All", wxDefaultPosition, wxDefaultSize,
                          wxRB_GROUP, wxDefaultValidator, "radio_OverRideAll");
    radio_OverRideNone =
        new wxRadioButton(groupBox, ID_OVERRIDE_NONE, "None", wxDefaultPosition, wxDefaultSize, 0,
                          wxDefaultValidator, "radio_OverRideNone");

    auto* options = new wxBoxSizer(wxHORIZONTAL);
    for (wxCheckBox* box : {check_OptionsFollowSymLinks, check_OptionsIncludes,
                            check_OptionsIndexes, check_OptionsMultiViews})
        options->Add(box, 0, wxRIGHT, 2 * gap);
    auto* overrides = new wxBoxSizer(wxHORIZONTAL);
    overrides->Add(radio_OverRideAll, 0, wxRIGHT, 2 * gap);
    overrides->Add(radio_OverRideNone);

    auto* grid = new wxFlexGridSizer(2, gap, gap);
    grid->AddGrowableCol(1);
    grid->Add(WxStaticText1, 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(edit_Directory, 1, wxEXPAND);
    grid->Add(Label(groupBox, ID_LABEL_OPTIONS, "Options :", "WxStaticText2"), 0,
              wxALIGN_CENTER_VERTICAL);
    grid->Add(options);
    grid->Add(Label(groupBox, ID_LABEL_OVERRIDE, "Allow Override :", "WxStaticText3"), 0,
              wxALIGN_CENTER_VERTICAL);
    grid->Add(overrides);
    return grid;
}

// The Custom lines: the list, with its add and remove buttons beside it.
wxSizer* WinDirectoryConf::BuildCustomList() {
    const int gap = FromDIP(8);
    label_Other = Label(groupBox, ID_LABEL_OTHER, "Custom : ", "label_Other");
    listBox = new wxListBox(groupBox, ID_OTHERS, wxDefaultPosition, wxSize(-1, FromDIP(110)), 0,
                            nullptr, wxLB_SINGLE, wxDefaultValidator, "listBox");
    btn_OthersRemove = SmallButton(groupBox, ID_OTHERS_REMOVE, "-", "btn_OthersRemove");
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    buttons->Add(SmallButton(groupBox, ID_OTHERS_ADD, "+", "btn_OthersAdd"), 0, wxBOTTOM, gap / 2);
    buttons->Add(btn_OthersRemove);

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(listBox, 1, wxEXPAND | wxRIGHT, gap / 2);
    row->Add(buttons);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(label_Other, 0, wxBOTTOM, gap / 2);
    column->Add(row, 1, wxEXPAND);
    return column;
}

void WinDirectoryConf::ApplyTexts() {
    SetTitle(GetLangText("DIRECTORY"));
    groupBox->SetLabel(GetLangText("DIRECTORY"));
    WxStaticText1->SetLabel(GetLangText("DIRECTORY2"));
    radio_OverRideAll->SetLabel(GetLangText("ALL"));
    radio_OverRideNone->SetLabel(GetLangText("NONE"));
    label_Other->SetLabel(GetLangText("OTHERS2"));
    FindWindow(ID_CANCEL)->SetLabel(GetLangText("CANCEL"));
}

void WinDirectoryConf::ShowRecord() {
    edit_Directory->ChangeValue(working.path);
    radio_OverRideAll->SetValue(working.AllowOverride);
    radio_OverRideNone->SetValue(!working.AllowOverride);
    check_OptionsFollowSymLinks->SetValue(working.FollowSymLinks);
    check_OptionsIncludes->SetValue(working.Includes);
    check_OptionsIndexes->SetValue(working.Indexes);
    check_OptionsMultiViews->SetValue(working.MultiViews);
    FillOthers();
}

void WinDirectoryConf::FillOthers() {
    FillList(listBox, working.others, btn_OthersRemove);
}

void WinDirectoryConf::OnOthersSelected(wxCommandEvent&) {
    btn_OthersRemove->Enable();
}

void WinDirectoryConf::OnOthersDoubleClick(wxCommandEvent&) {
    const int index = listBox->GetSelection();
    if (index == wxNOT_FOUND || index >= static_cast<int>(working.others.size()))
        return;
    WinOthersConf(this, working.others[index], "Others Conf").ShowModal();
    FillOthers();
}

void WinDirectoryConf::OnOthersAdd(wxCommandEvent&) {
    working.others.push_back(GetLangText("OTHERS_LINE_NEW"));
    FillOthers();
    SelectLast(listBox, btn_OthersRemove);
}

void WinDirectoryConf::OnOthersRemove(wxCommandEvent&) {
    const int index = listBox->GetSelection();
    if (index == wxNOT_FOUND || index >= static_cast<int>(working.others.size()))
        return;
    working.others.erase(working.others.begin() + index);
    FillOthers();
}

void WinDirectoryConf::OnOk(wxCommandEvent&) {
    working.path = edit_Directory->GetValue();
    working.AllowOverride = radio_OverRideAll->GetValue();
    working.FollowSymLinks = check_OptionsFollowSymLinks->GetValue();
    working.Includes = check_OptionsIncludes->GetValue();
    working.Indexes = check_OptionsIndexes->GetValue();
    working.MultiViews = check_OptionsMultiViews->GetValue();
    record = working;
    EndDialog(wxID_OK);
}

void WinDirectoryConf::OnCancel(wxCommandEvent&) {
    EndDialog(wxID_CANCEL);
}
