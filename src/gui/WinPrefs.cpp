#include "gui/WinPrefs.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "gui/DialogParts.h"
#include "platform/Platform.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/combobox.h>
#include <wx/filedlg.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

wxBEGIN_EVENT_TABLE(WinPrefs, wxDialog)
    EVT_BUTTON(WinPrefs::ID_SELECT_EDITOR, WinPrefs::OnSelectEditor)
    EVT_COMBOBOX(WinPrefs::ID_LANG, WinPrefs::OnLanguage)
    EVT_BUTTON(WinPrefs::ID_CANCEL, WinPrefs::OnCancel)
    EVT_BUTTON(WinPrefs::ID_OK, WinPrefs::OnOk)
wxEND_EVENT_TABLE()

namespace {

const int GAP = 5;

} // namespace

WinPrefs::WinPrefs(wxWindow* parent, AppSettings& settings, const wxString& settingsFile,
                   const wxString& title)
    : wxDialog(parent, wxID_ANY, title, wxDefaultPosition, wxDefaultSize,
               wxCAPTION | wxSYSTEM_MENU | wxCLOSE_BOX, "dialog"),
      settings(settings), settingsFile(settingsFile) {
    BuildControls();
    combo_Lang->SetSelection(GetLangIndex());
    checkbox_StartServerOnStart->SetValue(settings.GetStartServersOnStart());
    checkbox_StartSystray->SetValue(settings.GetStartInTray());
    checkbox_AutoRestartFileChanged->SetValue(settings.GetAutoRestart());
    checkbox_Sites->SetValue(settings.GetSitesEnabled());
    edit_TextEditor->SetValue(settings.GetTextEditor());
    ApplyTexts();
    SetAffirmativeId(ID_OK);
    SetEscapeId(ID_CANCEL);
    Centre();
}

void WinPrefs::BuildControls() {
    SetTitle("Preferences");
    groupBox = new wxStaticBox(this, ID_GROUP, "Preferences", wxDefaultPosition, wxDefaultSize, 0,
                               "groupBox");
    checkbox_StartServerOnStart = new wxCheckBox(
        groupBox, ID_START_ON_START, "Start Server on start application", wxDefaultPosition,
        wxDefaultSize, 0, wxDefaultValidator, "checkbox_StartServerOnStart");
    checkbox_StartSystray =
        new wxCheckBox(groupBox, ID_START_SYSTRAY, "Start in Systray Mode", wxDefaultPosition,
                       wxDefaultSize, 0, wxDefaultValidator, "checkbox_StartSystray");
    checkbox_AutoRestartFileChanged =
        new wxCheckBox(groupBox, ID_AUTO_RESTART, "Auto Restart", wxDefaultPosition, wxDefaultSize,
                       0, wxDefaultValidator, "checkbox_AutoRestartFileChanged");
    checkbox_Sites = new wxCheckBox(groupBox, ID_SITES, "Sites", wxDefaultPosition, wxDefaultSize,
                                    0, wxDefaultValidator, "checkbox_Sites");
    label_TextEditor =
        new wxStaticText(groupBox, ID_LABEL_EDITOR, "Text Editor : ", wxDefaultPosition,
                         wxDefaultSize, 0, "label_TextEditor");
    edit_TextEditor = new wxTextCtrl(groupBox, ID_EDITOR, "", wxDefaultPosition, wxSize(260, -1), 0,
                                     wxDefaultValidator, "edit_TextEditor");
    btn_SelectEditor = new wxButton(groupBox, ID_SELECT_EDITOR, "Select", wxDefaultPosition,
                                    wxDefaultSize, 0, wxDefaultValidator, "btn_SelectEditor");
    combo_Lang = new wxComboBox(groupBox, ID_LANG, "", wxDefaultPosition, wxSize(160, -1),
                                GetLangList(), wxCB_READONLY, wxDefaultValidator, "combo_Lang");

    auto* editor = new wxBoxSizer(wxHORIZONTAL);
    editor->Add(label_TextEditor, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, GAP);
    editor->Add(edit_TextEditor, 1, wxALIGN_CENTER_VERTICAL | wxRIGHT, GAP);
    editor->Add(btn_SelectEditor, 0, wxALIGN_CENTER_VERTICAL);
    auto* group = new wxStaticBoxSizer(groupBox, wxVERTICAL);
    group->Add(combo_Lang, 0, wxALL, GAP);
    group->Add(checkbox_StartServerOnStart, 0, wxALL, GAP);
    group->Add(checkbox_StartSystray, 0, wxALL, GAP);
    group->Add(checkbox_AutoRestartFileChanged, 0, wxALL, GAP);
    group->Add(editor, 0, wxEXPAND | wxALL, GAP);
    group->Add(checkbox_Sites, 0, wxALL, GAP);

    btn_cancel = new wxButton(this, ID_CANCEL, "Cancel", wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, "btn_cancel");
    auto* buttons = new wxBoxSizer(wxHORIZONTAL);
    buttons->Add(new wxButton(this, ID_OK, "OK", wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, "btn_OK"),
                 0, wxRIGHT, GAP);
    buttons->Add(btn_cancel);
    auto* rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(group, 1, wxEXPAND | wxALL, 2 * GAP);
    rows->Add(new wxStaticLine(this, ID_STATIC_LINE, wxDefaultPosition, wxDefaultSize,
                               wxLI_HORIZONTAL, "staticLine"),
              0, wxEXPAND | wxLEFT | wxRIGHT, 2 * GAP);
    rows->Add(buttons, 0, wxALIGN_RIGHT | wxALL, 2 * GAP);
    SetSizer(rows);
}

