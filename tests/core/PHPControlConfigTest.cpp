#include "php/PHPControlConfig.h"
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

    // Reads bytes, sets every directive to value and writes: the lines no directive claims.
    std::string RewriteAll(const std::string& bytes, const wxString& value) {
        PHPControlConfig table = Read(bytes);
        std::map<wxString, wxString> values;
        for (const auto& entry : table.GetRecords())
            values[entry.first] = value;
        return Write(table, values);
    }

    TempDir dir;
};

struct Row {
    const char* directive;
    const char* label;
    const char* linkPath;
};

// In directive order, the order of the settings list.
const Row rows[] = {
    {"allow_call_time_pass_reference", "Call time pass reference",
     "/allow-call-time-pass-reference"},
    {"asp_tags", "ASP tag", "/asp-tags"},
    {"auto_globals_jit", "Auto globals JIT", "/auto-globals-jit"},
    {"display_errors", "Display errors", "/display-errors"},
    {"display_startup_errors", "Display startup errors", "/display-startup-errors"},
    {"expose_php", "Expose PHP", "/expose-php"},
    {"file_uploads", "File uploads", "/file-uploads"},
    {"html_errors", "HTML errors", "/html-errors"},
    {"implicit_flush", "Implicit flush", "/implicit-flush"},
    {"log_errors", "Log errors", "/log-errors"},
    {"magic_quotes_gpc", "Magic quotes GPC", "/magic-quotes-gpc"},
    {"magic_quotes_runtime", "Magic quotes runtime", "/magic-quotes-runtime"},
    {"magic_quotes_sybase", "Magic quotes sybase", "/magic-quotes-sybase"},
    {"register_argc_argv", "Register argc argv", "/register-argc-argv"},
    {"register_globals", "Register globals", "/register-globals"},
    {"register_long_arrays", "Register long arrays", "/register-long-arrays"},
    {"report_memleaks", "Report memleaks", "/report-memleaks"},
    {"safe_mode", "Safe mode", "/safe-mode"},
    {"safe_mode_gid", "Safe mode GID", "/safe-mode-gid"},
    {"session.use_cookies", "Session use cookies", "/session.use-cookies"},
    {"session.use_only_cookies", "Session use only cookies", "/session.use-only-cookies"},
    {"short_open_tag", "Short open tag", "/short-open-tag"},
    {"track_errors", "Track errors", "/track-errors"},
    {"y2k_compliance", "2000 compliance", "/y2k-compliance"},
    {"zlib.output_compression", "ZLib output compression", "/zlib.output-compression"},
};

} // namespace

TEST(PHPControlConfigTable, HoldsTheTwentyFiveBooleanDirectivesInDirectiveOrder) {
    TempDir dir;
    const PHPControlConfig table(dir.File("missing.ini"));
    ASSERT_EQ(table.GetRecords().size(), std::size(rows));
    size_t index = 0;
    for (const auto& [key, record] : table.GetRecords()) {
        const Row& row = rows[index++];
        SCOPED_TRACE(row.directive);
        EXPECT_EQ(key, row.directive);
        EXPECT_EQ(record.directive, row.directive);
        EXPECT_EQ(record.label, row.label);
        EXPECT_EQ(record.link, wxString("http://www.php.net") + row.linkPath);
        EXPECT_EQ(record.type, "bool");
        EXPECT_EQ(record.flags, 0);
        EXPECT_EQ(record.matchPattern, wxString("^") + row.directive + "[\t ]*=[\t ]*([a-zA-Z]+)");
        EXPECT_EQ(record.lineTemplate, wxString(row.directive) + " = {_V_}");
        EXPECT_GT(record.description.length(), 40u);
        EXPECT_TRUE(record.value.empty()) << "a missing file leaves every value empty";
    }
    EXPECT_TRUE(table.GetPath().empty());
}

TEST_F(PhpIniFile, ShortOpenTagIsReadAndRewrittenWithOneBlankAroundTheSign) {
    PHPControlConfig table = Read("[PHP]\nshort_open_tag=Off\nprecision = 14\n");
    EXPECT_EQ(ValueOf(table, "short_open_tag"), "Off");
    EXPECT_EQ(table.GetPath(), Path());
    EXPECT_EQ(Write(table, {{"short_open_tag", "On"}}),
              "[PHP]\nshort_open_tag = On\nprecision = 14\n");

    table = Read("short_open_tag \t=\t Off ; was On\n");
    EXPECT_EQ(ValueOf(table, "short_open_tag"), "Off") << "only the leading letters";
    EXPECT_EQ(Write(table, {}), "short_open_tag = Off\n") << "the trailing comment goes";
}

