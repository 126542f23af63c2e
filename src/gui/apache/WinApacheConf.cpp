#include "gui/apache/WinApacheConf.h"

#include "core/apache/HelpCatalogue.h"
#include "core/lang/LangTable.h"
#include "gui/DialogParts.h"
#include "gui/apache/WinAliasConf.h"
#include "gui/apache/WinDirectoryConf.h"
#include "gui/apache/WinOthersConf.h"

#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/hyperlink.h>
#include <wx/listbox.h>
#include <wx/msgdlg.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

using namespace DialogParts;

namespace {

const char* const NEW_HOST_ADDRESS = "localost"; // spelt so on purpose
const char* const NEW_FOLDER = "{DOCUMENTPATH}/myfolder/";
const char* const DOCS_SITE = "http://httpd.apache.org";

struct HelpPage {
    int buttonId;
    const char* path;
};

const HelpPage HELP_PAGES[] = {
    {WinApacheConf::ID_HELP_HOST_IP, "/docs/2.4/mod/core.html#virtualhost"},
    {WinApacheConf::ID_HELP_SERVER_NAME, "/docs/2.4/mod/core.html#servername"},
    {WinApacheConf::ID_HELP_SERVER_ALIAS, "/docs/2.4/mod/core.html#serveralias"},
    {WinApacheConf::ID_HELP_DOCUMENT_ROOT, "/docs/2.4/mod/core.html#documentroot"},
    {WinApacheConf::ID_HELP_ALIAS, "/docs/2.4/mod/mod_alias.html#alias"},
    {WinApacheConf::ID_HELP_DIRECTORY, "/docs/2.4/mod/core.html#directory"},
};

bool IsHelpButton(int id) {
    for (const HelpPage& page : HELP_PAGES)
        if (page.buttonId == id)
            return true;
    return false;
}

// A host without a name is the main server.
wxString HostEntry(const VirtualHostRecord& host) {
    return (host.ServerName.empty() ? wxString("Apache Main") : host.ServerName) + " " +
           host.address;
}

std::vector<wxString> AliasEntries(const VirtualHostRecord& host) {
    std::vector<wxString> entries;
    for (const AliasRecord& alias : host.aliases)
        entries.push_back(alias.name + " -> " + alias.folder);
    return entries;
}

std::vector<wxString> DirectoryEntries(const VirtualHostRecord& host) {
    std::vector<wxString> entries;
    for (const DirectoryRecord& directory : host.directories)
        entries.push_back(directory.path);
    return entries;
}

} // namespace

wxBEGIN_EVENT_TABLE(WinApacheConf, ConfigDialog)
    EVT_APACHE_CONF_WORKER_DONE(WinApacheConf::OnWorkerDone)
    EVT_LISTBOX(WinApacheConf::ID_HOSTS, WinApacheConf::OnHostSelected)
    EVT_BUTTON(WinApacheConf::ID_ADD_HOST, WinApacheConf::OnAddHost)
    EVT_BUTTON(WinApacheConf::ID_REMOVE_HOST, WinApacheConf::OnRemoveHost)
    EVT_LISTBOX(WinApacheConf::ID_ALIASES, WinApacheConf::OnRecordSelected)
    EVT_LISTBOX(WinApacheConf::ID_DIRECTORIES, WinApacheConf::OnRecordSelected)
    EVT_LISTBOX(WinApacheConf::ID_OTHERS, WinApacheConf::OnRecordSelected)
    EVT_LISTBOX_DCLICK(WinApacheConf::ID_ALIASES, WinApacheConf::OnEditAlias)
    EVT_LISTBOX_DCLICK(WinApacheConf::ID_DIRECTORIES, WinApacheConf::OnEditDirectory)
    EVT_LISTBOX_DCLICK(WinApacheConf::ID_OTHERS, WinApacheConf::OnEditOther)
    EVT_BUTTON(WinApacheConf::ID_ALIAS_ADD, WinApacheConf::OnAddAlias)
    EVT_BUTTON(WinApacheConf::ID_DIRECTORY_ADD, WinApacheConf::OnAddDirectory)
    EVT_BUTTON(WinApacheConf::ID_OTHERS_ADD, WinApacheConf::OnAddOther)
    EVT_BUTTON(WinApacheConf::ID_ALIAS_REMOVE, WinApacheConf::OnRemoveAlias)
    EVT_BUTTON(WinApacheConf::ID_DIRECTORY_REMOVE, WinApacheConf::OnRemoveDirectory)
    EVT_BUTTON(WinApacheConf::ID_OTHERS_REMOVE, WinApacheConf::OnRemoveOther)
    EVT_BUTTON(WinApacheConf::ID_HELP_HOST_IP, WinApacheConf::OnHelp)
    EVT_BUTTON(WinApacheConf::ID_HELP_SERVER_NAME, WinApacheConf::OnHelp)
    EVT_BUTTON(WinApacheConf::ID_HELP_SERVER_ALIAS, WinApacheConf::OnHelp)
    EVT_BUTTON(WinApacheConf::ID_HELP_DOCUMENT_ROOT, WinApacheConf::OnHelp)
    EVT_BUTTON(WinApacheConf::ID_HELP_ALIAS, WinApacheConf::OnHelp)
    EVT_BUTTON(WinApacheConf::ID_HELP_DIRECTORY, WinApacheConf::OnHelp)
    EVT_BUTTON(WinApacheConf::ID_RESTORE, WinApacheConf::OnRestore)
    EVT_LISTBOX(WinApacheConf::ID_MODULES, WinApacheConf::OnModuleSelected)
    EVT_BUTTON(WinApacheConf::ID_OK, WinApacheConf::OnOk)
    EVT_BUTTON(WinApacheConf::ID_CANCEL, WinApacheConf::OnCancel)