void WinPrefs::ApplyTexts() {
    btn_SelectEditor->SetLabel(GetLangText("PREF_TEXT_EDITOR_SELECT"));
    label_TextEditor->SetLabel(GetLangText("PREF_TEXT_EDITOR"));
    checkbox_AutoRestartFileChanged->SetLabel(GetLangText("MESSAGE_AUTO_RESTART_FILE_CONFIG"));
    checkbox_StartSystray->SetLabel(GetLangText("MESSAGE_START_SYSTRAYMODE"));
    checkbox_StartServerOnStart->SetLabel(GetLangText("MESSAGE_START_SERVER_ON_START"));
    checkbox_Sites->SetLabel(GetLangText("PREF_SITES"));
    groupBox->SetLabel(GetLangText("PREFERENCES"));
    btn_cancel->SetLabel(GetLangText("CANCEL"));
    GetSizer()->SetSizeHints(this);
    Layout();
}

void WinPrefs::OnSelectEditor(wxCommandEvent&) {
    wxFileDialog dialog(this, GetLangText("PREF_TEXT_EDITOR_SELECT_MESSAGE"), "", "",
                        Platform::Get().ProgramFileFilter(), wxFD_OPEN, wxDefaultPosition,
                        wxDefaultSize, "filedlg");
    dialog.SetName("filedlg"); // GTK's file dialog ignores the name it is given
    if (dialog.ShowModal() == wxID_OK)
        edit_TextEditor->SetValue(dialog.GetPath());
}

void WinPrefs::OnLanguage(wxCommandEvent&) {
    settings.SetLanguage(SetLangIndex(combo_Lang->GetSelection()));
    ApplyTexts();
}

void WinPrefs::OnCancel(wxCommandEvent&) {
    EndModal(wxID_CANCEL);
}

void WinPrefs::OnOk(wxCommandEvent&) {
    settings.SetBool(AppSettings::START_ON_START, checkbox_StartServerOnStart->GetValue());
    settings.SetBool(AppSettings::START_SYSTRAY_MODE, checkbox_StartSystray->GetValue());
    settings.SetBool(AppSettings::AUTO_RESTAT_CONFIG_CHANGED,
                     checkbox_AutoRestartFileChanged->GetValue());
    settings.SetTextEditor(edit_TextEditor->GetValue());
    settings.SetBool(AppSettings::SITES_ENABLED, checkbox_Sites->GetValue());
    DialogParts::SaveSettingsChanges(this, settings, settingsFile);
    EndModal(wxID_OK);
}
