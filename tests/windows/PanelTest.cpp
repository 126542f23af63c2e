// The panel's windows in the Windows build (under Wine with a display): the main window in
// English and French, the preferences and both configuration dialogs (the PHP one's list filled
// by its worker), on the Windows tree skeleton that KOVIX_WINDOWS_TREE names. The dialogs'
// pictures go to KOVIX_SCREENSHOTS_DIR when it is set; the main window's are taken of the real
// kovix.exe by scripts/windows-panel.sh.
#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "gui/GuiTesting.h"
#include "gui/WinKovix.h"
#include "gui/WinPrefs.h"
#include "gui/apache/WinApacheConf.h"
#include "gui/php/WinPHPExt.h"
#include "windows/WindowsTesting.h"

#include <wx/checklst.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/utils.h>

namespace {

wxString Variable(const char* name) {
    wxString value;
    wxGetEnv(name, &value);
    return value;
}

void Shoot(wxWindow& window, const wxString& name) {
    window.Raise();
    window.Refresh();
    window.Update();
    WaitFor([] { return false; }, 500);
    const wxString folder = Variable("KOVIX_SCREENSHOTS_DIR");
    if (folder.empty())
        return;
    // The client area: without a window manager Wine leaves the frame's title bar undrawn.
    const wxRect rect(window.ClientToScreen(wxPoint(0, 0)), window.GetClientSize());
    wxBitmap bitmap(rect.width, rect.height);
    {
        wxMemoryDC memory(bitmap);
        wxScreenDC screen;
        memory.Blit(0, 0, rect.width, rect.height, &screen, rect.x, rect.y);
    }
    const wxString file = WindowsPath(folder + "/windows-" + name + ".png");
    EXPECT_TRUE(bitmap.ConvertToImage().SaveFile(file, wxBITMAP_TYPE_PNG)) << file;
}

template <class Dialog> bool IsReady(const Dialog& dialog) {
    return !dialog.IsBusy();
}
bool IsReady(const WinPrefs&) {
    return true; // reads nothing in the background
}

// Shows dialog modally, checks and pictures it once its template is read, and cancels it.
template <class Dialog>
void ShootAndCancel(
    Dialog& dialog, const wxString& name, const std::function<void()>& check = [] {}) {
    WhenModal([&] {
        EXPECT_TRUE(WaitFor([&] { return IsReady(dialog); }));
        check();
        Shoot(dialog, name);
        dialog.EndModal(wxID_CANCEL);
    });
    EXPECT_EQ(dialog.ShowModal(), wxID_CANCEL);
}

class PanelTest : public testing::Test {
protected:
    PanelTest() {
        settings.SetBool(AppSettings::START_ON_START, false);
        settings.SetPhpVersion("php_8.2");
    }

    const wxString root = WindowsPath(Variable("KOVIX_WINDOWS_TREE"));
    AppSettings settings;
    InstallPaths paths{root, settings};
};

} // namespace

TEST_F(PanelTest, TheMainWindowSpeaksEnglishAndFrench) {
    ASSERT_FALSE(root.empty());
    std::vector<wxString> labels;
    for (const char* language : {"en", "fr"}) {
        settings.SetString(AppSettings::CURRENT_LANG, language);
        InitLangTable(settings, language);
        auto* window = new WinKovix(root, settings);
        window->Show();
        ASSERT_TRUE(WaitFor([&] { return !window->IsBusy(); }));
        labels.push_back(Label(window, WinKovix::ID_PREFERENCES));
        CloseWindow(window);
    }
    EXPECT_EQ(labels[0], "Preferences");
    EXPECT_NE(labels[1], labels[0]);
}

TEST_F(PanelTest, PreferencesAndBothConfigurationDialogsOpenOnTheWindowsTree) {
    ASSERT_FALSE(root.empty());
    InitLangTable(settings, "en");
    {
        WinPrefs dialog(nullptr, settings, paths.SettingsFile());
        ShootAndCancel(dialog, "prefs-en");
    }
    {
        WinApacheConf dialog(nullptr, paths);
        ShootAndCancel(dialog, "apache-en");
    }
    {
        WinPHPExt dialog(nullptr, paths);
        ShootAndCancel(dialog, "php-en", [&] {
            const auto* list = Control<wxCheckListBox>(&dialog, WinPHPExt::ID_EXTENSIONS);
            ASSERT_TRUE(list);
            const int gd = list->FindString("gd", true), xsl = list->FindString("xsl", true);
            ASSERT_NE(gd, wxNOT_FOUND);
            ASSERT_NE(xsl, wxNOT_FOUND);
            EXPECT_TRUE(list->IsChecked(gd));
            EXPECT_FALSE(list->IsChecked(xsl));
        });
    }
}
