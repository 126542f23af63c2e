#pragma once

#include <wx/dialog.h>

class AppSettings;
class wxButton;
class wxCheckBox;
class wxComboBox;
class wxStaticBox;
class wxStaticText;
class wxTextCtrl;

// The preferences dialog: start the servers on launch, start in the tray, restart on template
// changes, the text editor and the language. The language takes effect as soon as it is chosen
// and stays even on Cancel; everything else is written only by OK, which also saves the
// settings file.
class WinPrefs : public wxDialog {
public:
    enum {
        ID_STATIC_LINE = 1004,
        ID_OK = 1005,
        ID_CANCEL = 1006,
        ID_GROUP = 1008,
        ID_START_ON_START = 1009,
        ID_START_SYSTRAY = 1010,
        ID_LANG = 1011,
        ID_AUTO_RESTART = 1012,
        ID_LABEL_EDITOR = 1013,
        ID_EDITOR = 1014,
        ID_SELECT_EDITOR = 1015,
        ID_SITES = 1016
    };

    WinPrefs(wxWindow* parent, AppSettings& settings, const wxString& settingsFile,
             const wxString& title = "Preference");

private:
    void BuildControls();
    void ApplyTexts();

    void OnSelectEditor(wxCommandEvent& event);
    void OnLanguage(wxCommandEvent& event);
    void OnCancel(wxCommandEvent& event);
    void OnOk(wxCommandEvent& event);

    AppSettings& settings;
    wxString settingsFile;
    wxButton* btn_SelectEditor = nullptr;
    wxTextCtrl* edit_TextEditor = nullptr;
    wxStaticText* label_TextEditor = nullptr;
    wxCheckBox* checkbox_AutoRestartFileChanged = nullptr;
    wxCheckBox* checkbox_Sites = nullptr;
    wxComboBox* combo_Lang = nullptr;
    wxCheckBox* checkbox_StartSystray = nullptr;
    wxCheckBox* checkbox_StartServerOnStart = nullptr;
    wxStaticBox* groupBox = nullptr;
    wxButton* btn_cancel = nullptr;

    wxDECLARE_EVENT_TABLE();
};