wxEND_EVENT_TABLE()

WinApacheConf::WinApacheConf(wxWindow* parent, const InstallPaths& paths)
    : ConfigDialog(parent, "Apache Config"), paths(paths) {
    BuildControls();
    ApplyTexts();
    UpdateControls();
    SetEscapeId(ID_CANCEL);
    SetBusy(GetLangText("LOAD_APACHE_CONF"));
    StartWorker(std::make_unique<WorkedThreadApacheConf>(this, paths, false));
}

// ---------------------------------------------------------------------------------------------
// Controls

void WinApacheConf::BuildControls() {
    const int gap = FromDIP(8);
    notebook = new wxNotebook(this, ID_NOTEBOOK, wxDefaultPosition, wxDefaultSize, 0, "notebook");
    notebook->AddPage(BuildHostsPage(), "Virtual Host");
    notebook->AddPage(BuildModulesPage(), "Modules");

    BodyOverClosingRow(this, notebook,
                       ClosingRow(this, ID_STATIC_LINE, ID_OK, ID_CANCEL, "btn_Cancel"), gap);
    btn_OK = static_cast<wxButton*>(FindWindow(ID_OK));
    btn_Cancel = static_cast<wxButton*>(FindWindow(ID_CANCEL));
    AddLoadingControl();
}

wxWindow* WinApacheConf::BuildHostsPage() {
    const int gap = FromDIP(8);
    auto* page = new wxPanel(notebook, ID_PAGE_HOSTS, wxDefaultPosition, wxDefaultSize,
                             wxTAB_TRAVERSAL, "panel");
    listBoxHosts = new wxListBox(page, ID_HOSTS, wxDefaultPosition, wxSize(FromDIP(230), -1), 0,
                                 nullptr, wxLB_SINGLE, wxDefaultValidator, "listBox");
    btn_RestoreConfig = Button(page, ID_RESTORE, "Restore", "btn_RestoreConfig");
    auto* hostButtons = new wxBoxSizer(wxHORIZONTAL);
    hostButtons->Add(SmallButton(page, ID_ADD_HOST, "+", "btn_AddHost"), 0, wxRIGHT, gap / 2);
    hostButtons->Add(SmallButton(page, ID_REMOVE_HOST, "-", "btn_RemoveHost"));
    auto* left = new wxBoxSizer(wxVERTICAL);
    left->Add(listBoxHosts, 1, wxEXPAND | wxBOTTOM, gap / 2);
    left->Add(hostButtons, 0, wxBOTTOM, gap);
    left->Add(btn_RestoreConfig, 0, wxEXPAND);

    groupBoxHost = new wxStaticBox(page, ID_GROUP_HOST, "Virtual Server", wxDefaultPosition,
                                   wxDefaultSize, 0, "groupBox");
    auto* right = new wxStaticBoxSizer(groupBoxHost, wxVERTICAL);
    right->Add(BuildHostFields(groupBoxHost), 1, wxEXPAND | wxALL, gap);

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(left, 0, wxEXPAND | wxALL, gap);
    row->Add(right, 1, wxEXPAND | wxTOP | wxRIGHT | wxBOTTOM, gap);
    page->SetSizer(row);
    return page;
}