TEST_F(PhpIniFile, OnlyLeadingLettersAtTheStartOfTheLineCount) {
    const std::string untouched = "display_errors = 1\n"
                                  "display_errors = \"On\"\n"
                                  "display_errors = -1\n"
                                  "display_errors =\n"
                                  ";short_open_tag = On\n"
                                  " short_open_tag = On\n"
                                  "Short_Open_Tag = On\n"
                                  "short_open_tag On\n"
                                  "short_open_tag: On\n"
                                  "short_open_tags = On\n";
    PHPControlConfig table = Read(untouched);
    EXPECT_TRUE(ValueOf(table, "display_errors").empty());
    EXPECT_TRUE(ValueOf(table, "short_open_tag").empty());
    EXPECT_EQ(Write(table, {{"display_errors", "On"}, {"short_open_tag", "Off"}}), untouched);

    table = Read("expose_php = Off2\nimplicit_flush=yes;no\nfile_uploads = true # on\n");
    EXPECT_EQ(ValueOf(table, "expose_php"), "Off");
    EXPECT_EQ(ValueOf(table, "implicit_flush"), "yes") << "any letters, not only On and Off";
    EXPECT_EQ(ValueOf(table, "file_uploads"), "true");
}

TEST_F(PhpIniFile, RepeatedDirectiveTakesTheLastValueAndEveryLineIsRewritten) {
    PHPControlConfig table = Read("log_errors = On\n; between\nlog_errors = Off\n");
    EXPECT_EQ(ValueOf(table, "log_errors"), "Off");
    EXPECT_EQ(Write(table, {{"log_errors", "On"}}),
              "log_errors = On\n; between\nlog_errors = On\n");
}

TEST_F(PhpIniFile, SafeModeDoesNotClaimSafeModeGid) {
    PHPControlConfig table = Read("safe_mode_gid = On\n");
    EXPECT_TRUE(ValueOf(table, "safe_mode").empty());
    EXPECT_EQ(ValueOf(table, "safe_mode_gid"), "On");

    table = Read("safe_mode_gid = On\nsafe_mode = Off\n");
    EXPECT_EQ(ValueOf(table, "safe_mode"), "Off");
    EXPECT_EQ(Write(table, {{"safe_mode", "On"}, {"safe_mode_gid", "Off"}}),
              "safe_mode_gid = Off\nsafe_mode = On\n");
}

TEST_F(PhpIniFile, TheDotOfADirectiveMatchesAnyCharacterButABlank) {
    PHPControlConfig table = Read("zlibXoutput_compression = On\n"
                                  "zlib output_compression = Off\n"
                                  "session-use_only_cookies = Off\n"
                                  "session.use_cookies = 1\n");
    EXPECT_EQ(ValueOf(table, "zlib.output_compression"), "On");
    EXPECT_EQ(ValueOf(table, "session.use_only_cookies"), "Off");
    EXPECT_TRUE(ValueOf(table, "session.use_cookies").empty());
    EXPECT_EQ(Write(table, {{"zlib.output_compression", "Off"}, {"session.use_cookies", "On"}}),
              "zlib.output_compression = Off\n"
              "zlib output_compression = Off\n"
              "session.use_only_cookies = Off\n"
              "session.use_cookies = 1\n");
}

TEST_F(PhpIniFile, LinesWithoutDirectivesComeBackByteForByte) {
    const std::string samples[] = {
        "",
        "\n",
        "no final line end",
        "[PHP]\n;;;;;;\n; short_open_tag = On\nengine = On\nerror_reporting = E_ALL\n"
        "extension=php_mysql.so\n;extension=php_gd.so\nmemory_limit = 128M\n"
        "date.timezone = \"Europe/Paris\"\n\ttrailing blanks   \n\n\n",
        "; caf\xc3\xa9 \xe2\x82\xac and a NUL \0 inside\nsession.save_path = \"{APACHEPATH}\"\n"s,
        "expose_php\0 = On\nexpose_php =\0On\n"s,
    };
    for (const std::string& bytes : samples)
        EXPECT_EQ(RewriteAll(bytes, "On"), bytes) << bytes;
}

