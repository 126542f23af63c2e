#include "php/PHPSettingRecord.h"

#include <gtest/gtest.h>

TEST(PHPSettingRecord, BoolOffersOnThenOffAndValuesCompareIgnoringCaseOnly) {
    PHPSettingRecord record;
    record.type = "bool";
    const wxString onOff[] = {"On", "Off"};
    EXPECT_EQ(record.GetValueChoices(), wxArrayString(2, onOff));
    record.type = "int";
    EXPECT_TRUE(record.GetValueChoices().empty());
    record.value = "On";
    EXPECT_TRUE(record.ValueEquals("oN"));
    EXPECT_FALSE(record.ValueEquals("Onn"));
    record.value.clear();
    EXPECT_FALSE(record.ValueEquals("On"));
}
