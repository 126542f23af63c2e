#include "core/AppSettings.h"
#include "platform/Platform.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

TEST(AppSettingsFile, ReadsTheLinePatternLenientlyAndWritesSortedEntriesCutAtAQuote) {
    TempDir dir;
    const wxString path = dir.File("kovix.ini");
    WriteBytes(path, "APACHE_PORT = \"8080\"\n"
                     "  CURRENT_LANG \t=\t\"fr\" trailing\n"
                     "TAB\t= \"kept in key\"\n"
                     "NO_QUOTES = value\n"
                     "TWO=\"first\" \"second\"\n"
                     "\n"
                     "APACHE_PORT = \"8081\"\n");
    AppSettings settings;
    settings.Load(path);
    EXPECT_EQ(settings.GetString("APACHE_PORT"), "8081") << "a later line wins";
    EXPECT_EQ(settings.GetString("CURRENT_LANG"), "fr");
    EXPECT_EQ(settings.GetString("TAB\t"), "kept in key") << "a key runs up to the first blank";
    EXPECT_FALSE(settings.Has("NO_QUOTES"));
    EXPECT_EQ(settings.GetString("TWO"), "first");
    settings.Load("/nonexistent/kovix.ini");
    EXPECT_EQ(settings.GetString("TWO"), "first") << "a missing file keeps the store";

    AppSettings written;
    ASSERT_TRUE(written.Save(path));
    EXPECT_EQ(ReadBytes(path), "\n") << "an empty store is a single newline";
    written.SetString("b", "say \"hi\"");
    written.SetString("B", "1");
    written.SetString("a", "x y");
    ASSERT_TRUE(written.Save(path));
    EXPECT_EQ(ReadBytes(path), "B = \"1\"\na = \"x y\"\nb = \"say \"hi\"\"\n\n");
    EXPECT_FALSE(wxFileExists(path + ".temp"));
    settings.Load(path);
    EXPECT_EQ(settings.GetString("b"), "say ");
}

TEST(AppSettingsValues, BooleansPortOnlineModeAndEditor) {
    AppSettings settings;
    const std::pair<const char*, int> cases[] = {{"1", 1},     {"ON", 1}, {"off", 0}, {"0", 0},
                                                 {"true", -1}, {"", -1},  {"2", -1}};
    for (const auto& [text, expected] : cases) {
        settings.SetString("FLAG", text);
        EXPECT_EQ(settings.GetBool("FLAG", true), expected != 0) << text;
        EXPECT_EQ(settings.GetBool("FLAG", false), expected == 1) << text;
    }
    settings.SetBool("FLAG", true);
    EXPECT_EQ(settings.GetString("FLAG"), "1");

    EXPECT_EQ(settings.GetPort(), 80);
    for (const char* bad : {"abc", "0x50", " 8080"}) {
        settings.SetPortText(bad);
        EXPECT_EQ(settings.GetPort(), 80) << bad;
    }
    settings.SetPortText("8080");
    EXPECT_EQ(settings.GetPort(), 8080);
    for (const char* text : {"2", "on", "01x", "1"}) {
        settings.SetString("APACHE_MODE", text);
        EXPECT_EQ(settings.IsOnline(), *text == '1') << text;
    }
    settings.SetTextEditor(""); // the platform's own: "xdg-open", "notepad.exe"
    EXPECT_EQ(settings.GetTextEditor(), Platform::Get().DefaultTextEditor());
}

TEST(AppSettingsFile, SavingChangesKeepsWhatAnotherProgramWroteMeanwhile) {
    TempDir dir;
    const wxString path = dir.File("kovix.ini");
    WriteBytes(path, "APACHE_PORT = \"80\"\nCURRENT_LANG = \"en\"\n");
    AppSettings panel;
    panel.Load(path);
    panel.SetLanguage("fr");

    AppSettings other;
    other.Load(path);
    other.SetPort(8080);
    other.SetOnline(true);
    ASSERT_TRUE(other.Save(path));

    ASSERT_TRUE(panel.SaveChanges(path));
    EXPECT_EQ(ReadBytes(path),
              "APACHE_MODE = \"1\"\nAPACHE_PORT = \"8080\"\nCURRENT_LANG = \"fr\"\n\n");
    EXPECT_EQ(panel.GetPort(), 8080) << "the store holds the merged whole";
    WriteBytes(path, "APACHE_PORT = \"81\"\n");
    ASSERT_TRUE(panel.SaveChanges(path));
    EXPECT_EQ(ReadBytes(path), "APACHE_PORT = \"81\"\n")
        << "nothing changed since, nothing written";
}
