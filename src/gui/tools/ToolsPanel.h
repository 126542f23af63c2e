#pragma once

#include <wx/panel.h>
#include <wx/timer.h>
#include <wx/weakref.h>

class InstallPaths;
class WinDatabases;
class WinLogViewer;
class WinMail;
class wxButton;

// The main window's row of developer tools: Logs, Databases and Mail buttons, each opening its
// window (one of each; a second click raises it). The Mail button counts the messages that
// arrived since the Mail window last showed the list.
class ToolsPanel : public wxPanel {
public:
    static constexpr int MailCheckMs = 2000;

    ToolsPanel(wxWindow* parent, const InstallPaths& paths);

    void ApplyTexts();
    // Counts the new messages again (what the timer does).
    void UpdateMailCount();

    WinLogViewer* OpenLogViewer();
    WinDatabases* OpenDatabases();
    WinMail* OpenMail();
    size_t NewMailCount() const { return newMail; }

private:
    void OnTimer(wxTimerEvent& event);

    const InstallPaths& paths;
    wxButton* logsButton = nullptr;
    wxButton* databasesButton = nullptr;
    wxButton* mailButton = nullptr;
    wxWeakRef<WinLogViewer> logViewer;
    wxWeakRef<WinDatabases> databases;
    wxWeakRef<WinMail> mail;
    wxString seenNewest; // the newest message the Mail window listed
    size_t newMail = 0;
    wxTimer timer;
};
