#include "gui/WinStats.h"

#include "core/lang/LangTable.h"
#include "gui/StatsControl.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statline.h>

wxBEGIN_EVENT_TABLE(WinStats, wxDialog)
    EVT_CLOSE(WinStats::OnClose)
    EVT_BUTTON(WinStats::ID_BTN_OK, WinStats::OnOk)
wxEND_EVENT_TABLE()

WinStats::WinStats(wxWindow* parent, const std::vector<ChartSeries>* series)
    : wxDialog(parent, wxID_ANY, "Stats CPU", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "dialog") {
    BuildControls(series);
    ApplyTexts();
}

void WinStats::BuildControls(const std::vector<ChartSeries>* series) {
    // 400 pixels give every one of the 100 samples four pixels.
    chart = new StatsControl(this, ID_CHART, series, wxDefaultPosition, FromDIP(wxSize(400, 200)));
    auto* line = new wxStaticLine(this, ID_STATICLINE, wxDefaultPosition, wxDefaultSize,
                                  wxLI_HORIZONTAL, "staticLine");
    btn_OK = new wxButton(this, ID_BTN_OK, "Close", wxDefaultPosition, wxDefaultSize, 0,
                          wxDefaultValidator, "btn_OK");

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(chart, 1, wxEXPAND | wxALL, FromDIP(8));
    sizer->Add(line, 0, wxEXPAND | wxLEFT | wxRIGHT, FromDIP(8));
    sizer->Add(btn_OK, 0, wxALIGN_RIGHT | wxALL, FromDIP(8));
    SetSizerAndFit(sizer);
    btn_OK->SetDefault();
}

void WinStats::ApplyTexts() {
    btn_OK->SetLabel(GetLangText("CLOSE"));
    Layout();
}

void WinStats::SeriesChanged() {
    if (IsShown())
        chart->Refresh(false);
}

void WinStats::OnClose(wxCloseEvent&) {
    Hide();
}

void WinStats::OnOk(wxCommandEvent&) {
    Hide();
}
