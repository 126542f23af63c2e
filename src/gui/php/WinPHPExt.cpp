#include "gui/php/WinPHPExt.h"

#include "core/apache/HelpCatalogue.h"
#include "core/lang/LangTable.h"
#include "gui/DialogParts.h"

#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/combobox.h>
#include <wx/hyperlink.h>
#include <wx/listbox.h>
#include <wx/msgdlg.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

using namespace DialogParts;

wxBEGIN_EVENT_TABLE(WinPHPExt, ConfigDialog)
    EVT_PHP_EXT_WORKER_DONE(WinPHPExt::OnWorkerDone)
    EVT_LISTBOX(WinPHPExt::ID_EXTENSIONS, WinPHPExt::OnExtensionSelected)
    EVT_LISTBOX(WinPHPExt::ID_SETTINGS, WinPHPExt::OnSettingSelected)
    EVT_COMBOBOX(WinPHPExt::ID_SETTING_VALUE, WinPHPExt::OnValueChosen)
    EVT_BUTTON(WinPHPExt::ID_RESTORE, WinPHPExt::OnRestore)
    EVT_BUTTON(WinPHPExt::ID_OK, WinPHPExt::OnOk)
    EVT_BUTTON(WinPHPExt::ID_CANCEL, WinPHPExt::OnCancel)
wxEND_EVENT_TABLE()

WinPHPExt::WinPHPExt(wxWindow* parent, const InstallPaths& paths)
    : ConfigDialog(parent, "PHP Extensions"), paths(paths) {
    BuildControls();
    ApplyTexts();
    SetEscapeId(ID_CANCEL);
    SetBusy(GetLangText("LOAD_PHP_CONF"));
    StartWorker(std::make_unique<WorkedThread>(this, paths, false));
}

// ---------------------------------------------------------------------------------------------
// Controls

void WinPHPExt::BuildControls() {
    const int gap = FromDIP(8);
    auto* notebook =
        new wxNotebook(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "notebook");
    notebook->AddPage(BuildExtensionsPage(notebook), "PHP Extensions");
    notebook->AddPage(BuildSettingsPage(notebook), "PHP Setting");
    btn_RestoreConfig = Button(this, ID_RESTORE, "Restore", "btn_RestoreConfig");

    BodyOverClosingRow(
        this, notebook,
        ClosingRow(this, wxID_ANY, ID_OK, ID_CANCEL, "btn_cancel", btn_RestoreConfig), gap);
    btn_OK = static_cast<wxButton*>(FindWindow(ID_OK));
    btn_cancel = static_cast<wxButton*>(FindWindow(ID_CANCEL));
    AddLoadingControl();
}

wxWindow* WinPHPExt::BuildExtensionsPage(wxWindow* notebook) {
    const int gap = FromDIP(8);
    auto* page =
        new wxPanel(notebook, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "panel");
    wxExtList = new wxCheckListBox(page, ID_EXTENSIONS, wxDefaultPosition,
                                   wxSize(FromDIP(220), FromDIP(340)), 0, nullptr, wxLB_SINGLE,
                                   wxDefaultValidator, "wxExtList");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(wxExtList, 0, wxEXPAND | wxALL, gap);
    wxStaticBoxSizer* description =
        DescriptionBox(page, wxID_ANY, label_ModuleDescription, wxID_ANY, "label_ModuleDescription",
                       link_Description, wxID_ANY, "link_Description");
    groupBoxExtension = description->GetStaticBox();
    row->Add(description, 1, wxEXPAND | wxTOP | wxRIGHT | wxBOTTOM, gap);
    page->SetSizer(row);
    return page;
}

wxWindow* WinPHPExt::BuildSettingsPage(wxWindow* notebook) {
    const int gap = FromDIP(8);
    auto* page =
        new wxPanel(notebook, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "panel");
    listBox =
        new wxListBox(page, ID_SETTINGS, wxDefaultPosition, wxSize(FromDIP(220), FromDIP(340)), 0,
                      nullptr, wxLB_SINGLE, wxDefaultValidator, "listBox");
    text_SettingValue = Label(page, wxID_ANY, "Value : ", "text_SettingValue");
    combo_SettingValue =
        new wxComboBox(page, ID_SETTING_VALUE, "", wxDefaultPosition, wxSize(FromDIP(140), -1), 0,
                       nullptr, wxCB_READONLY, wxDefaultValidator, "combo_SettingValue");
    combo_SettingValue->Disable();

    auto* value = new wxBoxSizer(wxHORIZONTAL);
    value->Add(text_SettingValue, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, gap);
    value->Add(combo_SettingValue);
    auto* right = new wxBoxSizer(wxVERTICAL);
    wxStaticBoxSizer* description = DescriptionBox(
        page, wxID_ANY, label_SettingDescription, wxID_ANY, "label_SettingDescription",
        link_SettingDescription, wxID_ANY, "link_SettingDescription");
    groupBoxSetting = description->GetStaticBox();
    right->Add(description, 1, wxEXPAND | wxBOTTOM, gap);
    right->Add(value);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(listBox, 0, wxEXPAND | wxALL, gap);
    row->Add(right, 1, wxEXPAND | wxTOP | wxRIGHT | wxBOTTOM, gap);
    page->SetSizer(row);
    return page;
}

