#pragma once

#include "gui/ChartSeries.h"

#include <wx/dialog.h>

#include <vector>

class StatsControl;
class wxButton;

// The "Stats CPU" window: the CPU chart and a Close button. Created once, hidden, by the main
// window, which owns the series and feeds them; closing only hides the window.
class WinStats : public wxDialog {
public:
    enum {
        ID_CHART = 1001,
        ID_STATICLINE = 1002,
        ID_BTN_OK = 1003,
    };

    WinStats(wxWindow* parent, const std::vector<ChartSeries>* series);

    void ApplyTexts();
    // Call after the series changed: repaints the chart when the window is shown.
    void SeriesChanged();

private:
    void BuildControls(const std::vector<ChartSeries>* series);
    void OnClose(wxCloseEvent& event);
    void OnOk(wxCommandEvent& event);

    StatsControl* chart = nullptr;
    wxButton* btn_OK = nullptr;

    wxDECLARE_EVENT_TABLE();
};
