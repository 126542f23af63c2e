#include "gui/WinPrefs.h"
#include "app/AppSettings.h"
#include "gui/GuiDialogs.h"
#include "gui/GuiWait.h"
#include "lang/LangTable.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/checkbox.h>
#include <wx/combobox.h>
#include <wx/filedlg.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

class WinPrefsTest : public testing::Test {
protected:
    void SetUp() override { InitLangTable(settings, "en"); }

    template <class T> T* Control(WinPrefs& prefs, int id) {
        return wxDynamicCast(wxWindow::FindWindowById(id, &prefs), T);
    }
    wxCheckBox* Check(WinPrefs& prefs, int id) { return Control<wxCheckBox>(prefs, id); }
    wxTextCtrl* Editor(WinPrefs& prefs) { return Control<wxTextCtrl>(prefs, WinPrefs::ID_EDITOR); }
    void ChooseLanguage(WinPrefs& prefs, int index) {
        auto* combo = Control<wxComboBox>(prefs, WinPrefs::ID_LANG);
        combo->SetSelection(index);
        wxCommandEvent event(wxEVT_COMBOBOX, WinPrefs::ID_LANG);
        event.SetEventObject(combo);
        event.SetInt(index);
        combo->GetEventHandler()->ProcessEvent(event);
    }

    TempDir dir;
    AppSettings settings;
};

TEST_F(WinPrefsTest, ShowsDefaultsNamesAndEnglishTexts) {
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    EXPECT_EQ(prefs.GetTitle(), "Preferences");
    EXPECT_EQ(prefs.GetName(), "dialog");
    EXPECT_TRUE(Check(prefs, WinPrefs::ID_START_ON_START)->GetValue());
    EXPECT_FALSE(Check(prefs, WinPrefs::ID_START_SYSTRAY)->GetValue());
    EXPECT_TRUE(Check(prefs, WinPrefs::ID_AUTO_RESTART)->GetValue());
    EXPECT_EQ(Editor(prefs)->GetValue(), "xdg-open");
    EXPECT_EQ(Control<wxComboBox>(prefs, WinPrefs::ID_LANG)->GetValue(), "English");

    const struct {
        int id;
        const char* name;
        const char* label;
    } expected[] = {
        {WinPrefs::ID_SELECT_EDITOR, "btn_SelectEditor", "Select"},
        {WinPrefs::ID_LABEL_EDITOR, "label_TextEditor", "Text Editor : "},
        {WinPrefs::ID_AUTO_RESTART, "checkbox_AutoRestartFileChanged",
         "Automatically restart servers when the config files are changed"},
        {WinPrefs::ID_START_SYSTRAY, "checkbox_StartSystray", "Start Kovix in systray mode"},
        {WinPrefs::ID_START_ON_START, "checkbox_StartServerOnStart",
         "Automatically start Apache and MySQL on launch Kovix"},
        {WinPrefs::ID_GROUP, "groupBox", "Preferences"},
        {WinPrefs::ID_CANCEL, "btn_cancel", "Cancel"},
        {WinPrefs::ID_OK, "btn_OK", "OK"},
    };
    for (const auto& control : expected) {
        wxWindow* window = wxWindow::FindWindowById(control.id, &prefs);
        ASSERT_NE(window, nullptr) << control.name;
        EXPECT_EQ(window->GetName(), control.name);
        EXPECT_EQ(window->GetLabel(), control.label) << control.name;
    }
    EXPECT_EQ(Control<wxTextCtrl>(prefs, WinPrefs::ID_EDITOR)->GetName(), "edit_TextEditor");
    EXPECT_EQ(Control<wxComboBox>(prefs, WinPrefs::ID_LANG)->GetName(), "combo_Lang");
}

