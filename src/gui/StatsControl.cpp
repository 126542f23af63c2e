#include "gui/StatsControl.h"

#include <wx/dcbuffer.h>

namespace {

const wxColour kBackground(0, 0, 0);
const wxColour kFrame(0, 150, 0);
const wxColour kGridText(0, 200, 0);
const char* const kGridLabels[] = {"80%", "60%", "40%", "20%"};

wxString LegendText(const ChartSeries& series) {
    return series.name + " - " + wxString::Format("%d", static_cast<int>(series.Newest())) + "%";
}

std::vector<ChartSegment> SeriesSegments(const ChartSeries& series, int width, int height) {
    std::vector<ChartSegment> segments;
    const int count = static_cast<int>(series.samples.size());
    for (int i = 1; i < count; ++i) {
        const int x0 = ((i - 1) * width) / (count - 1) + 1;
        int x1 = (i * width) / (count - 1) + 1;
        if (x1 > width - 1)
            x1 = width;
        const int y0 = height - (series.samples[i - 1] * height) / 100;
        const int y1 = height - (series.samples[i] * height) / 100;
        segments.push_back({wxPoint(x0, y0), wxPoint(x1, y1)});
    }
    return segments;
}

} // namespace

wxBEGIN_EVENT_TABLE(StatsControl, wxPanel)
    EVT_PAINT(StatsControl::OnPaint)
wxEND_EVENT_TABLE()

StatsControl::StatsControl(wxWindow* parent, wxWindowID id, const std::vector<ChartSeries>* series,
                           const wxPoint& pos, const wxSize& size)
    : series(series), font(7, wxFONTFAMILY_DEFAULT, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL),
      gridPen(wxColour(0, 100, 0), 1, wxPENSTYLE_SOLID) {
    // Painted whole by OnPaint through a back buffer, so the 500 ms refresh does not flicker.
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, id, pos, size, wxTAB_TRAVERSAL | wxFULL_REPAINT_ON_RESIZE, "panel");
}

ChartLayout StatsControl::ComputeLayout(const wxSize& size, const std::vector<ChartSeries>& series,
                                        const std::function<int(const wxString&)>& textWidth) {
    const int width = size.x;
    const int height = size.y;
    ChartLayout layout;
    layout.topLabel = {"100%", wxPoint(5, 3)};
    for (int i = 1; i <= 4; ++i) {
        const int y = ((height - 2) / 5) * i;
        layout.gridY.push_back(y);
        layout.gridLabels.push_back({kGridLabels[i - 1], wxPoint(5, y + 2)});
    }
    for (std::size_t place = 0; place < series.size(); ++place) {
        const wxString legend = LegendText(series[place]);
        const int x = width - textWidth(legend) - 5;
        layout.legends.push_back({legend, wxPoint(x, 2 + 12 * static_cast<int>(place))});
        layout.lines.push_back(SeriesSegments(series[place], width, height));
    }
    return layout;
}

void StatsControl::Draw(wxDC& dc, const wxSize& size) const {
    dc.SetBrush(wxBrush(kBackground));
    dc.SetPen(wxPen(kFrame));
    dc.DrawRectangle(wxPoint(0, 0), size);

    dc.SetFont(font);
    dc.SetBackgroundMode(wxBRUSHSTYLE_TRANSPARENT);
    static const std::vector<ChartSeries> noSeries;
    const ChartLayout layout =
        ComputeLayout(size, series ? *series : noSeries,
                      [&dc](const wxString& text) { return dc.GetTextExtent(text).x; });

    dc.SetTextForeground(kGridText);
    dc.DrawText(layout.topLabel.text, layout.topLabel.position);
    dc.SetPen(gridPen);
    for (std::size_t i = 0; i < layout.gridY.size(); ++i) {
        dc.DrawLine(0, layout.gridY[i], size.x, layout.gridY[i]);
        dc.DrawText(layout.gridLabels[i].text, layout.gridLabels[i].position);
    }

    for (std::size_t place = 0; place < layout.legends.size(); ++place) {
        const wxColour& colour = (*series)[place].colour;
        dc.SetPen(wxPen(colour, 1, wxPENSTYLE_SOLID));
        dc.SetTextForeground(colour);
        dc.DrawText(layout.legends[place].text, layout.legends[place].position);
        for (const ChartSegment& segment : layout.lines[place])
            dc.DrawLine(segment.from, segment.to);
    }
}

void StatsControl::OnPaint(wxPaintEvent&) {
    wxAutoBufferedPaintDC dc(this);
    Draw(dc, GetClientSize());
}
