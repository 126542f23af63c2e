#pragma once

#include "gui/ChartSeries.h"

#include <wx/font.h>
#include <wx/panel.h>
#include <wx/pen.h>

#include <functional>
#include <vector>

class wxDC;

// A text of the chart and where its top left corner goes.
struct ChartText {
    wxString text;
    wxPoint position;
};

struct ChartSegment {
    wxPoint from;
    wxPoint to;
};

// Everything the chart draws for a client size, in drawing order: the "100%" label, then the four
// grid lines with their labels, then per series its legend and its segments.
struct ChartLayout {
    ChartText topLabel;
    std::vector<int> gridY;
    std::vector<ChartText> gridLabels;
    std::vector<ChartText> legends;
    std::vector<std::vector<ChartSegment>> lines;
};

// The CPU chart: a black panel with a green grid and one line per series, the newest sample at the
// right edge, each series' name and newest value at the top right. The series are not owned; the
// control draws whatever they hold at each paint.
class StatsControl : public wxPanel {
public:
    StatsControl(wxWindow* parent, wxWindowID id, const std::vector<ChartSeries>* series,
                 const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize);

    // The chart's integer arithmetic; textWidth measures a text in the chart's font.
    static ChartLayout ComputeLayout(const wxSize& size, const std::vector<ChartSeries>& series,
                                     const std::function<int(const wxString&)>& textWidth);

    // Paints the whole chart for a client area of the given size (the paint handler's work).
    void Draw(wxDC& dc, const wxSize& size) const;

private:
    void OnPaint(wxPaintEvent& event);

    const std::vector<ChartSeries>* series;
    wxFont font;
    wxPen gridPen;

    wxDECLARE_EVENT_TABLE();
};
