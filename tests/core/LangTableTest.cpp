#include "core/lang/LangTable.h"
#include "core/AppSettings.h"

#include <gtest/gtest.h>

TEST(LangTable, KeepsTheProgramsOwnWordingsInBothLanguages) {
    AppSettings settings;
    settings.SetString("CURRENT_LANG", "en");
    InitLangTable(settings, "fr");
    EXPECT_EQ(GetLangText("WWW_FODLER"), "www Folder");
    EXPECT_EQ(GetLangText("STOPSERVER_MESSAGE"),
              "Server curently running, do you want stop Apache and MySQL before closing Kovix");
    SetLangIndex(1);
    EXPECT_EQ(GetLangText("PORT_MESSAGE2"),
              wxString::FromUTF8(" est déja utilisé par un autre programme"));
    EXPECT_EQ(GetLangText("PREF_TEXT_EDITOR_SELECT"), "Selectionner");
    EXPECT_EQ(GetLangList()[1], "Francais");
}

TEST(LangTable, UnknownKeysComeBackAsThemselvesPerLanguage) {
    AppSettings settings;
    settings.SetString("CURRENT_LANG", "fr");
    InitLangTable(settings, "en");
    const wxString& inserted = GetLangText("NO_SUCH_KEY");
    EXPECT_EQ(inserted, "NO_SUCH_KEY");
    EXPECT_EQ(&GetLangText("NO_SUCH_KEY"), &inserted) << "the row was inserted";
    SetLangIndex(0);
    EXPECT_EQ(GetLangText("NO_SUCH_KEY"), "NO_SUCH_KEY");
}

TEST(LangTable, UnknownStoredCodeShowsEnglishAndIsKeptUntilChosen) {
    AppSettings settings;
    settings.SetString("CURRENT_LANG", "es");
    InitLangTable(settings, "fr");
    EXPECT_EQ(GetLangText("CANCEL"), "Cancel");
    EXPECT_EQ(settings.GetLanguage(), "es");
    settings.SetLanguage(SetLangIndex(5));
    EXPECT_EQ(GetCurrentLangCode() + settings.GetLanguage(), "enen")
        << "an out-of-range index still stores the code";
}