// One row per field: its label, the text box or list, and its help button.
wxSizer* WinApacheConf::BuildHostFields(wxStaticBox* box) {
    const int gap = FromDIP(6);
    auto edit = [&](int id, const char* name) {
        return new wxTextCtrl(box, id, "", wxDefaultPosition, wxSize(FromDIP(330), -1), 0,
                              wxDefaultValidator, name);
    };
    auto help = [&](int id, const char* name) { return SmallButton(box, id, "?", name); };
    label_ip = Label(box, ID_LABEL_IP, "Host IP :", "label_ip");
    label_ServerName = Label(box, ID_LABEL_SERVER_NAME, "Server Name :", "label_ServerName");
    label_ServerAlias = Label(box, ID_LABEL_SERVER_ALIAS, "Server Alias :", "label_ServerAlias");
    label_DocumentRoot =
        Label(box, ID_LABEL_DOCUMENT_ROOT, "Document Root :", "label_DocumentRoot");
    label_Alias = Label(box, ID_LABEL_ALIAS, "Alias : ", "label_Alias");
    label_Directory = Label(box, ID_LABEL_DIRECTORY, "Directory : ", "label_Directory");
    label_Other = Label(box, ID_LABEL_OTHER, "Other : ", "label_Other");
    edit_ServerIP = edit(ID_SERVER_IP, "edit_ServerIP");
    edit_ServerName = edit(ID_SERVER_NAME, "edit_ServerName");
    edit_ServerAlias = edit(ID_SERVER_ALIAS, "edit_ServerAlias");
    edit_DocumentRoot = edit(ID_DOCUMENT_ROOT, "edit_DocumentRoot");

    auto* grid = new wxFlexGridSizer(3, gap, gap);
    grid->AddGrowableCol(1);
    auto addRow = [grid](wxStaticText* label, int labelFlags, auto* field, wxWindow* helpButton) {
        grid->Add(label, 0, labelFlags);
        grid->Add(field, 1, wxEXPAND);
        if (helpButton)
            grid->Add(helpButton);
        else
            grid->AddSpacer(0);
    };
    const int middle = wxALIGN_CENTER_VERTICAL;
    const int top = wxALIGN_TOP;
    addRow(label_ip, middle, edit_ServerIP, help(ID_HELP_HOST_IP, "btn_Help_HostIP"));
    addRow(label_ServerName, middle, edit_ServerName,
           help(ID_HELP_SERVER_NAME, "btn_Help_ServerName"));
    addRow(label_ServerAlias, middle, edit_ServerAlias,
           help(ID_HELP_SERVER_ALIAS, "btn_Help_ServerAlias"));
    addRow(label_DocumentRoot, middle, edit_DocumentRoot,
           help(ID_HELP_DOCUMENT_ROOT, "btn_Help_DocumentRoot"));
    addRow(label_Alias, top,
           BuildRecordList(box, ID_ALIASES, ID_ALIAS_ADD, ID_ALIAS_REMOVE, "Alias", listBoxAliases,
                           btn_AliasRemove),
           help(ID_HELP_ALIAS, "btn_Help_Alias"));
    addRow(label_Directory, top,
           BuildRecordList(box, ID_DIRECTORIES, ID_DIRECTORY_ADD, ID_DIRECTORY_REMOVE, "Directory",
                           listBoxDirectories, btn_DirectoryRemove),
           help(ID_HELP_DIRECTORY, "btn_Help_Directory"));
    addRow(label_Other, top,
           BuildRecordList(box, ID_OTHERS, ID_OTHERS_ADD, ID_OTHERS_REMOVE, "Others", listBoxOthers,
                           btn_OthersRemove),
           nullptr);
    for (int listRow = 4; listRow < 7; ++listRow)
        grid->AddGrowableRow(listRow);
    return grid;
}

