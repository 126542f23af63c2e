#include "gui/StatsControl.h"

#include <gtest/gtest.h>

namespace {

// A fixed text width keeps the legend arithmetic independent of the installed fonts.
int SixPixelsPerCharacter(const wxString& text) {
    return 6 * static_cast<int>(text.length());
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
