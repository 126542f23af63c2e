#include "gui/WinPrefs.h"
#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "gui/GuiTesting.h"
#include "support/TempDir.h"

#include <wx/checkbox.h>
#include <wx/combobox.h>
#include <wx/textctrl.h>

namespace {

class WinPrefsTest : public testing::Test {
protected:
    void SetUp() override { InitLangTable(settings, "en"); }

    static wxCheckBox* Check(WinPrefs& prefs, int id) { return Control<wxCheckBox>(&prefs, id); }
    static wxTextCtrl* Editor(WinPrefs& prefs) {
        return Control<wxTextCtrl>(&prefs, WinPrefs::ID_EDITOR);
    }

    TempDir dir;
    AppSettings settings;
};

TEST_F(WinPrefsTest, OkStoresEverySwitchAndTheEditorAndSavesTheFile) {
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    WhenModal([&] {
        EXPECT_TRUE(Check(prefs, WinPrefs::ID_START_ON_START)->GetValue());
        EXPECT_FALSE(Check(prefs, WinPrefs::ID_START_SYSTRAY)->GetValue());
        EXPECT_TRUE(Check(prefs, WinPrefs::ID_AUTO_RESTART)->GetValue());
        EXPECT_TRUE(Check(prefs, WinPrefs::ID_SITES)->GetValue());
        EXPECT_EQ(Editor(prefs)->GetValue(), "xdg-open");
        EXPECT_EQ(Control<wxComboBox>(&prefs, WinPrefs::ID_LANG)->GetValue(), "English");
        Check(prefs, WinPrefs::ID_START_ON_START)->SetValue(false);
        Check(prefs, WinPrefs::ID_START_SYSTRAY)->SetValue(true);
        Check(prefs, WinPrefs::ID_AUTO_RESTART)->SetValue(false);
        Check(prefs, WinPrefs::ID_SITES)->SetValue(false);
        Editor(prefs)->SetValue("/usr/bin/gedit");
        ClickButton(&prefs, WinPrefs::ID_OK);
    });
    EXPECT_EQ(prefs.ShowModal(), wxID_OK);
    EXPECT_FALSE(settings.GetStartServersOnStart());
    EXPECT_TRUE(settings.GetStartInTray());
    EXPECT_FALSE(settings.GetAutoRestart());
    EXPECT_FALSE(settings.GetSitesEnabled());
    EXPECT_EQ(settings.GetTextEditor(), "/usr/bin/gedit");

    AppSettings saved;
    saved.Load(dir.File("kovix.ini"));
    EXPECT_EQ(saved.ToText(), settings.ToText());
    EXPECT_EQ(saved.GetString(AppSettings::AUTO_RESTAT_CONFIG_CHANGED), "0");
}

TEST_F(WinPrefsTest, ASettingsFileThatCannotBeWrittenIsSaid) {
    const wxString file = dir.File("gone/kovix.ini");
    WinPrefs prefs(nullptr, settings, file);
    wxString message, caption;
    WhenModal([&] {
        Check(prefs, WinPrefs::ID_START_SYSTRAY)->SetValue(true);
        wxTEST_DIALOG(ClickButton(&prefs, WinPrefs::ID_OK), ExpectMessage(message, caption));
    });
    EXPECT_EQ(prefs.ShowModal(), wxID_OK);
    EXPECT_EQ(message, "Cannot write " + file + ": No such file or directory");
    EXPECT_TRUE(settings.GetStartInTray()) << "in force until the panel closes";
}

// The language applies at once, to the open dialog too, and stays after Cancel.
TEST_F(WinPrefsTest, CancelWritesNothingButTheLanguageChoiceStays) {
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    WhenModal([&] {
        Choose(Control(&prefs, WinPrefs::ID_LANG), 1);
        EXPECT_EQ(Label(&prefs, WinPrefs::ID_CANCEL), "Annuler");
        EXPECT_EQ(Label(&prefs, WinPrefs::ID_GROUP), wxString::FromUTF8("Préférences"));
        EXPECT_EQ(Label(&prefs, WinPrefs::ID_SELECT_EDITOR), "Selectionner");
        Check(prefs, WinPrefs::ID_START_ON_START)->SetValue(false);
        Editor(prefs)->SetValue("/usr/bin/gedit");
        ClickButton(&prefs, WinPrefs::ID_CANCEL);
    });
    EXPECT_EQ(prefs.ShowModal(), wxID_CANCEL);

    EXPECT_EQ(GetCurrentLangCode(), "fr");
    EXPECT_EQ(settings.GetLanguage(), "fr");
    EXPECT_FALSE(settings.Has(AppSettings::START_ON_START));
    EXPECT_FALSE(settings.Has(AppSettings::TEXT_EDITOR));
    EXPECT_FALSE(wxFileExists(dir.File("kovix.ini")));
}

} // namespace