// A list of the host's records with its add and remove buttons ("btn_" + prefix + "Add" and
// "Remove") beside it.
wxSizer* WinApacheConf::BuildRecordList(wxStaticBox* box, int listId, int addId, int removeId,
                                        const wxString& prefix, wxListBox*& list,
                                        wxButton*& remove) {
    const int gap = FromDIP(4);
    list = new wxListBox(box, listId, wxDefaultPosition, wxSize(-1, FromDIP(78)), 0, nullptr,
                         wxLB_SINGLE, wxDefaultValidator, "listBox");
    remove = SmallButton(box, removeId, "-", "btn_" + prefix + "Remove");
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    buttons->Add(SmallButton(box, addId, "+", "btn_" + prefix + "Add"), 0, wxBOTTOM, gap);
    buttons->Add(remove);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(list, 1, wxEXPAND | wxRIGHT, gap);
    row->Add(buttons);
    return row;
}

wxWindow* WinApacheConf::BuildModulesPage() {
    const int gap = FromDIP(8);
    auto* page = new wxPanel(notebook, ID_PAGE_MODULES, wxDefaultPosition, wxDefaultSize,
                             wxTAB_TRAVERSAL, "panel");
    listbox_Modules =
        new wxCheckListBox(page, ID_MODULES, wxDefaultPosition, wxSize(FromDIP(260), -1), 0,
                           nullptr, wxLB_SINGLE, wxDefaultValidator, "listbox_Modules");
    wxStaticBoxSizer* group = DescriptionBox(page, ID_GROUP_DESCRIPTION, label_ModuleDescription,
                                             ID_MODULE_DESCRIPTION, "label_ModuleDescription",
                                             link_Description, ID_MODULE_LINK, "link_Description");
    groupBoxDescription = group->GetStaticBox();
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(listbox_Modules, 0, wxEXPAND | wxALL, gap);
    row->Add(group, 1, wxEXPAND | wxTOP | wxRIGHT | wxBOTTOM, gap);
    page->SetSizer(row);
    return page;
}

void WinApacheConf::ApplyTexts() {
    ShowDescription(label_ModuleDescription, GetLangText("NO_DESCRIPTION"));
    groupBoxDescription->SetLabel(GetLangText("DESCRIPTION"));
    label_Other->SetLabel(GetLangText("OTHERS2"));
    label_Directory->SetLabel(GetLangText("FOLDER2"));
    label_Alias->SetLabel(GetLangText("ALIAS2"));
    notebook->SetPageText(0, GetLangText("VIRTUAL_SERVER"));
    groupBoxHost->SetLabel(GetLangText("VIRTUAL_SERVER"));
    label_ip->SetLabel(GetLangText("HOST_IP2"));
    label_ServerName->SetLabel(GetLangText("SERVER_NAME2"));
    label_ServerAlias->SetLabel(GetLangText("SERVER_ALIAS2"));
    label_DocumentRoot->SetLabel(GetLangText("DOCUMENT_ROOT2"));
    btn_RestoreConfig->SetLabel(GetLangText("RESTORE_CONFIG"));
    btn_Cancel->SetLabel(GetLangText("CANCEL"));
    notebook->SetPageText(1, GetLangText("MODULES"));
    Layout();
}

// ---------------------------------------------------------------------------------------------
// Workers

// A job locks the pages and OK.
void WinApacheConf::LockForJob(bool locked) {
    notebook->Enable(!locked);
    btn_OK->Enable(!locked);
}

void WinApacheConf::OnWorkerDone(wxThreadEvent& event) {
    if (!AcceptCompletion(event))
        return;
    if (event.GetString() == ConfigWorker::SAVE) {
        if (SaveSucceeded(event))
            EndDialog(wxID_OK);
        return;
    }
    // Fresh data: the text boxes belong to none of its hosts.
    selected = -1;
    data = event.GetPayload<ApacheConfData>();
    FillModules();
    RefreshHostList();
    ClearBusy();
    ShowFailures(data.restoreFailures);
}

