#include "gui/ChartSeries.h"

#include <gtest/gtest.h>

TEST(ChartSeriesTest, StartsAtZeroAndShiftsTowardsTheStart) {
    ChartSeries series("Apache", wxColour(255, 0, 0), 4);
    EXPECT_EQ(series.samples, (std::vector<std::uint16_t>{0, 0, 0, 0}));
    EXPECT_EQ(series.Newest(), 0);

    for (std::uint16_t value : {5, 6, 7, 8, 250})
        series.Add(value);
    EXPECT_EQ(series.samples, (std::vector<std::uint16_t>{6, 7, 8, 250}));
    EXPECT_EQ(series.Newest(), 250);
}

TEST(ChartSeriesTest, SingleAndEmptySeries) {
    ChartSeries single("One", wxColour(255, 0, 0), 1);
    single.Add(42);
    EXPECT_EQ(single.samples, (std::vector<std::uint16_t>{42}));

    ChartSeries empty("None", wxColour(255, 0, 0), 0);
    empty.Add(42);
    EXPECT_TRUE(empty.samples.empty());
    EXPECT_EQ(empty.Newest(), 0);
}

TEST(ChartSeriesTest, CpuSeriesNamesColoursAndLength) {
    const std::vector<ChartSeries> series = MakeCpuSeries();
    ASSERT_EQ(series.size(), 3u);
    EXPECT_EQ(series[0].name, "Apache");
    EXPECT_EQ(series[1].name, "MySQL");
    EXPECT_EQ(series[2].name, "Apache + MySQL");
    EXPECT_EQ(series[0].colour, wxColour(128, 128, 255));
    EXPECT_EQ(series[1].colour, wxColour(255, 128, 128));
    EXPECT_EQ(series[2].colour, wxColour(200, 200, 200));
    for (const ChartSeries& one : series) {
        EXPECT_EQ(one.samples.size(), 100u);
        EXPECT_EQ(one.colour.Alpha(), 255);
    }
}