TEST_F(WinPrefsTest, OkStoresEverySwitchAndTheEditorAndSavesTheFile) {
    settings.SetBool(AppSettings::START_SYSTRAY_MODE, false);
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    WhenModal([&] {
        Check(prefs, WinPrefs::ID_START_ON_START)->SetValue(false);
        Check(prefs, WinPrefs::ID_START_SYSTRAY)->SetValue(true);
        Check(prefs, WinPrefs::ID_AUTO_RESTART)->SetValue(false);
        Editor(prefs)->SetValue("/usr/bin/gedit");
        ClickButton(&prefs, WinPrefs::ID_OK);
    });
    EXPECT_EQ(prefs.ShowModal(), wxID_OK);
    EXPECT_FALSE(settings.GetStartServersOnStart());
    EXPECT_TRUE(settings.GetStartInTray());
    EXPECT_FALSE(settings.GetAutoRestart());
    EXPECT_EQ(settings.GetTextEditor(), "/usr/bin/gedit");

    AppSettings saved;
    saved.Load(dir.File("kovix.ini"));
    EXPECT_EQ(saved.ToText(), settings.ToText());
    EXPECT_EQ(saved.GetString(AppSettings::AUTO_RESTAT_CONFIG_CHANGED), "0");
}

TEST_F(WinPrefsTest, CancelWritesNothingButTheLanguageChoiceStays) {
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    WhenModal([&] {
        ChooseLanguage(prefs, 1);
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

TEST_F(WinPrefsTest, ChoosingALanguageRetranslatesTheOpenDialog) {
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    ChooseLanguage(prefs, 1);
    EXPECT_EQ(wxWindow::FindWindowById(WinPrefs::ID_CANCEL, &prefs)->GetLabel(), "Annuler");
    EXPECT_EQ(wxWindow::FindWindowById(WinPrefs::ID_GROUP, &prefs)->GetLabel(),
              wxString::FromUTF8("Préférences"));
    EXPECT_EQ(wxWindow::FindWindowById(WinPrefs::ID_SELECT_EDITOR, &prefs)->GetLabel(),
              "Selectionner");
    ChooseLanguage(prefs, 0);
    EXPECT_EQ(wxWindow::FindWindowById(WinPrefs::ID_CANCEL, &prefs)->GetLabel(), "Cancel");
}

// Chooses path in the editor file dialog (once GTK has taken it) and checks how it was opened.
class ChooseEditor : public wxExpectModalBase<wxFileDialog, ChooseEditor> {
public:
    ChooseEditor(const wxString& path, int answer) : path(path), answer(answer) {}

protected:
    int OnInvoked(wxFileDialog* dialog) const override {
        EXPECT_EQ(dialog->GetName(), "filedlg");
        EXPECT_EQ(dialog->GetMessage(), "Select a text editor");
        EXPECT_EQ(dialog->GetWildcard(), "Application (*)|*");
        dialog->SetPath(path);
        EXPECT_TRUE(WaitFor([&] { return dialog->GetPath() == path; }, 3000));
        return answer;
    }

private:
    wxString path;
    int answer;
};

TEST_F(WinPrefsTest, EditorFileDialogFillsTheFieldOnlyWhenConfirmed) {
    WriteBytes(dir.File("editor"), "#!/bin/sh\n");
    WinPrefs prefs(nullptr, settings, dir.File("kovix.ini"));
    Editor(prefs)->SetValue("before");
    wxTEST_DIALOG(ClickButton(&prefs, WinPrefs::ID_SELECT_EDITOR),
                  ChooseEditor(dir.File("editor"), wxID_CANCEL));
    EXPECT_EQ(Editor(prefs)->GetValue(), "before");
    wxTEST_DIALOG(ClickButton(&prefs, WinPrefs::ID_SELECT_EDITOR),
                  ChooseEditor(dir.File("editor"), wxID_OK));
    EXPECT_EQ(Editor(prefs)->GetValue(), dir.File("editor"));
    EXPECT_FALSE(settings.Has(AppSettings::TEXT_EDITOR));
}

} // namespace
