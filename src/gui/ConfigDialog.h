#pragma once

#include "gui/ConfigWorkerSet.h"
#include "gui/DialogParts.h"

#include <wx/dialog.h>

#include <memory>

class LoadingControl;
class wxHyperlinkCtrl;
class wxHyperlinkEvent;
class wxStaticBoxSizer;
class wxStaticText;

// What the Apache and PHP configuration dialogs share: the workers that read and write the
// templates (owned here; stopped and joined when the dialog goes), the loading indicator laid
// over the dialog while a job runs, the busy state, the description boxes of the catalogue texts
// and the opening of their links. A dialog says what a job locks (LockForJob) and takes the
// completions of its workers through AcceptCompletion.
class ConfigDialog : public wxDialog {
public:
    // While a job reads or writes a template.
    bool IsBusy() const { return busy; }

protected:
    ConfigDialog(wxWindow* parent, const wxString& title);
    ~ConfigDialog() override;

    // Lays the loading indicator over the middle of the dialog; call once its sizer is set.
    void AddLoadingControl();
    // Shows the indicator with text and locks what a job must not be disturbed by.
    void SetBusy(const wxString& text);
    void ClearBusy();
    // Runs worker; when it cannot start and no other job runs, the dialog is no longer busy.
    void StartWorker(std::unique_ptr<ConfigWorker> worker);
    void StopWorkers() { workers.StopAll(); }
    bool WorkersDone() const { return workers.IsEmpty(); }
    // False for an event of a job no longer known (stopped); otherwise joins and forgets the job
    // of a completion (not of a progress event, after which the job goes on).
    bool AcceptCompletion(const wxThreadEvent& event, bool progress = false);
    // For a save's completion: true when everything was written; otherwise says what was not
    // and leaves the dialog open, not busy, with the user's changes.
    bool SaveSucceeded(const wxThreadEvent& event);
    void ShowFailures(const wxString& failures) { DialogParts::ShowFailures(this, failures); }

    // A "groupBox" framing a description pane and its documentation link ("link").
    wxStaticBoxSizer* DescriptionBox(wxWindow* page, int boxId, wxStaticText*& label, int labelId,
                                     const wxString& labelName, wxHyperlinkCtrl*& link, int linkId,
                                     const wxString& linkName);

private:
    virtual void LockForJob(bool locked) = 0;
    void OnLink(wxHyperlinkEvent& event);

    ConfigWorkerSet workers;
    LoadingControl* loading = nullptr;
    bool busy = false;
};
