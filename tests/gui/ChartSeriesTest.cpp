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

    ChartSeries empty("None", wxColour(255, 0, 0), 0);
    empty.Add(42);
    EXPECT_TRUE(empty.samples.empty());
    EXPECT_EQ(empty.Newest(), 0);
}
