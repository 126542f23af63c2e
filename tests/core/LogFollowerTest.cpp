#include "core/logs/LogFollower.h"
#include "core/logs/LogLines.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/ffile.h>
#include <wx/filefn.h>

namespace {

struct GrowingLog : testing::Test {
    TempDir dir;
    wxString path = dir.File("error.log");

    void Add(const std::string& bytes) {
        wxFFile file(path, "ab");
        ASSERT_TRUE(file.IsOpened() && file.Write(bytes.data(), bytes.size()) == bytes.size());
    }
};

std::vector<wxString> Lines(std::initializer_list<const char*> texts) {
    std::vector<wxString> lines;
    for (const char* text : texts)
        lines.push_back(wxString::FromUTF8(text));
    return lines;
}

} // namespace

TEST_F(GrowingLog, FollowsCompleteLinesOnlyAndDecodesEachLine) {
    LogFollower follower(path);
    EXPECT_TRUE(follower.Open().empty()); // no file yet
    Add("first\r\nsec");
    EXPECT_EQ(follower.Poll(), Lines({"first"}));
    EXPECT_FALSE(follower.Restarted());
    EXPECT_TRUE(follower.Poll().empty());
    Add("ond\ncaf\xC3\xA9\nd\xE9j\xE0\n");
    EXPECT_EQ(follower.Poll(), Lines({"second", "café", "déjà"}));
}

TEST_F(GrowingLog, ALargeLogOpensAtItsTailFromAWholeLine) {
    std::string lines;
    for (int i = 0; i < 1000; ++i)
        lines += "line " + std::to_string(i) + "\n";
    Add(lines);
    LogFollower follower(path, 100);
    const std::vector<wxString> tail = follower.Open();
    ASSERT_FALSE(tail.empty());
    EXPECT_EQ(tail.back(), "line 999");
    EXPECT_EQ(tail.front(), wxString::Format("line %zu", 1000 - tail.size()));
    Add("line 1000\n");
    EXPECT_EQ(follower.Poll(), Lines({"line 1000"}));
}

TEST_F(GrowingLog, AnEmptiedRemovedOrReplacedLogIsFollowedFromItsNewStart) {
    LogFollower follower(path);
    Add("[Mon] old one\n[Mon] old two\n");
    follower.Open();
    // Emptied in place (truncated), then written again.
    ASSERT_TRUE(wxFFile(path, "wb").IsOpened());
    Add("[Tue] after truncation\n");
    EXPECT_EQ(follower.Poll(), Lines({"[Tue] after truncation"}));
    EXPECT_TRUE(follower.Restarted());
    // Removed by the panel's clean, and a longer file takes its name before the next look.
    ASSERT_TRUE(wxRemoveFile(path));
    EXPECT_TRUE(follower.Poll().empty());
    Add("[Wed] a new log that is longer than the old one was\n[Wed] two\n");
    EXPECT_EQ(follower.Poll(),
              Lines({"[Wed] a new log that is longer than the old one was", "[Wed] two"}));
}

TEST(LogLines, FilterPauseAndCapacityKeepTheShownLinesRight) {
    LogLines lines(4);
    lines.Append(Lines({"GET /a", "PHP Warning: x", "get /b"}));
    lines.SetFilter("GET");
    ASSERT_EQ(lines.ShownCount(), 2u);
    EXPECT_EQ(lines.Shown(1), "get /b");

    lines.SetPaused(true);
    lines.Append(Lines({"GET /c", "POST /d"}));
    EXPECT_EQ(lines.ShownCount(), 2u);
    EXPECT_EQ(lines.HeldCount(), 2u);
    lines.SetPaused(false);
    EXPECT_EQ(lines.HeldCount(), 0u);
    // Five lines arrived, four are kept: "GET /a" dropped off.
    ASSERT_EQ(lines.ShownCount(), 2u);
    EXPECT_EQ(lines.Shown(0), "get /b");
    EXPECT_EQ(lines.Shown(1), "GET /c");

    lines.SetFilter("");
    EXPECT_EQ(lines.ShownCount(), 4u);
    lines.Clear();
    EXPECT_EQ(lines.ShownCount(), 0u);
    lines.Append(Lines({"again"}));
    EXPECT_EQ(lines.Shown(0), "again");
}
