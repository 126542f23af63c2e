// The tray menu, built afresh on each right-click, and its Exit, against a small tree with
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
    // The menu's texts, one line each, an enabled entry marked with a star.
    std::string MenuTexts() {
        std::unique_ptr<wxMenu> menu(Tray().CreatePopupMenu());
        wxString texts;
        for (const wxMenuItem* item : menu->GetMenuItems())
            texts += item->GetItemLabelText() + (item->IsEnabled() ? "*|" : "|");
        return texts.utf8_string();
    }
    void Choose(int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        Tray().ProcessEvent(event);
    }
};

TEST_F(WinTaskBarIconTest, MenuFollowsTheServersTheWindowAndTheLanguageAtEachBuild) {
    window->Show();
    EXPECT_EQ(MenuTexts(), "Hide Kovix Window*|*|Apache Status : Stopped*|MySQL Status : "
                           "Stopped*|*|Start Server*|Stop Server|*|www Site*|www Folder*|"
                           "PhpMyAdmin*|Php Info*|SQLite*|*|Exit*|");
    FakeServer mysqld(tree.Root(), "mysql/bin/mysqld");
    SetLangIndex(1);
    window->Hide();
    EXPECT_EQ(MenuTexts(), "Afficher la fenetre Kovix*|*|Apache Status : Arrêté*|MySQL Status : "
                           "Démarré*|*|Démarrer Serveur|Arrêter Serveur*|*|www Site*|www "
                           "Dossier*|PhpMyAdmin*|Php Info*|SQLite*|*|Quitter*|");
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
