#include "gui/tools/WinLogViewer.h"

#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/listctrl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/tglbtn.h>

namespace {

const int Gap = 6;

// Draws the shown lines of the model, asked for row by row.
class LogListView : public wxListCtrl {
public:
    LogListView(wxWindow* parent, const LogLines& lines)
        : wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxSize(760, 420),
                     wxLC_REPORT | wxLC_VIRTUAL | wxLC_NO_HEADER | wxLC_SINGLE_SEL),
          lines(lines) {
        AppendColumn("", wxLIST_FORMAT_LEFT, 4000);
        SetFont(wxFont(wxFontInfo(9).Family(wxFONTFAMILY_TELETYPE)));
    }

private:
    wxString OnGetItemText(long item, long) const override {
        return static_cast<size_t>(item) < lines.ShownCount() ? lines.Shown(item) : wxString();
    }

    const LogLines& lines;
};

} // namespace

WinLogViewer::WinLogViewer(wxWindow* parent, const InstallPaths& paths)
    : wxDialog(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "WinLogViewer"),
      logs(LogCatalog::Entries(paths)), timer(this) {
    BuildControls();
    ApplyTexts();
    ShowLog(0);
    timer.Start(PollMs);
}

void WinLogViewer::BuildControls() {
    choice = new wxChoice(this, wxID_ANY);
    filter = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0,
                            wxDefaultValidator, "text_Filter");
    pause = new wxToggleButton(this, wxID_ANY, "");
    auto* end = new wxButton(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0,
                             wxDefaultValidator, "btn_End");
    list = new LogListView(this, lines);
    status = new wxStaticText(this, wxID_ANY, "");
    auto* bar = new wxBoxSizer(wxHORIZONTAL);
    bar->Add(choice, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, Gap);
    bar->Add(
        new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0, "label_Filter"),
        0, wxALIGN_CENTER_VERTICAL | wxRIGHT, Gap);
    bar->Add(filter, 1, wxALIGN_CENTER_VERTICAL | wxRIGHT, Gap);
    bar->Add(pause, 0, wxRIGHT, Gap);
    bar->Add(end, 0);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(bar, 0, wxEXPAND | wxALL, Gap);
    column->Add(list, 1, wxEXPAND | wxLEFT | wxRIGHT, Gap);
    column->Add(status, 0, wxEXPAND | wxALL, Gap);
    SetSizerAndFit(column);
    choice->Bind(wxEVT_CHOICE, &WinLogViewer::OnChoice, this);
    filter->Bind(wxEVT_TEXT, &WinLogViewer::OnFilter, this);
    pause->Bind(wxEVT_TOGGLEBUTTON, &WinLogViewer::OnPause, this);
    end->Bind(wxEVT_BUTTON, &WinLogViewer::OnEnd, this);
    Bind(wxEVT_TIMER, &WinLogViewer::OnTimer, this);
}

void WinLogViewer::ApplyTexts() {
    SetTitle(GetLangText("LOGVIEW_TITLE"));
    for (const LogEntry& log : logs)
        choice->Append(GetLangText(log.textKey));
    FindWindowByName("label_Filter", this)->SetLabel(GetLangText("LOGVIEW_FILTER"));
    pause->SetLabel(GetLangText("LOGVIEW_PAUSE"));
    FindWindowByName("btn_End", this)->SetLabel(GetLangText("LOGVIEW_END"));
    Layout();
}

void WinLogViewer::ShowLog(size_t index) {
    choice->SetSelection(static_cast<int>(index));
    follower = std::make_unique<LogFollower>(logs[index].path);
    lines.Clear();
    lines.Append(follower->Open());
    Refresh(true);
}

void WinLogViewer::Poll() {
    const std::vector<wxString> arrived = follower->Poll();
    if (follower->Restarted())
        lines.Clear(); // the lines shown are no longer in the log
    else if (arrived.empty())
        return;
    lines.Append(arrived);
    Refresh(!lines.IsPaused());
}

// Keeps the view at the end when it was there (or when asked), and says what waits or is missing.
void WinLogViewer::Refresh(bool toEnd) {
    const long count = static_cast<long>(lines.ShownCount());
    const bool wasAtEnd = list->GetItemCount() == 0 ||
                          list->GetTopItem() + list->GetCountPerPage() >= list->GetItemCount();
    list->SetItemCount(count);
    if (count > 0 && (toEnd || wasAtEnd) && !lines.IsPaused())
        list->EnsureVisible(count - 1);
    list->Refresh();
    const wxString path = follower->Path();
    if (lines.HeldCount() > 0)
        status->SetLabel(
            wxString::Format(GetLangText("LOGVIEW_HELD"), static_cast<int>(lines.HeldCount())));
    else
        status->SetLabel(
            wxFileExists(path) ? path : wxString::Format(GetLangText("LOGVIEW_MISSING"), path));
}

void WinLogViewer::OnChoice(wxCommandEvent&) {
    ShowLog(static_cast<size_t>(choice->GetSelection()));
}
void WinLogViewer::OnFilter(wxCommandEvent&) {
    lines.SetFilter(filter->GetValue());
    Refresh(true);
}
void WinLogViewer::OnPause(wxCommandEvent&) {
    lines.SetPaused(pause->GetValue());
    Refresh(!lines.IsPaused());
}
void WinLogViewer::OnEnd(wxCommandEvent&) {
    if (lines.IsPaused()) {
        pause->SetValue(false);
        lines.SetPaused(false);
    }
    Refresh(true);
}
void WinLogViewer::OnTimer(wxTimerEvent&) {
    Poll();
}
