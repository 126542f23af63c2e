#include "net/VersionCompare.h"

#include <gtest/gtest.h>

TEST(VersionCompare, NumbersCompareFieldByFieldNotAsText) {
    EXPECT_EQ(CompareVersions("1.1", "1.2"), 1) << "1 means the first is older";
    EXPECT_EQ(CompareVersions("1.2", "1.1"), -1);
    EXPECT_EQ(CompareVersions("1.1", "1.0.9"), -1);
    EXPECT_EQ(CompareVersions("1.9", "1.10"), 1);
    EXPECT_EQ(CompareVersions("1.1", "2"), 1);
    EXPECT_EQ(CompareVersions("2.0", "10.0"), 1);
    EXPECT_EQ(CompareVersions("1.1.0.1", "1.1.0.2"), 1) << "the fourth field counts";
    EXPECT_EQ(CompareVersions("1.1", "1.1"), 0);
}

TEST(VersionCompare, CommasSeparateLikeDots) {
    EXPECT_EQ(CompareVersions("1.1", "1,2"), 1);
    EXPECT_EQ(CompareVersions("1,2", "1.2"), 0);
    EXPECT_EQ(CompareVersions("1,1.3", "1.1,3"), 0);
}

TEST(VersionCompare, MissingFieldsCountZeroAndFieldsAfterTheFourthAreIgnored) {
    EXPECT_EQ(CompareVersions("1.1", "1.1.0.0"), 0);
    EXPECT_EQ(CompareVersions("1.1", "1.1.0.0.7"), 0);
    EXPECT_EQ(CompareVersions("1.1.0.0.1", "1.1.0.0.9"), 0);
    EXPECT_EQ(CompareVersions("1.1", "1.1.0.1"), 1);
    EXPECT_EQ(CompareVersions("1..2", "1.0.2"), 0) << "an empty field in the middle is a 0";
}

TEST(VersionCompare, UnreadableAnswersNeverLookNewer) {
    EXPECT_EQ(CompareVersions("1.1", ""), -1);
    EXPECT_EQ(CompareVersions("1.1", "latest"), -1);
    EXPECT_EQ(CompareVersions("1.1", "<html>"), -1);
    EXPECT_EQ(CompareVersions("1.1", "1.2beta"), 1) << "a field counts by its leading digits";
    EXPECT_EQ(CompareVersions("1.1", "99999999999999999999999.0"), 1) << "huge numbers clamp";
}
