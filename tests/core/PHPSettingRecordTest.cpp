#include "php/PHPSettingRecord.h"

#include <gtest/gtest.h>

TEST(PHPSettingRecord, BoolOffersOnThenOffAndOtherTypesNothing) {
    PHPSettingRecord record;
    record.type = "bool";
    const wxArrayString choices = record.GetValueChoices();
    ASSERT_EQ(choices.size(), 2u);
    EXPECT_EQ(choices[0], "On");
    EXPECT_EQ(choices[1], "Off");
    record.type = "int";
    EXPECT_TRUE(record.GetValueChoices().empty());
}

TEST(PHPSettingRecord, ComparesValuesIgnoringCaseOnly) {
    PHPSettingRecord record;
    record.value = "On";
    EXPECT_TRUE(record.ValueEquals("on"));
    EXPECT_TRUE(record.ValueEquals("ON"));
    EXPECT_FALSE(record.ValueEquals("O"));
    EXPECT_FALSE(record.ValueEquals("Onn"));
    EXPECT_FALSE(record.ValueEquals("Off"));
    record.value.clear();
    EXPECT_FALSE(record.ValueEquals("On"));
}

TEST(PHPSettingRecord, WriteLineHasOneBlankOnEachSideOfTheSign) {
    PHPSettingRecord record;
    record.directive = "short_open_tag";
    record.value = "Off";
    EXPECT_EQ(record.GetWriteLine(), "short_open_tag = Off");
}