void WinApacheConf::OnOk(wxCommandEvent&) {
    for (size_t i = 0; i < data.modules.size(); ++i)
        data.modules[i].enabled = listbox_Modules->IsChecked(i);
    SetBusy(GetLangText("SAVE_APACHE_CONF"));
    StopWorkers();
    CommitHost();
    StartWorker(std::make_unique<WorkedThreadApacheConf>(this, paths, data));
}

void WinApacheConf::OnCancel(wxCommandEvent&) {
    EndDialog(wxID_CANCEL);
}

void WinApacheConf::OnRestore(wxCommandEvent&) {
    wxMessageDialog question(this, GetLangText("RESTORE_CONFIG_SURE"), "Kovix", wxYES_NO);
    if (question.ShowModal() != wxID_YES)
        return;
    StopWorkers();
    SetBusy(GetLangText("LOAD_APACHE_CONF"));
    StartWorker(std::make_unique<WorkedThreadApacheConf>(this, paths, true));
}

// ---------------------------------------------------------------------------------------------
// Hosts

VirtualHostRecord* WinApacheConf::SelectedHost() {
    if (selected < 0 || selected >= static_cast<int>(data.hosts.hosts.size()))
        return nullptr;
    return &data.hosts.hosts[selected];
}

void WinApacheConf::CommitHost() {
    VirtualHostRecord* host = SelectedHost();
    if (!host)
        return;
    host->address = edit_ServerIP->GetValue();
    host->ServerName = edit_ServerName->GetValue();
    host->ServerAlias = edit_ServerAlias->GetValue();
    host->DocumentRoot = edit_DocumentRoot->GetValue();
    listBoxHosts->SetString(selected, HostEntry(*host));
}

void WinApacheConf::RefreshHostList() {
    CommitHost();
    selected = -1;
    listBoxHosts->Clear();
    for (const VirtualHostRecord& host : data.hosts.hosts)
        listBoxHosts->Append(HostEntry(host));
    UpdateControls();
}

// The fields and lists show the selected host, or stay empty and locked when there is none.
void WinApacheConf::UpdateControls() {
    static const VirtualHostRecord none;
    const VirtualHostRecord* host = SelectedHost();
    const VirtualHostRecord& shown = host ? *host : none;
    // The help buttons stay usable: they only open documentation.
    for (wxWindow* child : groupBoxHost->GetChildren())
        child->Enable(host != nullptr || IsHelpButton(child->GetId()));
    edit_ServerIP->ChangeValue(shown.address);
    edit_ServerName->ChangeValue(shown.ServerName);
    edit_ServerAlias->ChangeValue(shown.ServerAlias);
    edit_DocumentRoot->ChangeValue(shown.DocumentRoot);
    FillList(listBoxAliases, AliasEntries(shown), btn_AliasRemove);
    FillList(listBoxDirectories, DirectoryEntries(shown), btn_DirectoryRemove);
    FillList(listBoxOthers, shown.others, btn_OthersRemove);
}

void WinApacheConf::OnHostSelected(wxCommandEvent&) {
    const int index = listBoxHosts->GetSelection();
    if (index == selected)
        return;
    CommitHost();
    selected = index;
    UpdateControls();
}

void WinApacheConf::OnAddHost(wxCommandEvent&) {
    VirtualHostRecord host;
    host.address = NEW_HOST_ADDRESS;
    data.hosts.hosts.push_back(host);
    RefreshHostList();
}

void WinApacheConf::OnRemoveHost(wxCommandEvent&) {
    if (!SelectedHost())
        return;
    data.hosts.hosts.erase(data.hosts.hosts.begin() + selected);
    selected = -1;
    RefreshHostList();
}

// ---------------------------------------------------------------------------------------------
// Aliases, directories and other lines of the selected host

void WinApacheConf::OnRecordSelected(wxCommandEvent& event) {
    wxButton* remove = event.GetId() == ID_ALIASES       ? btn_AliasRemove
                       : event.GetId() == ID_DIRECTORIES ? btn_DirectoryRemove
                                                         : btn_OthersRemove;
    remove->Enable();
}

