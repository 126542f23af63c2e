#include "gui/StatsControl.h"

#include <gtest/gtest.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/image.h>

#include <cstdlib>

namespace {

// A fixed text width keeps the legend arithmetic independent of the installed fonts.
int SixPixelsPerCharacter(const wxString& text) {
    return 6 * static_cast<int>(text.length());
}

bool Near(const wxImage& image, int x, int y, const wxColour& colour) {
    const int tolerance = 40;
    return std::abs(image.GetRed(x, y) - colour.Red()) <= tolerance &&
           std::abs(image.GetGreen(x, y) - colour.Green()) <= tolerance &&
           std::abs(image.GetBlue(x, y) - colour.Blue()) <= tolerance;
}

} // namespace

TEST(StatsControlTest, NewSeriesLieFlatAtTheBottomWithZeroLegendsAtTheTopRight) {
    std::vector<ChartSeries> series = MakeCpuSeries();
    const ChartLayout layout =
        StatsControl::ComputeLayout(wxSize(400, 200), series, SixPixelsPerCharacter);

    EXPECT_EQ(layout.topLabel.text, "100%");
    EXPECT_EQ(layout.topLabel.position, wxPoint(5, 3));
    EXPECT_EQ(layout.gridY, (std::vector<int>{39, 78, 117, 156}));
    const char* labels[] = {"80%", "60%", "40%", "20%"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(layout.gridLabels[i].text, labels[i]);
        EXPECT_EQ(layout.gridLabels[i].position, wxPoint(5, layout.gridY[i] + 2));
    }

    ASSERT_EQ(layout.legends.size(), 3u);
    EXPECT_EQ(layout.legends[0].text, "Apache - 0%");
    EXPECT_EQ(layout.legends[1].text, "MySQL - 0%");
    EXPECT_EQ(layout.legends[2].text, "Apache + MySQL - 0%");
    EXPECT_EQ(layout.legends[0].position, wxPoint(400 - 6 * 11 - 5, 2));
    EXPECT_EQ(layout.legends[1].position, wxPoint(400 - 6 * 10 - 5, 14));
    EXPECT_EQ(layout.legends[2].position, wxPoint(400 - 6 * 19 - 5, 26));

    for (const std::vector<ChartSegment>& line : layout.lines) {
        ASSERT_EQ(line.size(), 99u);
        for (const ChartSegment& segment : line) {
            EXPECT_EQ(segment.from.y, 200);
            EXPECT_EQ(segment.to.y, 200);
        }
    }
}

TEST(StatsControlTest, SegmentEndPointsFollowTheIntegerArithmetic) {
    std::vector<ChartSeries> series = MakeCpuSeries();
    for (std::uint16_t value : {10, 33, 99, 100, 150})
        series[0].Add(value);
    const ChartLayout layout =
        StatsControl::ComputeLayout(wxSize(397, 151), series, SixPixelsPerCharacter);
    const std::vector<ChartSegment>& line = layout.lines[0];

    // x0 = ((i - 1) * W) / 99 + 1, x1 = (i * W) / 99 + 1, y = H - (sample * H) / 100.
    EXPECT_EQ(line[0].from, wxPoint(1, 151));
    EXPECT_EQ(line[0].to, wxPoint(5, 151));
    EXPECT_EQ(line[94].from, wxPoint(377, 151));
    EXPECT_EQ(line[94].to, wxPoint(381, 151 - 15));
    EXPECT_EQ(line[95].from, line[94].to);
    EXPECT_EQ(line[95].to, wxPoint(385, 151 - 49));
    EXPECT_EQ(line[96].to, wxPoint(389, 151 - 149));
    EXPECT_EQ(line[97].to, wxPoint(393, 0));
    // The last end point would be W + 1 and is pulled back to W; above 100 goes above the top.
    EXPECT_EQ(line[98].from, wxPoint(393, 0));
    EXPECT_EQ(line[98].to, wxPoint(397, 151 - 226));
    EXPECT_EQ(layout.legends[0].text, "Apache - 150%");
    EXPECT_EQ(layout.legends[0].position, wxPoint(397 - 6 * 13 - 5, 2));

    // A single sample draws no line, only its legend.
    std::vector<ChartSeries> one{ChartSeries("Solo", wxColour(255, 0, 0), 1)};
    one[0].Add(7);
    const ChartLayout solo =
        StatsControl::ComputeLayout(wxSize(300, 100), one, SixPixelsPerCharacter);
    ASSERT_EQ(solo.legends.size(), 1u);
    EXPECT_EQ(solo.legends[0].text, "Solo - 7%");
    EXPECT_TRUE(solo.lines[0].empty());
}

TEST(StatsControlTest, DrawnLinesGridAndBackgroundSitAtTheComputedPixels) {
    std::vector<ChartSeries> series = MakeCpuSeries();
    for (int i = 0; i < 100; ++i) {
        series[0].Add(70);
        series[1].Add(20);
        series[2].Add(90);
    }
    const wxSize size(400, 200);
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "chart");
    auto* chart = new StatsControl(frame, wxID_ANY, &series, wxDefaultPosition, size);
    wxBitmap bitmap(size.x, size.y, 24);
    {
        wxMemoryDC dc(bitmap);
        chart->Draw(dc, size);
    }
    frame->Destroy();
    const wxImage image = bitmap.ConvertToImage();
    wxMemoryDC measure;
    measure.SetFont(wxFont(7, wxFONTFAMILY_DEFAULT, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL));
    const ChartLayout layout = StatsControl::ComputeLayout(
        size, series, [&measure](const wxString& text) { return measure.GetTextExtent(text).x; });

    // Each series is a flat line at its computed height, checked at every segment's end points
    // left of the legends.
    for (std::size_t place = 0; place < series.size(); ++place) {
        for (const ChartSegment& segment : layout.lines[place]) {
            if (segment.to.x >= 250)
                break;
            EXPECT_TRUE(Near(image, segment.to.x, segment.to.y, series[place].colour))
                << series[place].name << " at " << segment.to.x << "," << segment.to.y;
        }
    }
    EXPECT_EQ(layout.lines[0][10].to.y, 60);
    EXPECT_EQ(layout.lines[2][10].to.y, 20);
    EXPECT_TRUE(Near(image, 200, 156, wxColour(0, 100, 0))) << "grid line at 20%";
    EXPECT_TRUE(Near(image, 200, 100, *wxBLACK)) << "background";

    // The legends are written in their series' colour from the computed corner onwards.
    for (std::size_t place = 0; place < series.size(); ++place) {
        const wxPoint at = layout.legends[place].position;
        bool inked = false;
        for (int y = at.y; y < at.y + 10 && !inked; ++y)
            for (int x = at.x; x < size.x - 5 && !inked; ++x)
                inked = Near(image, x, y, series[place].colour);
        EXPECT_TRUE(inked) << series[place].name;
        EXPECT_FALSE(Near(image, at.x - 2, at.y + 5, series[place].colour));
    }
}