TEST_F(PhpIniFile, AnyLineEndIsReadAndWrittenNatively) {
    PHPControlConfig table = Read("; top\r\nshort_open_tag = Off\r\nlog_errors = On\rx\n\r\n");
    EXPECT_EQ(ValueOf(table, "short_open_tag"), "Off");
    EXPECT_EQ(ValueOf(table, "log_errors"), "On");
    EXPECT_EQ(Write(table, {{"short_open_tag", "On"}}),
              "; top\nshort_open_tag = On\nlog_errors = On\nx\n\n");
}

TEST_F(PhpIniFile, LegacyEncodingsAreReadAndWrittenAsUtf8) {
    PHPControlConfig table = Read("; \xe9t\xe9 \x80\nexpose_php = On\n");
    EXPECT_EQ(ValueOf(table, "expose_php"), "On");
    EXPECT_EQ(Write(table, {}), "; \xc3\xa9t\xc3\xa9 \xe2\x82\xac\nexpose_php = On\n");

    table = Read("\xef\xbb\xbf"
                 "expose_php = Off\n");
    EXPECT_EQ(ValueOf(table, "expose_php"), "Off") << "the byte-order mark is not part of a line";
    EXPECT_EQ(Write(table, {}), "expose_php = Off\n");
}

TEST_F(PhpIniFile, MissingTemplateGivesEmptyValuesAndCreatesNothing) {
    PHPControlConfig table(Path());
    for (const auto& entry : table.GetRecords())
        EXPECT_TRUE(entry.second.value.empty());
    table.Find("short_open_tag")->value = "On";
    EXPECT_FALSE(table.WriteValues());
    EXPECT_FALSE(wxDir(dir.Path()).HasFiles());

    PHPControlConfig vanished = Read("short_open_tag = Off\n");
    wxRemoveFile(Path());
    EXPECT_FALSE(vanished.WriteValues());
    EXPECT_FALSE(wxDir(dir.Path()).HasFiles());
}

TEST_F(PhpIniFile, FailedSaveLeavesTheTemplateByteIdentical) {
    const std::string original = "short_open_tag = Off\r\n; end";
    PHPControlConfig table = Read(original);
    ASSERT_TRUE(wxMkdir(Path() + ".temp"));
    table.Find("short_open_tag")->value = "On";
    EXPECT_FALSE(table.WriteValues());
    EXPECT_EQ(ReadBytes(Path()), original);
    EXPECT_TRUE(wxDirExists(Path() + ".temp")) << "a folder in the way is not removed";
}

TEST_F(PhpIniFile, CopiesReadAndWriteOnTheirOwn) {
    PHPControlConfig copy = [&] {
        PHPControlConfig original = Read("html_errors = On\n");
        return original;
    }();
    PHPControlConfig other = copy;
    other.Find("html_errors")->value = "Off";
    EXPECT_EQ(ValueOf(copy, "html_errors"), "On");
    EXPECT_EQ(Write(other, {}), "html_errors = Off\n");
    EXPECT_TRUE(copy.ReadValues(Path()));
    EXPECT_EQ(ValueOf(copy, "html_errors"), "Off");
}

TEST_F(PhpIniFile, DebianDevelopmentIniKeepsEveryLineWhenValuesAreUnchanged) {
    const wxString debian = "/usr/lib/php/8.2/php.ini-development";
    if (!wxFileExists(debian))
        GTEST_SKIP() << "php8.2-common is not installed";
    const std::string bytes = ReadBytes(debian);
    PHPControlConfig table = Read(bytes);
    EXPECT_EQ(ValueOf(table, "short_open_tag"), "Off");
    EXPECT_EQ(ValueOf(table, "display_errors"), "On");
    EXPECT_EQ(ValueOf(table, "zlib.output_compression"), "Off");
    EXPECT_TRUE(ValueOf(table, "html_errors").empty()) << "commented out there";
    EXPECT_TRUE(ValueOf(table, "session.use_cookies").empty()) << "set to 1 there";
    EXPECT_EQ(Write(table, {}), bytes);
}