// The selected host and the index of the selected entry of list among its records, or null.
template <class Record>
VirtualHostRecord* WinApacheConf::SelectedRecord(wxListBox* list,
                                                 std::vector<Record> VirtualHostRecord::*records,
                                                 int& index) {
    VirtualHostRecord* host = SelectedHost();
    index = host ? SelectionBelow(list, (host->*records).size()) : -1;
    return index < 0 ? nullptr : host;
}

template <class Record>
void WinApacheConf::AddRecord(wxListBox* list, wxButton* remove,
                              std::vector<Record> VirtualHostRecord::*records,
                              const Record& record) {
    VirtualHostRecord* host = SelectedHost();
    if (!host)
        return;
    CommitHost();
    (host->*records).push_back(record);
    UpdateControls();
    SelectLast(list, remove);
}

template <class Record>
void WinApacheConf::RemoveRecord(wxListBox* list, std::vector<Record> VirtualHostRecord::*records) {
    int index;
    VirtualHostRecord* host = SelectedRecord(list, records, index);
    if (!host)
        return;
    CommitHost();
    (host->*records).erase((host->*records).begin() + index);
    UpdateControls();
}

template <class Editor, class Record>
void WinApacheConf::EditRecord(wxListBox* list, std::vector<Record> VirtualHostRecord::*records,
                               const wxString& caption) {
    int index;
    VirtualHostRecord* host = SelectedRecord(list, records, index);
    if (!host)
        return;
    CommitHost();
    Editor(this, (host->*records)[index], caption).ShowModal();
    UpdateControls();
}

void WinApacheConf::OnAddAlias(wxCommandEvent&) {
    AddRecord(listBoxAliases, btn_AliasRemove, &VirtualHostRecord::aliases,
              AliasRecord{GetLangText("ALIAS_NEW"), NEW_FOLDER});
}

void WinApacheConf::OnAddDirectory(wxCommandEvent&) {
    DirectoryRecord directory;
    directory.path = NEW_FOLDER;
    AddRecord(listBoxDirectories, btn_DirectoryRemove, &VirtualHostRecord::directories, directory);
}

void WinApacheConf::OnAddOther(wxCommandEvent&) {
    AddRecord(listBoxOthers, btn_OthersRemove, &VirtualHostRecord::others,
              GetLangText("OTHERS_LINE_NEW"));
}

void WinApacheConf::OnRemoveAlias(wxCommandEvent&) {
    RemoveRecord(listBoxAliases, &VirtualHostRecord::aliases);
}

void WinApacheConf::OnRemoveDirectory(wxCommandEvent&) {
    RemoveRecord(listBoxDirectories, &VirtualHostRecord::directories);
}

void WinApacheConf::OnRemoveOther(wxCommandEvent&) {
    RemoveRecord(listBoxOthers, &VirtualHostRecord::others);
}

void WinApacheConf::OnEditAlias(wxCommandEvent&) {
    EditRecord<WinAliasConf>(listBoxAliases, &VirtualHostRecord::aliases, "Alias");
}

void WinApacheConf::OnEditDirectory(wxCommandEvent&) {
    EditRecord<WinDirectoryConf>(listBoxDirectories, &VirtualHostRecord::directories, "Directory");
}

void WinApacheConf::OnEditOther(wxCommandEvent&) {
    EditRecord<WinOthersConf>(listBoxOthers, &VirtualHostRecord::others, "Others Conf");
}

void WinApacheConf::OnHelp(wxCommandEvent& event) {
    for (const HelpPage& page : HELP_PAGES)
        if (page.buttonId == event.GetId())
            OpenLink(wxString(DOCS_SITE) + page.path);
}

// ---------------------------------------------------------------------------------------------
// Modules

void WinApacheConf::FillModules() {
    listbox_Modules->Clear();
    for (const SwitchLine& module : data.modules)
        listbox_Modules->Check(listbox_Modules->Append(module.name), module.enabled);
}

void WinApacheConf::OnModuleSelected(wxCommandEvent&) {
    const int index = SelectionBelow(listbox_Modules, data.modules.size());
    if (index < 0)
        return;
    const wxString& name = data.modules[index].name;
    ShowDescription(label_ModuleDescription, HelpCatalogue::Get().ModuleDescription(name));
    link_Description->SetURL(HelpCatalogue::Get().ModuleLink(name));
}
