#include "core/TextFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

using namespace std::string_literals;

TEST(TextFiles, DecodesBomUtf8AndCp1252AndWritesUtf8) {
    TempDir dir;
    const std::pair<std::string, const char*> cases[] = {{"\xef\xbb\xbf"s + "caf\xc3\xa9", "café"},
                                                         {"caf\xc3\xa9", "café"},
                                                         {"caf\xe9 \x80", "café €"},
                                                         {"\xff\xfe"s + "a\0"s, "a"},
                                                         {"", ""}};
    for (const auto& [bytes, expected] : cases) {
        WriteBytes(dir.File("in.txt"), bytes);
        wxString text;
        ASSERT_TRUE(TextFiles::Read(dir.File("in.txt"), text));
        EXPECT_EQ(text, wxString::FromUTF8(expected));
        ASSERT_TRUE(TextFiles::WriteAtomically(dir.File("out.txt"), text));
        EXPECT_EQ(ReadBytes(dir.File("out.txt")), expected);
    }
}

// UTF-32 LE with a value beyond the last code point; a byte that is a character in neither
// UTF-8 nor CP1252.
TEST(TextFiles, TextThatCannotBeWrittenBackIsUnreadable) {
    TempDir dir;
    for (const std::string& bytes : {"\xff\xfe\0\0a\0\0\0\0\0\x11\0\n\0\0\0"s, "a = \x81\n"s}) {
        WriteBytes(dir.File("php_source.ini"), bytes);
        wxString text = "untouched";
        EXPECT_FALSE(TextFiles::Read(dir.File("php_source.ini"), text));
        EXPECT_EQ(text, "untouched");
        EXPECT_EQ(ReadBytes(dir.File("php_source.ini")), bytes);
    }
}
