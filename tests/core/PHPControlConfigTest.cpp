#include "core/php/PHPControlConfig.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filefn.h>

#include <map>

using namespace std::string_literals;

namespace {

class PhpIniFile : public ::testing::Test {
protected:
    wxString Path() const { return dir.File("php_source.ini"); }

    PHPControlConfig Read(const std::string& bytes) {
        WriteBytes(Path(), bytes);
        return PHPControlConfig(Path());
    }

    wxString ValueOf(const PHPControlConfig& table, const wxString& directive) {
        return table.GetRecords().at(directive).value;
    }

    // Sets the given values, writes the file back and returns its bytes.
    std::string Write(PHPControlConfig& table, const std::map<wxString, wxString>& values) {
        for (const auto& [directive, value] : values)
            table.Find(directive)->value = value;
        EXPECT_TRUE(table.WriteValues());
        EXPECT_FALSE(wxFileExists(Path() + ".temp"));
        return ReadBytes(Path());
    }

    TempDir dir;
};

} // namespace

TEST_F(PhpIniFile, HoldsTheTwentyFiveBooleanDirectivesEmptyWithoutATemplate) {
    PHPControlConfig table(Path());
    wxString directives;
    for (const auto& [key, record] : table.GetRecords()) {
        EXPECT_TRUE(record.directive == key && record.type == "bool" && record.value.empty() &&
                    record.description.length() > 40u)
            << key;
        directives += key + " ";
    }
    EXPECT_EQ(directives,
              "allow_call_time_pass_reference asp_tags auto_globals_jit display_errors "
              "display_startup_errors expose_php file_uploads html_errors implicit_flush "
              "log_errors magic_quotes_gpc magic_quotes_runtime magic_quotes_sybase "
              "register_argc_argv register_globals register_long_arrays report_memleaks safe_mode "
              "safe_mode_gid session.use_cookies session.use_only_cookies short_open_tag "
              "track_errors y2k_compliance zlib.output_compression ");
    const PHPSettingRecord& y2k = table.GetRecords().at("y2k_compliance");
    EXPECT_EQ(y2k.label + " " + y2k.link, "2000 compliance http://www.php.net/y2k-compliance");
    EXPECT_EQ(table.GetRecords().at("session.use_only_cookies").link,
              "http://www.php.net/session.use-only-cookies");
    table.Find("short_open_tag")->value = "On";
    EXPECT_FALSE(table.WriteValues());
    EXPECT_FALSE(wxDir(dir.Path()).HasFiles()) << "nothing is created";
}

TEST_F(PhpIniFile, ShortOpenTagIsReadAndRewrittenWithOneBlankAroundTheSign) {
    PHPControlConfig table = Read("[PHP]\nshort_open_tag=Off\nprecision = 14\n");
    EXPECT_EQ(ValueOf(table, "short_open_tag"), "Off");
    EXPECT_EQ(Write(table, {{"short_open_tag", "On"}}),
              "[PHP]\nshort_open_tag = On\nprecision = 14\n");

    table = Read("short_open_tag \t=\t Off ; was On\n");
    EXPECT_EQ(ValueOf(table, "short_open_tag"), "Off") << "only the leading letters";
    EXPECT_EQ(Write(table, {}), "short_open_tag = Off\n") << "the trailing comment goes";
}

TEST_F(PhpIniFile, OnlyLeadingLettersAtTheStartOfTheLineCount) {
    const std::string untouched = "display_errors = 1\n"
                                  "display_errors = \"On\"\n"
                                  "display_errors =\n"
                                  ";short_open_tag = On\n"
                                  " short_open_tag = On\n"
                                  "Short_Open_Tag = On\n"
                                  "short_open_tags = On\n";
    PHPControlConfig table = Read(untouched);
    EXPECT_EQ(ValueOf(table, "display_errors") + ValueOf(table, "short_open_tag"), "");
    EXPECT_EQ(Write(table, {{"display_errors", "On"}, {"short_open_tag", "Off"}}), untouched);

    table = Read("expose_php = Off2\nimplicit_flush=yes;no\n");
    EXPECT_EQ(ValueOf(table, "expose_php") + ValueOf(table, "implicit_flush"), "Offyes")
        << "any letters, not only On and Off";
}

TEST_F(PhpIniFile, RepeatedDirectivesTakeTheLastValueAndNamesMatchExactlyButForTheDot) {
    PHPControlConfig table = Read("log_errors = On\n; between\nlog_errors = Off\n");
    EXPECT_EQ(ValueOf(table, "log_errors"), "Off");
    EXPECT_EQ(Write(table, {{"log_errors", "On"}}),
              "log_errors = On\n; between\nlog_errors = On\n");

    table = Read("safe_mode_gid = On\nsafe_mode = Off\n");
    EXPECT_EQ(ValueOf(table, "safe_mode") + ValueOf(table, "safe_mode_gid"), "OffOn");
    EXPECT_EQ(Write(table, {{"safe_mode", "On"}, {"safe_mode_gid", "Off"}}),
              "safe_mode_gid = Off\nsafe_mode = On\n");

    // The dot of a directive matches any character but a blank.
    table = Read("zlibXoutput_compression = On\n"
                 "zlib output_compression = Off\n"
                 "session-use_only_cookies = Off\n"
                 "session.use_cookies = 1\n");
    EXPECT_EQ(ValueOf(table, "zlib.output_compression") +
                  ValueOf(table, "session.use_only_cookies") +
                  ValueOf(table, "session.use_cookies"),
              "OnOff");
    EXPECT_EQ(Write(table, {{"zlib.output_compression", "Off"}, {"session.use_cookies", "On"}}),
              "zlib.output_compression = Off\n"
              "zlib output_compression = Off\n"
              "session.use_only_cookies = Off\n"
              "session.use_cookies = 1\n");
}

TEST_F(PhpIniFile, LinesWithoutDirectivesComeBackByteForByte) {
    const std::string samples[] = {
        "",
        "[PHP]\n;;;;;;\n; short_open_tag = On\nengine = On\nerror_reporting = E_ALL\n"
        "extension=php_mysql.so\n;extension=php_gd.so\nmemory_limit = 128M\n"
        "date.timezone = \"Europe/Paris\"\n\ttrailing blanks   \n\n\n",
        "; caf\xc3\xa9 \xe2\x82\xac and a NUL \0 inside\nexpose_php\0 = On\nexpose_php =\0On"s,
    };
    for (const std::string& bytes : samples) {
        PHPControlConfig table = Read(bytes);
        std::map<wxString, wxString> allOn;
        for (const auto& entry : table.GetRecords())
            allOn[entry.first] = "On";
        EXPECT_EQ(Write(table, allOn), bytes) << bytes;
    }
}

TEST_F(PhpIniFile, AnyLineEndIsReadAndWrittenNatively) {
    PHPControlConfig table = Read("; top\r\nshort_open_tag = Off\r\nlog_errors = On\rx\n\r\n");
    EXPECT_EQ(ValueOf(table, "short_open_tag") + ValueOf(table, "log_errors"), "OffOn");
    EXPECT_EQ(Write(table, {{"short_open_tag", "On"}}),
              "; top\nshort_open_tag = On\nlog_errors = On\nx\n\n");
}
