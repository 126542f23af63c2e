#include "gui/tools/WinDatabases.h"

#include "core/lang/LangTable.h"
#include "gui/tools/ActionButtons.h"

#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/gauge.h>
#include <wx/listctrl.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace {

const int Gap = 6;

wxString SizeText(long long bytes) {
    return wxFileName::GetHumanReadableSize(wxULongLong(static_cast<unsigned long long>(bytes)));
}

} // namespace

WinDatabases::WinDatabases(wxWindow* parent, const InstallPaths& treePaths)
    : wxDialog(parent, wxID_ANY, GetLangText("DB_TITLE"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "WinDatabases"),
      programFolder(treePaths.ProgramFolder()), settingsCopy(treePaths.Settings()),
      paths(programFolder, settingsCopy) {
    BuildControls();
    Bind(EVT_DATABASE_PROGRESS, &WinDatabases::OnProgress, this);
    Bind(EVT_DATABASE_DONE, &WinDatabases::OnDone, this);
    Reload();
}

WinDatabases::~WinDatabases() {
    if (worker) {
        worker->Stop();
        worker->Wait(wxTHREAD_WAIT_BLOCK);
    }
}

void WinDatabases::BuildControls() {
    list = new wxListCtrl(this, wxID_ANY, wxDefaultPosition, wxSize(460, 240),
                          wxLC_REPORT | wxLC_SINGLE_SEL, wxDefaultValidator, "list_Databases");
    list->AppendColumn(GetLangText("DB_NAME"), wxLIST_FORMAT_LEFT, 240);
    list->AppendColumn(GetLangText("DB_TABLES"), wxLIST_FORMAT_RIGHT, 80);
    list->AppendColumn(GetLangText("DB_SIZE"), wxLIST_FORMAT_RIGHT, 110);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    buttons = AddActionButtons(this, row, Gap,
                               {{"DB_BACKUP", &WinDatabases::OnBackup},
                                {"DB_RESTORE", &WinDatabases::OnRestore},
                                {"DB_REFRESH", &WinDatabases::OnRefresh}});
    gauge = new wxGauge(this, wxID_ANY, 1000);
    row->Add(gauge, 1, wxALIGN_CENTER_VERTICAL);
    // Room for the few lines a failing client says.
    status = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxSize(460, 64),
                              wxST_NO_AUTORESIZE);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(list, 1, wxEXPAND | wxALL, Gap);
    column->Add(row, 0, wxEXPAND | wxLEFT | wxRIGHT, Gap);
    column->Add(status, 0, wxEXPAND | wxALL, Gap);
    SetSizerAndFit(column);
}

void WinDatabases::Run(DatabaseWorker::Job job) {
    if (worker)
        return;
    for (wxButton* button : buttons)
        button->Disable();
    gauge->SetValue(0);
    worker = std::make_unique<DatabaseWorker>(this, std::move(job));
    if (worker->Run() != wxTHREAD_NO_ERROR) {
        worker.reset();
        for (wxButton* button : buttons)
            button->Enable();
    }
}

void WinDatabases::Reload() {
    const InstallPaths& treePaths = paths;
    Run([&treePaths](const DatabaseProgress&) {
        DatabaseOutcome outcome;
        outcome.ok = outcome.listed =
            DatabaseTool(treePaths).List(outcome.databases, outcome.error);
        return outcome;
    });
}

bool WinDatabases::RestoreFile(const wxString& file) {
    const wxString target = DatabaseTool::DatabaseOfBackup(file);
    const bool exists = std::any_of(databases.begin(), databases.end(),
                                    [&](const DatabaseInfo& info) { return info.name == target; });
    if (exists && wxMessageBox(wxString::Format(GetLangText("DB_RESTORE_SURE"), target), "Kovix",
                               wxYES_NO | wxNO_DEFAULT | wxICON_QUESTION, this) != wxYES)
        return false;
    const InstallPaths& treePaths = paths;
    Run([&treePaths, file](const DatabaseProgress& progress) {
        DatabaseOutcome outcome;
        DatabaseTool tool(treePaths);
        outcome.ok = tool.Restore(file, "", outcome.safetyBackup, outcome.error, progress);
        DatabaseError ignored; // the restore's result is what the window says
        outcome.listed = tool.List(outcome.databases, ignored);
        outcome.doneKey = "DB_RESTORE_DONE";
        outcome.doneArgument = DatabaseTool::DatabaseOfBackup(file);
        return outcome;
    });
    return true;
}

void WinDatabases::OnBackup(wxCommandEvent&) {
    const long selected = list->GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED);
    std::vector<DatabaseInfo> chosen = databases;
    if (selected >= 0)
        chosen = {databases[static_cast<size_t>(selected)]};
    const InstallPaths& treePaths = paths;
    Run([&treePaths, chosen](const DatabaseProgress& progress) {
        DatabaseOutcome outcome;
        DatabaseTool tool(treePaths);
        outcome.ok = true;
        outcome.doneKey = "DB_BACKUP_DONE";
        wxString file;
        // The file names are said, not their folder: the line stays short.
        for (size_t i = 0; outcome.ok && i < chosen.size(); ++i) {
            outcome.ok = tool.Backup(
                chosen[i].name, chosen[i].bytes, file, outcome.error,
                [&](double fraction) { return progress((i + fraction) / chosen.size()); });
            outcome.doneArgument += (i > 0 ? ", " : "") + wxFileName(file).GetFullName();
        }
        DatabaseError ignored;
        outcome.listed = tool.List(outcome.databases, ignored);
        return outcome;
    });
}

void WinDatabases::OnRestore(wxCommandEvent&) {
    wxFileDialog chooser(this, GetLangText("DB_RESTORE"), DatabaseTool::BackupFolderOf(paths), "",
                         "*.sql.gz;*.sql", wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (chooser.ShowModal() == wxID_OK)
        RestoreFile(chooser.GetPath());
}

void WinDatabases::OnRefresh(wxCommandEvent&) {
    Reload();
}

void WinDatabases::OnProgress(wxThreadEvent& event) {
    gauge->SetValue(event.GetInt());
}

void WinDatabases::OnDone(wxThreadEvent& event) {
    if (worker) {
        worker->Wait(wxTHREAD_WAIT_BLOCK);
        worker.reset();
    }
    for (wxButton* button : buttons)
        button->Enable();
    const DatabaseOutcome outcome = event.GetPayload<DatabaseOutcome>();
    gauge->SetValue(outcome.ok ? gauge->GetRange() : 0);
    if (outcome.listed) {
        databases = outcome.databases;
        ShowList();
    }
    if (!outcome.ok) {
        status->SetLabel(DatabaseErrorText(outcome.error));
        status->Wrap(status->GetSize().x);
        return;
    }
    if (!outcome.safetyBackup.empty())
        status->SetLabel(
            RestoreDoneText(outcome.doneArgument, wxFileName(outcome.safetyBackup).GetFullName()));
    else
        status->SetLabel(outcome.doneKey.empty() ? wxString()
                                                 : wxString::Format(GetLangText(outcome.doneKey),
                                                                    outcome.doneArgument));
    status->Wrap(status->GetSize().x);
}

void WinDatabases::ShowList() {
    list->DeleteAllItems();
    for (const DatabaseInfo& database : databases) {
        const long row = list->InsertItem(list->GetItemCount(), database.name);
        list->SetItem(row, 1, wxString::Format("%ld", database.tables));
        list->SetItem(row, 2, SizeText(database.bytes));
    }
}

wxString WinDatabases::StatusText() const {
    return status->GetLabel();
}
