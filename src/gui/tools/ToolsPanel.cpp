#include "gui/tools/ToolsPanel.h"

#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "core/mail/MailStore.h"
#include "gui/tools/WinDatabases.h"
#include "gui/tools/WinLogViewer.h"
#include "gui/tools/WinMail.h"

#include <wx/button.h>
#include <wx/sizer.h>

namespace {

const int Gap = 4;

// Shows the window of ref, creating it first when there is none (it destroys itself on close).
template <typename Window>
Window* ShowWindow(wxWeakRef<Window>& ref, wxWindow* parent, const InstallPaths& paths) {
    if (!ref) {
        ref = new Window(parent, paths);
        ref->Bind(wxEVT_CLOSE_WINDOW, [window = ref.get()](wxCloseEvent&) { window->Destroy(); });
    }
    ref->Show();
    ref->Raise();
    return ref.get();
}

} // namespace

ToolsPanel::ToolsPanel(wxWindow* parent, const InstallPaths& paths)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "ToolsPanel"),
      paths(paths), timer(this) {
    logsButton = new wxButton(this, wxID_ANY, "Logs", wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, "btn_Logs");
    databasesButton = new wxButton(this, wxID_ANY, "Databases", wxDefaultPosition, wxDefaultSize, 0,
                                   wxDefaultValidator, "btn_Databases");
    mailButton = new wxButton(this, wxID_ANY, "Mail", wxDefaultPosition, wxDefaultSize, 0,
                              wxDefaultValidator, "btn_Mail");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    for (wxButton* button : {logsButton, databasesButton, mailButton})
        row->Add(button, 1, wxRIGHT, Gap);
    SetSizer(row);
    logsButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OpenLogViewer(); });
    databasesButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OpenDatabases(); });
    mailButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OpenMail(); });
    Bind(wxEVT_TIMER, &ToolsPanel::OnTimer, this);
    UpdateMailCount();
    timer.Start(MailCheckMs);
}

void ToolsPanel::ApplyTexts() {
    logsButton->SetLabel(GetLangText("TOOLS_LOGS"));
    databasesButton->SetLabel(GetLangText("DB_TITLE"));
    mailButton->SetLabel(
        newMail == 0 ? GetLangText("MAIL_TITLE")
                     : wxString::Format(GetLangText("MAIL_NEW"), static_cast<int>(newMail)));
}

void ToolsPanel::UpdateMailCount() {
    const MailStore store(MailStore::FolderOf(paths));
    if (mail && mail->IsShown()) {
        if (store.CountNewerThan(mail->NewestId()) > 0)
            mail->Reload();
        seenNewest = mail->NewestId();
    }
    newMail = store.CountNewerThan(seenNewest);
    ApplyTexts();
}

WinLogViewer* ToolsPanel::OpenLogViewer() {
    return ShowWindow(logViewer, wxGetTopLevelParent(this), paths);
}

WinDatabases* ToolsPanel::OpenDatabases() {
    return ShowWindow(databases, wxGetTopLevelParent(this), paths);
}

WinMail* ToolsPanel::OpenMail() {
    WinMail* window = ShowWindow(mail, wxGetTopLevelParent(this), paths);
    window->Reload();
    UpdateMailCount();
    return window;
}

void ToolsPanel::OnTimer(wxTimerEvent&) {
    UpdateMailCount();
}
