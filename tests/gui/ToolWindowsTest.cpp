// The log viewer, the Databases and the Mail windows, and the main window's tools row.
#include "core/mail/MailStore.h"
#include "core/servers/MysqlServer.h"
#include "gui/GuiFixtures.h"
#include "gui/ScreenCapture.h"
#include "gui/tools/ToolsPanel.h"
#include "gui/tools/WinDatabases.h"
#include "gui/tools/WinLogViewer.h"
#include "gui/tools/WinMail.h"
#include "platform/Platform.h"
#include "support/CommandRunner.h"
#include "support/TreeFiles.h"

#include <wx/button.h>
#include <wx/dir.h>
#include <wx/ffile.h>
#include <wx/filename.h>
#include <wx/textctrl.h>
#include <wx/tglbtn.h>

namespace {

void AddToFile(const wxString& path, const std::string& bytes) {
    wxFFile file(path, "ab");
    ASSERT_TRUE(file.IsOpened() && file.Write(bytes.data(), bytes.size()) == bytes.size());
}

// Written to KOVIX_SCREENSHOTS_DIR when it is set (scripts/screenshots.sh).
void ShootIfAsked(wxWindow& window, const wxString& name) {
    wxString folder;
    if (!wxGetEnv("KOVIX_SCREENSHOTS_DIR", &folder) || folder.empty())
        return;
    window.Raise();
    ASSERT_TRUE(WaitForPaint(window));
    const wxImage shot = CaptureScreen(window.GetScreenRect());
    ASSERT_TRUE(shot.IsOk());
    ASSERT_TRUE(shot.SaveFile(wxFileName(folder, name + ".png").GetFullPath(), wxBITMAP_TYPE_PNG));
}

class ToolWindows : public testing::Test {
protected:
    ToolWindows() {
        settings.Load(tree.File("kovix.ini"));
        InitLangTable(settings, "en");
    }

    RealTree tree;
    AppSettings settings;
    InstallPaths paths{tree.Root(), settings};
};

} // namespace

TEST_F(ToolWindows, TheLogViewerFollowsFiltersPausesAndStartsAgainAfterAClean) {
    const wxString log = paths.ApacheErrorLog();
    WriteBytes(log, "[old] before the viewer\n");
    auto* viewer = new WinLogViewer(nullptr, paths);
    viewer->Show();
    const LogLines& lines = viewer->Lines();
    ASSERT_EQ(lines.ShownCount(), 1u);

    AddToFile(log, "[notice] GET /index.php\n[error] PHP Fatal error in /www/a.php\n");
    EXPECT_TRUE(WaitFor([&] { return lines.ShownCount() == 3; }, 2000));
    Type(viewer, Named<wxTextCtrl>(viewer, "text_Filter")->GetId(), "fatal");
    ASSERT_EQ(lines.ShownCount(), 1u);
    EXPECT_EQ(lines.Shown(0), "[error] PHP Fatal error in /www/a.php");

    auto* pause = wxDynamicCast(wxWindow::FindWindowByLabel("Pause", viewer), wxToggleButton);
    ASSERT_TRUE(pause);
    pause->SetValue(true);
    wxCommandEvent toggled(wxEVT_TOGGLEBUTTON, pause->GetId());
    pause->GetEventHandler()->ProcessEvent(toggled);
    AddToFile(log, "[error] another fatal one\n");
    EXPECT_TRUE(WaitFor([&] { return lines.HeldCount() == 1; }, 2000));
    EXPECT_EQ(lines.ShownCount(), 1u);
    ClickButton(viewer, Named<wxButton>(viewer, "btn_End")->GetId());
    EXPECT_FALSE(pause->GetValue());
    EXPECT_EQ(lines.ShownCount(), 2u);

    // The panel's clean removes the log; Apache writes a new one.
    ASSERT_TRUE(wxRemoveFile(log));
    AddToFile(log, "[fatal] fresh start\n");
    EXPECT_TRUE(WaitFor(
        [&] { return lines.ShownCount() == 1 && lines.Shown(0) == "[fatal] fresh start"; }, 2000));
    ShootIfAsked(*viewer, "log-viewer-en");
    CloseWindow(viewer);
}

TEST_F(ToolWindows, MailIsListedNewestFirstShownDecodedAndDeleted) {
    const MailStore store(MailStore::FolderOf(paths));
    wxString id, error;
    ASSERT_TRUE(store.Catch("From: shop@site.test\nTo: client@site.test\nSubject: Order 1\n\n"
                            "Thanks.\n",
                            id, error));
    ASSERT_TRUE(store.Catch("From: shop@site.test\nTo: client@site.test\n"
                            "Subject: =?UTF-8?Q?Commande_exp=C3=A9di=C3=A9e?=\n"
                            "Content-Type: text/html; charset=UTF-8\n"
                            "Content-Transfer-Encoding: quoted-printable\n\n"
                            "<p>Votre colis est parti =E2=80=94 merci&nbsp;!</p>\n",
                            id, error));
    auto* mail = new WinMail(nullptr, paths);
    mail->Show();
    ASSERT_EQ(mail->Messages().size(), 2u);
    EXPECT_EQ(mail->Messages()[0].subject, wxString::FromUTF8("Commande expédiée"));
    EXPECT_NE(mail->ShownText().Find(wxString::FromUTF8("\n\nVotre colis est parti — merci !")),
              wxNOT_FOUND);
    mail->Select(1);
    EXPECT_TRUE(mail->ShownText().EndsWith("\n\nThanks.\n"));
    ShootIfAsked(*mail, "mail-en");

    ClickButton(mail, Named<wxButton>(mail, "MAIL_DELETE")->GetId());
    ASSERT_EQ(mail->Messages().size(), 1u);
    EXPECT_EQ(mail->Messages()[0].id, id);
    wxString message, caption;
    wxTEST_DIALOG(ClickButton(mail, Named<wxButton>(mail, "MAIL_DELETE_ALL")->GetId()),
                  ExpectMessage(message, caption, wxID_NO));
    EXPECT_EQ(mail->Messages().size(), 1u);
    wxTEST_DIALOG(ClickButton(mail, Named<wxButton>(mail, "MAIL_DELETE_ALL")->GetId()),
                  ExpectMessage(message, caption, wxID_YES));
    EXPECT_EQ(message, "Delete every caught message?");
    EXPECT_TRUE(mail->Messages().empty());
    CloseWindow(mail);
}

