#pragma once

#include "core/logs/LogCatalog.h"
#include "core/logs/LogFollower.h"
#include "core/logs/LogLines.h"

#include <wx/dialog.h>
#include <wx/timer.h>

#include <memory>

class InstallPaths;
class wxChoice;
class wxListCtrl;
class wxStaticText;
class wxTextCtrl;
class wxToggleButton;

// The log viewer: one of the tree's logs, followed live on a timer, with a filter text, a pause
// and a jump to the last line. The list is virtual: it asks for the lines it draws, so a log
// that grows by thousands of lines a second costs only the lines in view.
class WinLogViewer : public wxDialog {
public:
    static constexpr int PollMs = 250;

    WinLogViewer(wxWindow* parent, const InstallPaths& paths);

    // Shows the log at that index of the catalogue (also what the choice does).
    void ShowLog(size_t index);
    const LogLines& Lines() const { return lines; }
    // Reads what arrived since the last look (what the timer does).
    void Poll();

private:
    void BuildControls();
    void ApplyTexts();
    void Refresh(bool toEnd);
    void OnChoice(wxCommandEvent& event);
    void OnFilter(wxCommandEvent& event);
    void OnPause(wxCommandEvent& event);
    void OnEnd(wxCommandEvent& event);
    void OnTimer(wxTimerEvent& event);

    std::vector<LogEntry> logs;
    std::unique_ptr<LogFollower> follower;
    LogLines lines;
    wxTimer timer;
    wxChoice* choice = nullptr;
    wxTextCtrl* filter = nullptr;
    wxToggleButton* pause = nullptr;
    wxListCtrl* list = nullptr;
    wxStaticText* status = nullptr;
};