void WinPHPExt::ApplyTexts() {
    for (wxStaticBox* box : {groupBoxExtension, groupBoxSetting})
        box->SetLabel(GetLangText("DESCRIPTION"));
    ShowDescription(label_ModuleDescription, GetLangText("NO_DESCRIPTION"));
    ShowDescription(label_SettingDescription, GetLangText("NO_DESCRIPTION"));
    text_SettingValue->SetLabel(GetLangText("VALUE2"));
    btn_RestoreConfig->SetLabel(GetLangText("RESTORE_CONFIG"));
    btn_cancel->SetLabel(GetLangText("CANCEL"));
    Layout();
}

// ---------------------------------------------------------------------------------------------
// Jobs

// A job locks OK and Cancel only: the pages and Restore stay usable.
void WinPHPExt::LockForJob(bool locked) {
    btn_OK->Enable(!locked);
    btn_cancel->Enable(!locked);
}

void WinPHPExt::OnWorkerDone(wxThreadEvent& event) {
    const bool restored = event.GetString() == WorkedThread::RESTORED;
    if (!AcceptCompletion(event, restored))
        return;
    if (restored) {
        SetBusy(GetLangText("LOAD_PHP_CONF"));
        return;
    }
    if (event.GetString() == ConfigWorker::GET) {
        data = event.GetPayload<PhpConfData>();
        ShowLoaded();
        ShowFailures(data.restoreFailures);
    }
    if (event.GetString() == ConfigWorker::SAVE && SaveSucceeded(event)) {
        EndDialog(wxID_OK);
        return;
    }
    if (WorkersDone())
        ClearBusy();
}

void WinPHPExt::ShowLoaded() {
    wxExtList->Clear();
    for (const SwitchLine& extension : data.extensions)
        wxExtList->Check(wxExtList->Append(extension.name), extension.enabled);
    listBox->Clear();
    settingRows.clear();
    for (const auto& [directive, record] : data.settings.GetRecords()) {
        listBox->Append(record.label);
        settingRows.push_back(directive);
    }
    combo_SettingValue->Clear();
    combo_SettingValue->Disable();
    // Nothing is selected in the refilled lists: no description either.
    ShowDescription(label_ModuleDescription, GetLangText("NO_DESCRIPTION"));
    ShowDescription(label_SettingDescription, GetLangText("NO_DESCRIPTION"));
    link_Description->SetURL("");
    link_SettingDescription->SetURL("");
}

void WinPHPExt::OnOk(wxCommandEvent&) {
    for (size_t i = 0; i < data.extensions.size(); ++i)
        data.extensions[i].enabled = wxExtList->IsChecked(i);
    SetBusy(GetLangText("SAVE_PHP_CONF"));
    StartWorker(std::make_unique<WorkedThread>(this, paths, data));
}

void WinPHPExt::OnCancel(wxCommandEvent&) {
    EndDialog(wxID_CANCEL);
}

// The Apache text shows while the initial file is copied back, the PHP text while it is read.
void WinPHPExt::OnRestore(wxCommandEvent&) {
    wxMessageDialog question(this, GetLangText("RESTORE_CONFIG_SURE"), "Kovix", wxYES_NO);
    if (question.ShowModal() != wxID_YES)
        return;
    SetBusy(GetLangText("LOAD_APACHE_CONF"));
    StartWorker(std::make_unique<WorkedThread>(this, paths, true));
}

// ---------------------------------------------------------------------------------------------
// Selections

void WinPHPExt::OnExtensionSelected(wxCommandEvent&) {
    const int index = SelectionBelow(wxExtList, data.extensions.size());
    if (index < 0)
        return;
    const wxString& name = data.extensions[index].name;
    ShowDescription(label_ModuleDescription, HelpCatalogue::Get().ExtensionDescription(name));
    link_Description->SetURL(HelpCatalogue::Get().ExtensionLink(name));
}

PHPSettingRecord* WinPHPExt::SelectedSetting() {
    const int index = SelectionBelow(listBox, settingRows.size());
    return index < 0 ? nullptr : data.settings.Find(settingRows[index]);
}

void WinPHPExt::OnSettingSelected(wxCommandEvent&) {
    const PHPSettingRecord* record = SelectedSetting();
    if (!record)
        return;
    ShowDescription(label_SettingDescription, record->description);
    link_SettingDescription->SetURL(record->link);

    combo_SettingValue->Clear();
    const wxArrayString choices = record->GetValueChoices();
    combo_SettingValue->Enable(!choices.empty());
    for (const wxString& choice : choices) {
        const int row = combo_SettingValue->Append(choice);
        if (combo_SettingValue->GetSelection() == wxNOT_FOUND && record->ValueEquals(choice))
            combo_SettingValue->SetSelection(row);
    }
}

void WinPHPExt::OnValueChosen(wxCommandEvent&) {
    if (PHPSettingRecord* record = SelectedSetting())
        record->value = combo_SettingValue->GetValue();
}
