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
    const struct {
        int id;
        const char* text;
    } expected[] = {
        {WinTaskBarIcon::ID_SHOW_HIDE, "Hide Kovix Window"},
        {wxID_SEPARATOR, ""},
        {WinTaskBarIcon::ID_STATUS_LINE, "Apache Status : Stopped"},
        {WinTaskBarIcon::ID_STATUS_LINE, "MySQL Status : Stopped"},
        {wxID_SEPARATOR, ""},
        {WinTaskBarIcon::ID_START, "Start Server"},
        {WinTaskBarIcon::ID_STOP, "Stop Server"},
        {wxID_SEPARATOR, ""},
        {WinTaskBarIcon::ID_WWW_SITE, "www Site"},
        {WinTaskBarIcon::ID_WWW_FOLDER, "www Folder"},
        {WinTaskBarIcon::ID_PHPMYADMIN, "PhpMyAdmin"},
        {WinTaskBarIcon::ID_PHPINFO, "Php Info"},
        {WinTaskBarIcon::ID_SQLITE, "SQLite"},
        {wxID_SEPARATOR, ""},
        {WinTaskBarIcon::ID_EXIT, "Exit"},
    };
    ASSERT_EQ(menu->GetMenuItemCount(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        wxMenuItem* item = menu->FindItemByPosition(i);
        EXPECT_EQ(item->IsSeparator(), expected[i].id == wxID_SEPARATOR) << i;
        if (!item->IsSeparator()) {
            EXPECT_EQ(item->GetId(), expected[i].id) << i;
            EXPECT_EQ(item->GetItemLabelText(), expected[i].text) << i;
        }
    }
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