TEST_F(ToolWindows, DatabasesBackUpAndARestoreOverAnExistingDatabaseAsksFirst) {
    MysqlServer mysql(paths);
    mysql.Start();
    ASSERT_TRUE(
        WaitFor([&] { return Platform::Get().IsLocalSocketAccepting(mysql.SocketPath()); }));
    auto sql = [&](const wxString& statements) {
        return RunCommand({"mariadb", "--defaults-file=" + paths.MysqlLiveConfig(), "--user=root",
                           "--batch", "--skip-column-names", "--execute=" + statements});
    };
    ASSERT_EQ(sql("CREATE DATABASE blog; CREATE TABLE blog.posts (id INT PRIMARY KEY, "
                  "title TEXT); INSERT INTO blog.posts VALUES (1, 'first'), (2, 'second')")
                  .exitCode,
              0);
    auto checksum = [&] { return sql("CHECKSUM TABLE blog.posts").out; };
    const wxString original = checksum();

    auto* window = new WinDatabases(nullptr, paths);
    window->Show();
    ASSERT_TRUE(WaitFor([&] { return !window->IsWorking(); }));
    ASSERT_EQ(window->Databases().size(), 1u);
    EXPECT_EQ(window->Databases()[0].name, "blog");
    ClickButton(window, Named<wxButton>(window, "DB_BACKUP")->GetId());
    ASSERT_TRUE(WaitFor([&] { return !window->IsWorking(); }));
    EXPECT_TRUE(window->StatusText().StartsWith("Backup written: ")) << window->StatusText();
    wxArrayString backups;
    wxDir::GetAllFiles(tree.File("backups"), &backups, "blog-*.sql.gz");
    ASSERT_EQ(backups.size(), 1u);
    ShootIfAsked(*window, "databases-en");

    ASSERT_EQ(sql("UPDATE blog.posts SET title = 'changed'").exitCode, 0);
    const wxString changed = checksum();
    wxString message, caption;
    wxTEST_DIALOG(EXPECT_FALSE(window->RestoreFile(backups[0])),
                  ExpectMessage(message, caption, wxID_NO));
    EXPECT_EQ(message, "The database blog exists. Replace its content with the backup?");
    EXPECT_FALSE(window->IsWorking());
    EXPECT_EQ(checksum(), changed);
    wxTEST_DIALOG(EXPECT_TRUE(window->RestoreFile(backups[0])),
                  ExpectMessage(message, caption, wxID_YES));
    ASSERT_TRUE(WaitFor([&] { return !window->IsWorking(); }));
    wxString said = window->StatusText(); // wrapped to the window's width
    said.Replace("\n", " ");
    EXPECT_TRUE(
        said.StartsWith("Database blog restored. Its previous content was backed up first: blog-"))
        << said;
    EXPECT_EQ(checksum(), original);

    // Stopped MySQL: the window says so and nothing is written.
    mysql.Stop();
    ASSERT_TRUE(WaitFor([&] { return !mysql.IsRunning(); }, 30000));
    ClickButton(window, Named<wxButton>(window, "DB_BACKUP")->GetId());
    ASSERT_TRUE(WaitFor([&] { return !window->IsWorking(); }));
    EXPECT_TRUE(window->StatusText().StartsWith("MySQL is not running")) << window->StatusText();
    backups.clear();
    wxDir::GetAllFiles(tree.File("backups"), &backups, "", wxDIR_FILES | wxDIR_HIDDEN);
    EXPECT_EQ(backups.size(), 2u); // the backup and the restore's safety backup
    CloseWindow(window);
}

using ToolsRow = MainWindowTest<SmallTree>;

TEST_F(ToolsRow, CountsNewMailUntilTheMailWindowShowsItAndOpensEachWindowOnce) {
    WinKovix& main = Open();
    auto* tools = Named<ToolsPanel>(&main, "ToolsPanel");
    ASSERT_TRUE(tools);
    auto* mailButton = Named<wxButton>(&main, "btn_Mail");
    EXPECT_EQ(mailButton->GetLabel(), "Mail");
    const MailStore store(MailStore::FolderOf(InstallPaths(tree.Root(), settings)));
    wxString id, error;
    for (int i = 0; i < 2; ++i)
        ASSERT_TRUE(store.Catch("Subject: hello\n\nhi\n", id, error));
    tools->UpdateMailCount();
    EXPECT_EQ(mailButton->GetLabel(), "Mail (2 new)");
    WinMail* mail = tools->OpenMail();
    EXPECT_EQ(tools->NewMailCount(), 0u);
    EXPECT_EQ(tools->OpenMail(), mail);
    CloseWindow(mail);
    ASSERT_TRUE(store.Catch("Subject: later\n\n", id, error));
    tools->UpdateMailCount();
    EXPECT_EQ(tools->NewMailCount(), 1u);
    EXPECT_NE(tools->OpenLogViewer(), nullptr);
}
