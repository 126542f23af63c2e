#include "core/CpuMeter.h"

#include <gtest/gtest.h>

TEST(CpuMeter, ShareOfMachineTimeSinceThePreviousSampleOfEachProcess) {
    CpuMeter meter;
    EXPECT_EQ(meter.Sample(10, {100, 1000}, 0), 0); // first sample: nothing to compare
    EXPECT_DOUBLE_EQ(meter.Sample(10, {150, 1200}, 300), 25.0);
    // Another process keeps its own previous sample.
    EXPECT_EQ(meter.Sample(11, {5, 1200}, 300), 0);
    EXPECT_DOUBLE_EQ(meter.Sample(11, {45, 1400}, 600), 20.0);
    EXPECT_DOUBLE_EQ(meter.Sample(10, {150, 1400}, 600), 0.0);
}

TEST(CpuMeter, ASampleYoungerThan251MsReturnsThePreviousValueUnchanged) {
    CpuMeter meter;
    meter.Sample(7, {0, 0}, 1000);
    EXPECT_DOUBLE_EQ(meter.Sample(7, {50, 100}, 1251), 50.0);
    // 250 ms later: the previous value, and the previous sample stays the reference.
    EXPECT_DOUBLE_EQ(meter.Sample(7, {100, 110}, 1501), 50.0);
    EXPECT_DOUBLE_EQ(meter.Sample(7, {60, 200}, 1502), 10.0);
}

TEST(CpuMeter, NoTimeOrAReusedPidGivesZeroNotNonsense) {
    CpuMeter meter;
    meter.Sample(3, {500, 1000}, 0);
    EXPECT_EQ(meter.Sample(3, {500, 1000}, 400), 0); // the machine clock did not move
    EXPECT_EQ(meter.Sample(3, {2, 1100}, 800), 0);   // a new process got the pid
    EXPECT_EQ(meter.Measure({}), 0);
}
