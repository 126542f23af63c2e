#pragma once

#include "core/InstallPaths.h"
#include "gui/ConfigDialog.h"
#include "gui/php/WorkedThread.h"

#include <vector>

class wxButton;
class wxCheckListBox;
class wxComboBox;
class wxHyperlinkCtrl;
class wxListBox;
class wxStaticBox;
class wxStaticText;

// The PHP template editor of the current PHP version: its extensions on the first page, its
// editable settings on the second. The template is read and written by WorkedThread jobs while
// the loading indicator shows and OK and Cancel are locked (the pages and Restore stay usable, so
// a restore during a load runs a second load; the lock lasts until every job has reported). The
// dialog keeps its own copy of the data, and a job's results arrive only with its completion
// event. OK saves and closes once the save is done; Cancel and the close box close without
// saving, stopping and joining whatever still runs.
class WinPHPExt : public ConfigDialog {
public:
    enum {
        ID_OK = 1001,
        ID_CANCEL = 1002,
        ID_EXTENSIONS = 1003,
        ID_SETTINGS = 1020,
        ID_SETTING_VALUE = 1022,
        ID_RESTORE = 1024
    };

    // Starts loading the template of the tree at once; paths must outlive the dialog.
    WinPHPExt(wxWindow* parent, const InstallPaths& paths);

private:
    void BuildControls();
    wxWindow* BuildExtensionsPage(wxWindow* notebook);
    wxWindow* BuildSettingsPage(wxWindow* notebook);
    void ApplyTexts();

    void LockForJob(bool locked) override;
    void ShowLoaded();
    PHPSettingRecord* SelectedSetting();

    void OnWorkerDone(wxThreadEvent& event);
    void OnExtensionSelected(wxCommandEvent& event);
    void OnSettingSelected(wxCommandEvent& event);
    void OnValueChosen(wxCommandEvent& event);
    void OnRestore(wxCommandEvent& event);
    void OnOk(wxCommandEvent& event);
    void OnCancel(wxCommandEvent& event);

    InstallPaths paths;
    PhpConfData data;
    std::vector<wxString> settingRows; // directive of each row of the settings list

    wxCheckListBox* wxExtList = nullptr;
    wxStaticBox* groupBoxExtension = nullptr;
    wxStaticText* label_ModuleDescription = nullptr;
    wxHyperlinkCtrl* link_Description = nullptr;
    wxListBox* listBox = nullptr;
    wxStaticBox* groupBoxSetting = nullptr;
    wxStaticText* label_SettingDescription = nullptr;
    wxHyperlinkCtrl* link_SettingDescription = nullptr;
    wxStaticText* text_SettingValue = nullptr;
    wxComboBox* combo_SettingValue = nullptr;
    wxButton* btn_RestoreConfig = nullptr;
    wxButton* btn_OK = nullptr;
    wxButton* btn_cancel = nullptr;

    wxDECLARE_EVENT_TABLE();
};
