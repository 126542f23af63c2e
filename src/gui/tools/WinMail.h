#pragma once

#include "core/mail/MailStore.h"

#include <wx/dialog.h>

class InstallPaths;
class wxListCtrl;
class wxListEvent;
class wxTextCtrl;

// The Mail window: the messages PHP sent into the tree's mail folder, newest first (date, from,
// to, subject); the selected one's header fields and text below; Open hands the .eml file to the
// desktop's mail program; Delete and Delete all remove messages.
class WinMail : public wxDialog {
public:
    WinMail(wxWindow* parent, const InstallPaths& paths);

    // Lists the folder again, keeping the selection when the message is still there.
    void Reload();
    void Select(long row);
    const std::vector<MailSummary>& Messages() const { return messages; }
    wxString ShownText() const;
    // The newest message listed ("" when none): the panel counts what arrived after it.
    wxString NewestId() const { return messages.empty() ? wxString() : messages.front().id; }

private:
    void BuildControls();
    void ShowSelected();
    long SelectedRow() const;
    void OnSelected(wxListEvent& event);
    void OnOpen(wxCommandEvent& event);
    void OnDelete(wxCommandEvent& event);
    void OnDeleteAll(wxCommandEvent& event);

    MailStore store;
    std::vector<MailSummary> messages;
    wxListCtrl* list = nullptr;
    wxTextCtrl* text = nullptr;
};
