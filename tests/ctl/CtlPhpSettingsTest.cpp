#include "support/CommandRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <wx/filefn.h>
#include <wx/filename.h>

namespace {

const std::string settingsFile = "PHP_CURRENT_VERSION = \"php_8.2\"\n";
const std::string phpTemplate = "[PHP]\r\n"
                                "short_open_tag = Off ; legacy\r\n"
                                "display_errors = On\r\n"
                                "log_errors = 1\r\n"
                                "session.use_cookies = On\r\n";

class CtlPhpSettings : public ::testing::Test {
protected:
    void SetUp() override {
        WriteBytes(root.File("kovix.ini"), settingsFile);
        wxFileName::Mkdir(root.File("apache/php_8.2"), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
    }

    wxString Template() const { return root.File("apache/php_8.2/php_source.ini"); }

    CommandResult Ctl(std::vector<wxString> args) {
        args.insert(args.begin(), {KOVIXCTL_PATH, "--root", root.Path()});
        return RunCommand(args);
    }

    TempDir root;
};

} // namespace

TEST_F(CtlPhpSettings, ListsTheTwentyFiveSettingsInDirectiveOrder) {
    WriteBytes(Template(), phpTemplate);
    CommandResult listed = Ctl({"php", "settings", "--json"});
    ASSERT_EQ(listed.exitCode, 0) << listed.err;
    const nlohmann::json settings = nlohmann::json::parse(listed.out.utf8_string());
    ASSERT_EQ(settings.size(), 25u);
    EXPECT_EQ(settings.front(), nlohmann::json({{"directive", "allow_call_time_pass_reference"},
                                                {"label", "Call time pass reference"},
                                                {"type", "bool"},
                                                {"value", ""}}));
    EXPECT_EQ(settings.back()["label"], "ZLib output compression");
    std::map<std::string, std::string> values;
    for (const auto& setting : settings)
        values[setting["directive"]] = setting["value"];
    EXPECT_EQ(values["short_open_tag"], "Off");
    EXPECT_EQ(values["display_errors"], "On");
    EXPECT_EQ(values["log_errors"], "");
    EXPECT_EQ(values["session.use_cookies"], "On");

    CommandResult table = Ctl({"php", "settings"});
    EXPECT_EQ(table.exitCode, 0);
    EXPECT_TRUE(
        table.out.Contains("short_open_tag                  Short open tag            Off\n"))
        << table.out;
    EXPECT_EQ(ReadBytes(Template()), phpTemplate) << "listing writes nothing";
    EXPECT_EQ(ReadBytes(root.File("kovix.ini")), settingsFile);
}

TEST_F(CtlPhpSettings, SetRewritesOnlyTheDirectiveLines) {
    WriteBytes(Template(), phpTemplate);
    CommandResult set = Ctl({"php", "set", "short_open_tag", "on"});
    ASSERT_EQ(set.exitCode, 0) << set.err;
    EXPECT_EQ(ReadBytes(Template()), "[PHP]\n"
                                     "short_open_tag = On\n"
                                     "display_errors = On\n"
                                     "log_errors = 1\n"
                                     "session.use_cookies = On\n");
    EXPECT_FALSE(wxFileExists(Template() + ".temp"));
    EXPECT_EQ(ReadBytes(root.File("kovix.ini")), settingsFile);
    EXPECT_TRUE(Ctl({"php", "settings"}).out.Contains("Short open tag            On\n"));
}

TEST_F(CtlPhpSettings, RefusalsLeaveTheTemplateAlone) {
    WriteBytes(Template(), phpTemplate);
    struct Case {
        std::vector<wxString> args;
        int exitCode;
    };
    const Case cases[] = {
        {{"php", "set", "memory_limit", "On"}, 1},  // not an editable setting
        {{"php", "set", "log_errors", "On"}, 1},    // set in digits: nothing to replace
        {{"php", "set", "asp_tags", "On"}, 1},      // not in the file: never added
        {{"php", "set", "short_open_tag", "1"}, 2}, // not a value choice
        {{"php", "set", "short_open_tag"}, 2},      // missing value
        {{"php", "settings", "extra"}, 2},          // no arguments taken
    };
    for (const Case& c : cases) {
        CommandResult result = Ctl(c.args);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.args[2] << ": " << result.err;
        EXPECT_FALSE(result.err.empty());
        EXPECT_EQ(ReadBytes(Template()), phpTemplate) << c.args[2];
    }
}

TEST_F(CtlPhpSettings, MissingTemplateListsEmptyValuesAndCannotBeSet) {
    CommandResult listed = Ctl({"php", "settings", "--json"});
    ASSERT_EQ(listed.exitCode, 0) << listed.err;
    for (const auto& setting : nlohmann::json::parse(listed.out.utf8_string()))
        EXPECT_EQ(setting["value"], "");
    EXPECT_EQ(Ctl({"php", "set", "short_open_tag", "On"}).exitCode, 1);
    EXPECT_FALSE(wxFileExists(Template()));
    EXPECT_FALSE(wxFileExists(Template() + ".temp"));
}
