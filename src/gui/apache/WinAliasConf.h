#pragma once

#include "core/apache/VirtualHostFile.h"

#include <wx/dialog.h>

class wxStaticBox;
class wxStaticText;
class wxTextCtrl;

// Edits one alias of a virtual host in place: OK stores the name and folder exactly as typed
// (nothing is trimmed or checked) and closes; Cancel leaves the record untouched.
class WinAliasConf : public wxDialog {
public:
    enum {
        ID_STATIC_LINE = 1004,
        ID_OK = 1005,
        ID_CANCEL = 1006,
        ID_GROUP = 1008,
        ID_LABEL_NAME = 1009,
        ID_LABEL_FOLDER = 1010,
        ID_NAME = 1011,
        ID_FOLDER = 1012
    };

    WinAliasConf(wxWindow* parent, AliasRecord& record, const wxString& caption);

private:
    void BuildControls();
    void ApplyTexts();
    void OnOk(wxCommandEvent& event);
    void OnCancel(wxCommandEvent& event);

    AliasRecord& record;
    wxStaticBox* groupBox = nullptr;
    wxStaticText* WxStaticText1 = nullptr;
    wxStaticText* WxStaticText2 = nullptr;
    wxTextCtrl* edit_Name = nullptr;
    wxTextCtrl* edit_Folder = nullptr;

    wxDECLARE_EVENT_TABLE();
};
