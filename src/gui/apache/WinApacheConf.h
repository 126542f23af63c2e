#pragma once

#include "core/InstallPaths.h"
#include "gui/ConfigDialog.h"
#include "gui/apache/WorkedThreadApacheConf.h"

class wxButton;
class wxCheckListBox;
class wxHyperlinkCtrl;
class wxListBox;
class wxNotebook;
class wxStaticBox;
class wxStaticText;
class wxTextCtrl;

// The Apache template editor: the virtual hosts with their aliases, directories and free lines on
// the first page, the LoadModule switches on the second. The template is read and written by a
// WorkedThreadApacheConf while the loading indicator shows and the pages and OK are locked; the
// dialog keeps its own copy of the data, and a worker's results arrive only with its completion
// event. OK saves and closes once the save is done; Cancel and the close box close without
// saving, stopping and joining a worker that still runs.
//
// The host fields are committed to the selected host when the selection moves, before its lists
// change, and on OK.
class WinApacheConf : public ConfigDialog {
public:
    enum {
        ID_NOTEBOOK = 1001,
        ID_OK = 1002,
        ID_CANCEL = 1004,
        ID_STATIC_LINE = 1005,
        ID_PAGE_HOSTS = 1009,
        ID_HOSTS = 1010,
        ID_ADD_HOST = 1011,
        ID_GROUP_HOST = 1012,
        ID_PAGE_MODULES = 1013,
        ID_MODULES = 1014,
        ID_LABEL_IP = 1015,
        ID_SERVER_IP = 1016,
        ID_LABEL_SERVER_NAME = 1018,
        ID_SERVER_NAME = 1019,
        ID_LABEL_DOCUMENT_ROOT = 1021,
        ID_DOCUMENT_ROOT = 1022,
        ID_LABEL_ALIAS = 1023,
        ID_ALIASES = 1025,
        ID_ALIAS_ADD = 1026,
        ID_ALIAS_REMOVE = 1027,
        ID_DIRECTORIES = 1034,
        ID_LABEL_DIRECTORY = 1035,
        ID_DIRECTORY_ADD = 1036,
        ID_DIRECTORY_REMOVE = 1037,
        ID_GROUP_DESCRIPTION = 1038,
        ID_MODULE_DESCRIPTION = 1039,
        ID_MODULE_LINK = 1040,
        ID_REMOVE_HOST = 1041,
        ID_OTHERS = 1042,
        ID_LABEL_OTHER = 1046,
        ID_OTHERS_ADD = 1047,
        ID_OTHERS_REMOVE = 1048,
        ID_HELP_HOST_IP = 1049,
        ID_HELP_SERVER_NAME = 1050,
        ID_HELP_DOCUMENT_ROOT = 1051,
        ID_HELP_ALIAS = 1052,
        ID_HELP_DIRECTORY = 1053,
        ID_LABEL_SERVER_ALIAS = 1054,
        ID_SERVER_ALIAS = 1055,
        ID_HELP_SERVER_ALIAS = 1056,
        ID_RESTORE = 1059
    };

    // Starts loading the template of the tree at once; paths must outlive the dialog.
    WinApacheConf(wxWindow* parent, const InstallPaths& paths);

private:
    void BuildControls();
    wxWindow* BuildHostsPage();
    wxSizer* BuildHostFields(wxStaticBox* box);
    wxSizer* BuildRecordList(wxStaticBox* box, int listId, int addId, int removeId,
                             const wxString& prefix, wxListBox*& list, wxButton*& remove);
    wxWindow* BuildModulesPage();
    void ApplyTexts();

    void LockForJob(bool locked) override;
    VirtualHostRecord* SelectedHost();
    void CommitHost();
    void RefreshHostList();
    void UpdateControls();
    void FillModules();
    template <class Record>
    VirtualHostRecord* SelectedRecord(wxListBox* list,
                                      std::vector<Record> VirtualHostRecord::*records, int& index);
    template <class Record>
    void AddRecord(wxListBox* list, wxButton* remove,
                   std::vector<Record> VirtualHostRecord::*records, const Record& record);
    template <class Record>
    void RemoveRecord(wxListBox* list, std::vector<Record> VirtualHostRecord::*records);
    template <class Editor, class Record>
    void EditRecord(wxListBox* list, std::vector<Record> VirtualHostRecord::*records,
                    const wxString& caption);

    void OnWorkerDone(wxThreadEvent& event);
    void OnHostSelected(wxCommandEvent& event);
    void OnAddHost(wxCommandEvent& event);
    void OnRemoveHost(wxCommandEvent& event);
    void OnRecordSelected(wxCommandEvent& event);
    void OnEditAlias(wxCommandEvent& event);
    void OnEditDirectory(wxCommandEvent& event);
    void OnEditOther(wxCommandEvent& event);
    void OnAddAlias(wxCommandEvent& event);
    void OnAddDirectory(wxCommandEvent& event);
    void OnAddOther(wxCommandEvent& event);
    void OnRemoveAlias(wxCommandEvent& event);
    void OnRemoveDirectory(wxCommandEvent& event);
    void OnRemoveOther(wxCommandEvent& event);
    void OnHelp(wxCommandEvent& event);
    void OnRestore(wxCommandEvent& event);
    void OnModuleSelected(wxCommandEvent& event);
    void OnOk(wxCommandEvent& event);
    void OnCancel(wxCommandEvent& event);

    InstallPaths paths;
    ApacheConfData data;
    int selected = -1;

    wxNotebook* notebook = nullptr;
    wxListBox* listBoxHosts = nullptr;
    wxStaticBox* groupBoxHost = nullptr;
    wxStaticText* label_ip = nullptr;
    wxStaticText* label_ServerName = nullptr;
    wxStaticText* label_ServerAlias = nullptr;
    wxStaticText* label_DocumentRoot = nullptr;
    wxStaticText* label_Alias = nullptr;
    wxStaticText* label_Directory = nullptr;
    wxStaticText* label_Other = nullptr;
    wxTextCtrl* edit_ServerIP = nullptr;
    wxTextCtrl* edit_ServerName = nullptr;
    wxTextCtrl* edit_ServerAlias = nullptr;
    wxTextCtrl* edit_DocumentRoot = nullptr;
    wxListBox* listBoxAliases = nullptr;
    wxListBox* listBoxDirectories = nullptr;
    wxListBox* listBoxOthers = nullptr;
    wxButton* btn_AliasRemove = nullptr;
    wxButton* btn_DirectoryRemove = nullptr;
    wxButton* btn_OthersRemove = nullptr;
    wxButton* btn_RestoreConfig = nullptr;
    wxCheckListBox* listbox_Modules = nullptr;
    wxStaticBox* groupBoxDescription = nullptr;
    wxStaticText* label_ModuleDescription = nullptr;
    wxHyperlinkCtrl* link_Description = nullptr;
    wxButton* btn_OK = nullptr;
    wxButton* btn_Cancel = nullptr;

    wxDECLARE_EVENT_TABLE();
};
