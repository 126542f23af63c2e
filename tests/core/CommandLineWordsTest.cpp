#include "platform/CommandLineWords.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using Words = std::vector<wxString>;

Words SplitWith(const wxString& line, std::set<wxString> programs = {}) {
    return CommandLineWords::Split(line,
                                   [&](const wxString& path) { return programs.count(path) != 0; });
}

} // namespace

TEST(CommandLineWords, AnUnquotedProgramWithBlanksIsFoundByItsShortestExistingPrefix) {
    const wxString line =
        "/opt/my stack/apache/bin/httpd -DFOREGROUND -f \"/opt/my stack/apache/conf/httpd.conf\"";
    EXPECT_EQ(SplitWith(line, {"/opt/my stack/apache/bin/httpd"}),
              (Words{"/opt/my stack/apache/bin/httpd", "-DFOREGROUND", "-f",
                     "/opt/my stack/apache/conf/httpd.conf"}));
    // A program named by a shorter prefix wins, as with Windows process creation.
    EXPECT_EQ(SplitWith("/opt/my stack/x", {"/opt/my", "/opt/my stack/x"}),
              (Words{"/opt/my", "stack/x"}));
    // A quoted program is taken as quoted; no prefix is tried.
    EXPECT_EQ(SplitWith("\"/opt/my stack/x\" -v", {"/opt/my"}), (Words{"/opt/my stack/x", "-v"}));
}
