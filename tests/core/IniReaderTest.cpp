#include "core/IniReader.h"

#include <gtest/gtest.h>

TEST(IniReader, SectionsKeysAndValuesInFileOrder) {
    const std::vector<IniEntry> entries = ReadIniEntries("top = 1\r\n"
                                                         "  [mysqld] \n"
                                                         "port=3307\n"
                                                         "; comment without equals\n"
                                                         "socket = \"/tmp/my sock\"  \n"
                                                         "x y\t= spaced key\n"
                                                         "[client]\n"
                                                         "port = 3308");
    const std::vector<std::tuple<wxString, wxString, wxString>> expected = {
        {"", "top", "1"},
        {"[mysqld]", "port", "3307"},
        {"[mysqld]", "socket", "\"/tmp/my sock\""},
        {"[mysqld]", "y\t", "spaced key"},
        {"[client]", "port", "3308"}};
    ASSERT_EQ(entries.size(), expected.size());
    for (size_t i = 0; i < entries.size(); ++i)
        EXPECT_EQ(std::make_tuple(entries[i].section, entries[i].key, entries[i].value),
                  expected[i])
            << i;

    wxString inside;
    EXPECT_TRUE(QuotedPrefix("\"first\" \"second\"", inside));
    EXPECT_EQ(inside, "first");
    EXPECT_FALSE(QuotedPrefix("\"unclosed", inside));
    EXPECT_EQ(WithoutQuotes("\"/tmp/my sock\""), "/tmp/my sock");
    EXPECT_EQ(WithoutQuotes("\"half"), "\"half");
}
