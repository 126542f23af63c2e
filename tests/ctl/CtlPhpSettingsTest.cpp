#include "ctl/CtlTesting.h"

#include <nlohmann/json.hpp>
#include <wx/filefn.h>
#include <wx/textbuf.h>

#include <map>

namespace {

const std::string phpTemplate = "[PHP]\r\n"
                                "short_open_tag = Off ; legacy\r\n"
                                "display_errors = On\r\n"
                                "log_errors = 1\r\n"
                                "session.use_cookies = On\r\n";
const char* const templatePath = "apache/php_8.2/php_source.ini";

// No stored version: the first installed one is used, and never stored.
class CtlPhpSettings : public CtlTest {
protected:
    CtlPhpSettings() { Write(templatePath, phpTemplate); }
    void TearDown() override { EXPECT_FALSE(wxFileExists(tree.File("kovix.ini"))); }
};

} // namespace

TEST_F(CtlPhpSettings, ListsTheTwentyFiveSettingsInDirectiveOrder) {
    const CommandResult listed = Ctl({"php", "settings", "--json"});
    ASSERT_EQ(listed.exitCode, 0) << listed.err;
    const nlohmann::json settings = nlohmann::json::parse(listed.out.utf8_string());
    ASSERT_EQ(settings.size(), 25u);
    EXPECT_EQ(settings.front(), nlohmann::json({{"directive", "allow_call_time_pass_reference"},
                                                {"label", "Call time pass reference"},
                                                {"type", "bool"},
                                                {"value", ""}}));
    std::map<std::string, std::string> values;
    for (const auto& setting : settings)
        values[setting["directive"]] = setting["value"];
    EXPECT_EQ(values["short_open_tag"], "Off");
    EXPECT_EQ(values["display_errors"], "On");
    EXPECT_EQ(values["log_errors"], "");
    EXPECT_EQ(Read(templatePath), phpTemplate) << "listing writes nothing";
}

TEST_F(CtlPhpSettings, SetRewritesOnlyTheDirectiveLines) {
    const CommandResult set = Ctl({"php", "set", "short_open_tag", "on"});
    ASSERT_EQ(set.exitCode, 0) << set.err;
    // Written back with the platform's own line ends.
    const std::string eol = wxString(wxTextBuffer::GetEOL()).utf8_string();
    EXPECT_EQ(Read(templatePath), "[PHP]" + eol + "short_open_tag = On" + eol +
                                      "display_errors = On" + eol + "log_errors = 1" + eol +
                                      "session.use_cookies = On" + eol);
    EXPECT_FALSE(wxFileExists(tree.File(templatePath) + ".temp"));
}

TEST_F(CtlPhpSettings, RefusalsWriteNothing) {
    const std::pair<std::vector<wxString>, int> cases[] = {
        {{"php", "set", "memory_limit", "On"}, 1},  // not an editable setting
        {{"php", "set", "log_errors", "On"}, 1},    // set in digits: nothing to replace
        {{"php", "set", "asp_tags", "On"}, 1},      // not in the file: never added
        {{"php", "set", "short_open_tag", "1"}, 2}, // not a value choice
        {{"php", "set", "short_open_tag"}, 2},      // missing value
    };
    for (const auto& [args, exitCode] : cases) {
        const CommandResult result = Ctl(args);
        EXPECT_EQ(result.exitCode, exitCode) << args[2] << ": " << result.err;
        EXPECT_FALSE(result.err.empty());
        EXPECT_EQ(Read(templatePath), phpTemplate) << args[2];
    }
    wxRemoveFile(tree.File(templatePath));
    EXPECT_EQ(Ctl({"php", "set", "short_open_tag", "On"}).exitCode, 1);
    EXPECT_FALSE(wxFileExists(tree.File(templatePath))) << "a missing template is not created";
    EXPECT_FALSE(wxFileExists(tree.File(templatePath) + ".temp"));
}
