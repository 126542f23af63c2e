#pragma once

#include <wx/dialog.h>

class wxStaticBox;
class wxStaticText;
class wxTextCtrl;

// Edits one free line of a virtual host or a directory in place: OK stores the text exactly as
// typed and closes; Cancel leaves the line untouched.
class WinOthersConf : public wxDialog {
public:
    enum {
        ID_LABEL = 1029,
        ID_NAME = 1032,
        ID_GROUP = 1033,
        ID_OK = 1034,
        ID_CANCEL = 1035,
        ID_STATIC_LINE = 1036
    };

    WinOthersConf(wxWindow* parent, wxString& line, const wxString& caption);

private:
    void BuildControls();
    void ApplyTexts();
    void OnOk(wxCommandEvent& event);
    void OnCancel(wxCommandEvent& event);

    wxString& line;
    wxStaticBox* groupBox = nullptr;
    wxStaticText* WxStaticText1 = nullptr;
    wxTextCtrl* edit_Name = nullptr;

    wxDECLARE_EVENT_TABLE();
};
