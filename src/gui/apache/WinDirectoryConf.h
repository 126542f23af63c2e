#pragma once

#include "core/apache/VirtualHostFile.h"

#include <wx/dialog.h>

class wxButton;
class wxCheckBox;
class wxListBox;
class wxRadioButton;
class wxStaticBox;
class wxStaticText;
class wxTextCtrl;

// Edits one <Directory> block of a virtual host. Everything, its Custom lines included, is edited
// on a working copy made when the dialog opens; OK copies the path, the five flags and the lines
// back into the record and closes, Cancel drops the copy.
class WinDirectoryConf : public wxDialog {
public:
    enum {
        ID_STATIC_LINE = 1004,
        ID_OK = 1005,
        ID_CANCEL = 1006,
        ID_GROUP = 1007,
        ID_LABEL_DIRECTORY = 1009,
        ID_DIRECTORY = 1010,
        ID_FOLLOW_SYMLINKS = 1011,
        ID_INCLUDES = 1012,
        ID_INDEXES = 1013,
        ID_MULTIVIEWS = 1014,
        ID_LABEL_OPTIONS = 1015,
        ID_LABEL_OVERRIDE = 1016,
        ID_OVERRIDE_ALL = 1017,
        ID_OVERRIDE_NONE = 1018,
        ID_LABEL_OTHER = 1025,
        ID_OTHERS_ADD = 1026,
        ID_OTHERS_REMOVE = 1027,
        ID_OTHERS = 1028
    };

    WinDirectoryConf(wxWindow* parent, DirectoryRecord& record, const wxString& caption);

private:
    void BuildControls();
    wxSizer* BuildFields();
    wxSizer* BuildCustomList();
    void ApplyTexts();
    void ShowRecord();
    void FillOthers();

    void OnOthersSelected(wxCommandEvent& event);
    void OnOthersDoubleClick(wxCommandEvent& event);
    void OnOthersAdd(wxCommandEvent& event);
    void OnOthersRemove(wxCommandEvent& event);
    void OnOk(wxCommandEvent& event);
    void OnCancel(wxCommandEvent& event);

    DirectoryRecord& record;
    DirectoryRecord working;

    wxStaticBox* groupBox = nullptr;
    wxStaticText* WxStaticText1 = nullptr;
    wxTextCtrl* edit_Directory = nullptr;
    wxCheckBox* check_OptionsFollowSymLinks = nullptr;
    wxCheckBox* check_OptionsIncludes = nullptr;
    wxCheckBox* check_OptionsIndexes = nullptr;
    wxCheckBox* check_OptionsMultiViews = nullptr;
    wxRadioButton* radio_OverRideAll = nullptr;
    wxRadioButton* radio_OverRideNone = nullptr;
    wxStaticText* label_Other = nullptr;
    wxListBox* listBox = nullptr;
    wxButton* btn_OthersRemove = nullptr;

    wxDECLARE_EVENT_TABLE();
};
