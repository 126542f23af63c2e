#pragma once

#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "gui/tools/DatabaseWorker.h"

#include <wx/dialog.h>

#include <memory>

class wxButton;
class wxGauge;
class wxListCtrl;
class wxStaticText;

// The Databases window: the tree's databases with their sizes, Backup of the selected one (or of
// all when none is selected), Restore of a backup file (asked first when it would replace a
// database that exists). The work runs on a DatabaseWorker that the window owns and joins; the
// gauge shows its progress, the line below says how it ended.
class WinDatabases : public wxDialog {
public:
    WinDatabases(wxWindow* parent, const InstallPaths& paths);
    ~WinDatabases() override;

    // Asks the server for the list again.
    void Reload();
    // Restores file into the database it was made of, asking first when that one exists.
    // False when the user said no (nothing is done then).
    bool RestoreFile(const wxString& file);
    bool IsWorking() const { return worker != nullptr; }
    const std::vector<DatabaseInfo>& Databases() const { return databases; }
    wxString StatusText() const;

private:
    void BuildControls();
    void Run(DatabaseWorker::Job job);
    void ShowList();
    void OnBackup(wxCommandEvent& event);
    void OnRestore(wxCommandEvent& event);
    void OnRefresh(wxCommandEvent& event);
    void OnProgress(wxThreadEvent& event);
    void OnDone(wxThreadEvent& event);

    // The worker's copy: the window's paths may change with the settings while it runs.
    wxString programFolder;
    AppSettings settingsCopy;
    InstallPaths paths;
    std::vector<DatabaseInfo> databases;
    std::unique_ptr<DatabaseWorker> worker;
    wxListCtrl* list = nullptr;
    wxGauge* gauge = nullptr;
    wxStaticText* status = nullptr;
    std::vector<wxButton*> buttons;
};
