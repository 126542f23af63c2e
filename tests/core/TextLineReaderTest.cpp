#include "core/TextLineReader.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<wxString> Lines(const wxString& text) {
    TextLineReader reader(text);
    std::vector<wxString> lines;
    while (!reader.AtEnd())
        lines.push_back(reader.ReadLine());
    return lines;
}

} // namespace

TEST(TextLineReader, EachLineEndEndsOneLineAndTheLastStartsNone) {
    using Texts = std::vector<wxString>;
    EXPECT_EQ(Lines(""), Texts{});
    EXPECT_EQ(Lines("\n"), Texts{""});
    EXPECT_EQ(Lines("a\n"), Texts{"a"});
    EXPECT_EQ(Lines("a\n\n"), (Texts{"a", ""}));
    EXPECT_EQ(Lines("a\r\nb\rc\n\rd"), (Texts{"a", "b", "c", "", "d"}));
    EXPECT_EQ(Lines("a\r\r\n"), (Texts{"a", ""}));
    EXPECT_EQ(Lines(wxString("a\0b\n", 4)), Texts{wxString("a\0b", 3)});
}
