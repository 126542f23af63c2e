// The tray menu, built afresh on each right-click, and its commands, against a small tree with
// FakeServer processes standing in for the servers.
#include "gui/WinTaskBarIcon.h"
#include "gui/GuiFixtures.h"
#include "support/FakeServer.h"

#include <wx/menu.h>

namespace {

class WinTaskBarIconTest : public MainWindowTest<SmallTree> {
protected:
    void SetUp() override { Open(); }

    WinTaskBarIcon& Tray() { return *window->GetTrayIcon(); }
    std::unique_ptr<wxMenu> Menu() { return std::unique_ptr<wxMenu>(Tray().CreatePopupMenu()); }
    void Choose(int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        Tray().ProcessEvent(event);
    }
    static wxString Text(wxMenu& menu, size_t position) {
        return menu.FindItemByPosition(position)->GetItemLabelText();
    }
    static bool Enabled(wxMenu& menu, int id) { return menu.FindItem(id)->IsEnabled(); }
};

TEST_F(WinTaskBarIconTest, MenuListsStateCommandsAndToolsInOrder) {
    window->Show();
    auto menu = Menu();
    using T = WinTaskBarIcon;
    const int ids[] = {T::ID_SHOW_HIDE, wxID_SEPARATOR,   T::ID_STATUS_LINE, T::ID_STATUS_LINE,
                       wxID_SEPARATOR,  T::ID_START,      T::ID_STOP,        wxID_SEPARATOR,
                       T::ID_WWW_SITE,  T::ID_WWW_FOLDER, T::ID_PHPMYADMIN,  T::ID_PHPINFO,
                       T::ID_SQLITE,    wxID_SEPARATOR,   T::ID_EXIT};
    ASSERT_EQ(menu->GetMenuItemCount(), std::size(ids));
    wxString texts;
    for (size_t i = 0; i < std::size(ids); ++i) {
        EXPECT_EQ(menu->FindItemByPosition(i)->GetId(), ids[i]) << i;
        texts += Text(*menu, i) + "|";
    }
    EXPECT_EQ(texts, "Hide Kovix Window||Apache Status : Stopped|MySQL Status : Stopped||Start "
                     "Server|Stop Server||www Site|www Folder|PhpMyAdmin|Php Info|SQLite||Exit|");
    EXPECT_TRUE(Enabled(*menu, WinTaskBarIcon::ID_START));
    EXPECT_FALSE(Enabled(*menu, WinTaskBarIcon::ID_STOP));
}

TEST_F(WinTaskBarIconTest, MenuFollowsTheServersAndTheWindowAtEachBuild) {
    FakeServer mysqld(tree.Root(), "mysql/bin/mysqld");
    auto menu = Menu();
    EXPECT_EQ(Text(*menu, 0), "Show Kovix Window");
    EXPECT_EQ(Text(*menu, 2), "Apache Status : Stopped");
    EXPECT_EQ(Text(*menu, 3), "MySQL Status : Running");
    EXPECT_FALSE(Enabled(*menu, WinTaskBarIcon::ID_START));
    EXPECT_TRUE(Enabled(*menu, WinTaskBarIcon::ID_STOP));

    SetLangIndex(1);
    window->Show();
    menu = Menu();
    EXPECT_EQ(Text(*menu, 0), "Cacher la fenetre Kovix");
    EXPECT_EQ(Text(*menu, 3), wxString::FromUTF8("MySQL Status : Démarré"));
    EXPECT_EQ(Text(*menu, 14), "Quitter");
}

TEST_F(WinTaskBarIconTest, ShowHideTogglesTheWindowAndStatusLinesDoNothing) {
    window->Show();
    Choose(WinTaskBarIcon::ID_SHOW_HIDE);
    EXPECT_FALSE(window->IsShown());
    EXPECT_EQ(Text(*Menu(), 0), "Show Kovix Window");
    EXPECT_NO_DIALOG(Choose(WinTaskBarIcon::ID_STATUS_LINE));
    EXPECT_FALSE(window->IsShown());
    Choose(WinTaskBarIcon::ID_SHOW_HIDE);
    EXPECT_TRUE(window->IsShown());

    window->Hide();
    wxTaskBarIconEvent doubleClick(wxEVT_TASKBAR_LEFT_DCLICK, &Tray());
    Tray().ProcessEvent(doubleClick);
    EXPECT_TRUE(window->IsShown());
}

// Exit forces the close: Cancel keeps the panel all the same, Yes stops the servers first.
TEST_F(WinTaskBarIconTest, ExitAsksTheCloseQuestion) {
    window->Show();
    FakeServer httpd(tree.Root(), "apache/bin/httpd");
    wxString message, caption;
    wxTEST_DIALOG(Choose(WinTaskBarIcon::ID_EXIT), ExpectMessage(message, caption, wxID_CANCEL));
    EXPECT_EQ(message, GetLangText("STOPSERVER_MESSAGE"));
    wxTheApp->ProcessIdle();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->IsShown());

    wxTEST_DIALOG(Choose(WinTaskBarIcon::ID_EXIT), ExpectMessage(message, caption, wxID_YES));
    EXPECT_TRUE(WaitFor([&] { return !window; }));
    EXPECT_TRUE(WaitFor([&] { return !httpd.IsActive(); }));
}

} // namespace
