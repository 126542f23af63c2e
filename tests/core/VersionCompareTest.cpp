#include "core/net/VersionCompare.h"

#include <gtest/gtest.h>

// 1: the first is older, -1: the first is newer.
TEST(VersionCompare, FieldsCompareAsNumbersAndUnreadableAnswersNeverLookNewer) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {"1.1", "1.2", 1},
        {"1.1", "1.0.9", -1},
        {"1.9", "1.10", 1},
        {"2.0", "10.0", 1},
        {"1.1", "1.1", 0},
        {"1,2", "1.2", 0},
        {"1.1", "1.1.0.0.7", 0},
        {"1.1.0.0.1", "1.1.0.0.9", 0},
        {"1..2", "1.0.2", 0},
        {"1.1", "", -1},
        {"1.1", "latest", -1},
        {"1.1", "1.2beta", 1},
        {"1.1", "99999999999999999999999.0", 1}};
    for (const auto& [first, second, expected] : cases)
        EXPECT_EQ(CompareVersions(first, second), expected) << first << " vs " << second;
}
