#include "core/servers/CpuMeter.h"

#include <gtest/gtest.h>

// The share of machine time since the previous sample of each process, at most every 251 ms.
TEST(CpuMeter, ShareOfMachineTimeSinceThePreviousSampleOfEachProcess) {
    CpuMeter meter;
    EXPECT_EQ(meter.Sample(10, {100, 1000}, 0), 0); // first sample: nothing to compare
    EXPECT_DOUBLE_EQ(meter.Sample(10, {150, 1200}, 300), 25.0);
    EXPECT_EQ(meter.Sample(11, {5, 1200}, 300), 0); // another process keeps its own sample
    EXPECT_DOUBLE_EQ(meter.Sample(11, {45, 1400}, 600), 20.0);
    EXPECT_DOUBLE_EQ(meter.Sample(10, {150, 1400}, 600), 0.0);
    // 250 ms later: the previous value, and the previous sample stays the reference.
    EXPECT_DOUBLE_EQ(meter.Sample(11, {95, 1410}, 850), 20.0);
    EXPECT_DOUBLE_EQ(meter.Sample(11, {55, 1500}, 851), 10.0);
}

TEST(CpuMeter, NoTimeOrAReusedPidGivesZeroNotNonsense) {
    CpuMeter meter;
    meter.Sample(3, {500, 1000}, 0);
    EXPECT_EQ(meter.Sample(3, {500, 1000}, 400), 0); // the machine clock did not move
    EXPECT_EQ(meter.Sample(3, {2, 1100}, 800), 0);   // a new process got the pid
    EXPECT_EQ(meter.Measure({}), 0);
}
