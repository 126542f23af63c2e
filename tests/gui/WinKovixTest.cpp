// The main window against a small tree, FakeServer processes standing in for the servers.
#include "gui/WinKovix.h"
#include "core/servers/ProcessLookup.h"
#include "gui/GuiFixtures.h"
#include "gui/WinPrefs.h"
#include "gui/WinStats.h"
#include "support/FakeServer.h"
#include "support/TreeFiles.h"

#include <wx/choice.h>
#include <wx/hyperlink.h>
#include <wx/socket.h>
#include <wx/textctrl.h>
#include <wx/tokenzr.h>

namespace {

class WinKovixTest : public MainWindowTest<SmallTree> {
protected:
    wxString Console() { return Control<wxTextCtrl>(window, WinKovix::ID_CONSOLE)->GetValue(); }
};

using W = WinKovix;

// Every control of the window, with its label where it has one.
using LabelRow = std::pair<int, const char*>;
const LabelRow keyedLabels[] = { // language keys
    {W::ID_GROUP_STATUS, "STATUS"},       {W::ID_GROUP_SERVER, "SERVER"},
    {W::ID_GROUP_TOOLS, "TOOLS"},         {W::ID_GROUP_CONFIGURATION, "CONFIGURATION"},
    {W::ID_BTN_START, "START"},           {W::ID_BTN_STOP, "STOP"},
    {W::ID_STATUS_APACHE, "GET_STATUS"},  {W::ID_STATUS_MYSQL, "GET_STATUS"},
    {W::ID_WWW_SITE, "WWW_SITE"},         {W::ID_WWW_FOLDER, "WWW_FODLER"},
    {W::ID_PREFERENCES, "PREFERENCES"},   {W::ID_LABEL_PHP_VERSION, "PHP_VERSION2"},
    {W::ID_LABEL_PORT, "APACHE_PORT2"},   {W::ID_PHP_EXT, "PHP_CONFIG"},
    {W::ID_APACHE_CONF, "APACHE_CONFIG"}, {W::ID_LABEL_IP, "INFO_PUBLICIP"},
    {W::ID_LABEL_UPDATE, "INFO_UPDATE"},  {W::ID_UPDATE_VALUE, "INFO_SEARCH"},
    {W::ID_IP_VALUE, "INFO_SEARCH"}};
const LabelRow fixedLabels[] = { // the same in every language
    {W::ID_LABEL_MYSQL, "MySQL :"},
    {W::ID_LABEL_APACHE, "Apache :"},
    {W::ID_PHPMYADMIN, "PHPMyAdmin"},
    {W::ID_PHPINFO, "PHPInfo"},
    {W::ID_SQLITE, "SQLite"},
    {W::ID_LINK_KOVIX, "www.kovix.org"},
    {W::ID_LINK_AUTHOR, "dev.kovix.org"},
    {W::ID_GROUP_INFORMATION, "Information"},
    {W::ID_UPDATE_LINK, "aa"}};
const int unlabelled[] = {
    W::ID_PANEL,         W::ID_CONSOLE,          W::ID_BITMAP_LOGO, W::ID_PANEL_TOOLS,
    W::ID_TOOLS_PLUS,    W::ID_PANEL_LINKS,      W::ID_PHP_VERSION, W::ID_PORT,
    W::ID_BITMAP_GEAR,   W::ID_STATUS_PICTURE,   W::ID_STATS,       W::ID_BITMAP_GLOBE,
    W::ID_EDIT_PHP_FILE, W::ID_EDIT_APACHE_FILE, W::ID_ONLINE_MODE, W::ID_START_SOLO,
    W::ID_STOP_SOLO};

TEST_F(WinKovixTest, StartUpBuildsEveryControlWithItsTextsInEnglishAndFrench) {
    const struct {
        const char* language;
        const char* start;
        const char* welcome;
    } languages[] = {
        {"en", "Start", "Welcome To Kovix (Apache PHP MySQL PHPMyAdmin server)"},
        {"fr", "Démarrer", "Bienvenue sur Kovix (Apache PHP MySQL PHPMyAdmin serveur)"},
    };
    for (const auto& language : languages) {
        SCOPED_TRACE(language.language);
        InitLangTable(settings, language.language);
        WinKovix& frame = Open();
        for (const auto& [id, key] : keyedLabels)
            EXPECT_EQ(Label(id), GetLangText(key)) << id;
        for (const auto& [id, label] : fixedLabels)
            EXPECT_EQ(Label(id), label) << id;
        for (int id : unlabelled)
            EXPECT_NE(Control(window, id), nullptr) << id;
        EXPECT_EQ(Label(W::ID_BTN_START), wxString::FromUTF8(language.start));
        EXPECT_EQ(Console(), language.welcome + ("\n" + wxString('-', 49) + "\n\n"));
        EXPECT_FALSE(Control(window, W::ID_UPDATE_LINK)->IsShown());
        EXPECT_FALSE(IsEnabled(W::ID_BTN_STOP));
        EXPECT_TRUE(IsEnabled(W::ID_BTN_START));
        EXPECT_EQ(Control<wxChoice>(window, W::ID_ONLINE_MODE)->GetStringSelection(),
                  "Offline Mode");
        EXPECT_EQ(frame.GetTitle(), "Kovix 1.1");
        EXPECT_FALSE(frame.GetWindowStyleFlag() & (wxRESIZE_BORDER | wxMAXIMIZE_BOX));
        EXPECT_EQ(frame.GetMinSize(), frame.GetMaxSize());
        Close();
    }
}

TEST_F(WinKovixTest, UserChoicesMarkARestartThatAStoppedTickDropsWithoutStarting) {
    WinKovix& frame = Open();
    Choose(Control(window, W::ID_PHP_VERSION), 1);
    EXPECT_EQ(settings.GetPhpVersion(), "php_8.2");
    EXPECT_EQ(frame.GetRestartState(), W::RESTART_PENDING);
    frame.StatusTick();
    EXPECT_EQ(frame.GetRestartState(), W::RESTART_IDLE);

    Choose(Control(window, W::ID_ONLINE_MODE), 1);
    EXPECT_TRUE(settings.IsOnline());
    EXPECT_EQ(settings.GetString(AppSettings::APACHE_MODE), "1");
    EXPECT_EQ(frame.GetRestartState(), W::RESTART_PENDING);
    frame.StatusTick();
    frame.StatusTick();
    EXPECT_EQ(frame.GetRestartState(), W::RESTART_IDLE);
    EXPECT_TRUE(ProcessLookup::Find("httpd", tree.Root()).empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld", tree.Root()).empty());
    EXPECT_FALSE(wxFileExists(tree.File("apache/conf/httpd.conf")));
}

TEST_F(WinKovixTest, PreferencesLanguageShowsAtOnceAndKeepsTheInformationAndChoices) {
    settings.SetOnline(true);
    WinKovix& frame = Open();
    WhenModal([] {
        WinPrefs* prefs = OpenDialog<WinPrefs>();
        ASSERT_NE(prefs, nullptr);
        Choose(Control(prefs, WinPrefs::ID_LANG), 1);
        ClickButton(prefs, WinPrefs::ID_CANCEL);
    });
    ClickButton(&frame, W::ID_PREFERENCES);
    EXPECT_EQ(Label(W::ID_BTN_START), wxString::FromUTF8("Démarrer"));
    EXPECT_EQ(Label(W::ID_IP_VALUE), "Search...");
    EXPECT_EQ(Control<wxChoice>(window, W::ID_ONLINE_MODE)->GetStringSelection(), "Online Mode");
    EXPECT_EQ(frame.GetStatsWindow()->FindWindow(WinStats::ID_BTN_OK)->GetLabel(), "Fermer");

    EXPECT_FALSE(frame.GetStatsWindow()->IsShown());
    ClickButton(&frame, W::ID_STATS);
    EXPECT_TRUE(frame.GetStatsWindow()->IsShown());
}

// The template gone, the old httpd.conf must not be used: the console says why nothing started.
TEST_F(WinKovixTest, AStartWhoseGenerationFailedSaysWhyInTheConsoleAndStartsNothing) {
    ASSERT_TRUE(wxRemoveFile(tree.File("apache/conf/httpd_source.conf")));
    WriteTreeFile(tree.Root(), "apache/conf/httpd.conf", "stale\n");
    settings.SetPortText("65531");
    WinKovix& frame = Open();
    ClickButton(&frame, W::ID_BTN_START);
    EXPECT_TRUE(WaitFor([&] { return Console().Contains("Apache was not started"); })) << Console();
    EXPECT_TRUE(Console().Contains("Cannot read " + tree.File("apache/conf/httpd_source.conf") +
                                   ": No such file or directory"));
    EXPECT_TRUE(ProcessLookup::Find("httpd", tree.Root()).empty());
    EXPECT_EQ(ReadBytes(tree.File("apache/conf/httpd.conf")), "stale\n");
}

TEST_F(WinKovixTest, StartWithThePortTakenShowsThePortMessageAndStartsNothing) {
    wxIPV4address address;
    address.Hostname("127.0.0.1");
    address.Service(0);
    wxSocketServer holder(address, wxSOCKET_REUSEADDR);
    ASSERT_TRUE(holder.IsOk());
    holder.GetLocal(address);
    settings.SetPortText(wxString::Format("%d", address.Service()));
    WinKovix& frame = Open();

    wxString message, caption;
    wxTEST_DIALOG(ClickButton(&frame, W::ID_BTN_START), ExpectMessage(message, caption));
    EXPECT_EQ(message,
              "The apache port " + settings.GetPortText() + " is already used by another program");
    EXPECT_EQ(caption, "Kovix");
    EXPECT_TRUE(Console().Contains("Port " + settings.GetPortText() + " is held by"));
    EXPECT_FALSE(frame.IsBusy());
    EXPECT_FALSE(IsEnabled(W::ID_BTN_START));
    EXPECT_TRUE(WaitFor([&] { return IsEnabled(W::ID_BTN_START); }));
    EXPECT_TRUE(ProcessLookup::Find("httpd", tree.Root()).empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld", tree.Root()).empty());
    EXPECT_FALSE(wxFileExists(tree.File("apache/conf/httpd.conf")));
}

TEST_F(WinKovixTest, StatusTickFollowsTheServersAndFeedsTheChartOnlyWhileOneRuns) {
    WinKovix& frame = Open();
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped", 10000));
    const std::vector<ChartSeries> idle = frame.CpuSeries();
    frame.StatusTick();
    EXPECT_EQ(frame.CpuSeries()[0].samples, idle[0].samples);
    {
        FakeServer busyApache(tree.Root(), "apache/bin/httpd", "/bin/sh",
                              "-c \"while :; do :; done\"");
        ASSERT_TRUE(WaitFor([&] { return frame.CpuSeries()[0].Newest() > 0; }));
        EXPECT_TRUE(Label(W::ID_STATUS_APACHE).StartsWith("Running - CPU: "));
        EXPECT_EQ(Label(W::ID_STATUS_MYSQL), "Stopped");
        EXPECT_FALSE(IsEnabled(W::ID_BTN_START));
        EXPECT_TRUE(IsEnabled(W::ID_BTN_STOP));
        const std::vector<ChartSeries>& series = frame.CpuSeries();
        EXPECT_EQ(series[1].Newest(), 0);
        EXPECT_EQ(series[2].Newest(), series[0].Newest() + series[1].Newest());
        long shown = 0;
        Label(W::ID_STATUS_APACHE).AfterLast(' ').BeforeLast('%').ToLong(&shown);
        EXPECT_EQ(shown, series[0].Newest());
    }
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped", 10000));
    EXPECT_TRUE(IsEnabled(W::ID_BTN_START));
    EXPECT_FALSE(IsEnabled(W::ID_BTN_STOP));
    const std::vector<ChartSeries> stopped = frame.CpuSeries();
    frame.StatusTick();
    frame.StatusTick();
    for (size_t i = 0; i < stopped.size(); ++i)
        EXPECT_EQ(frame.CpuSeries()[i].samples, stopped[i].samples);
}

// A program that appends "<its path> <its arguments>" to log, one line per run.
void WriteRecorder(const wxString& path, const wxString& log) {
    WriteBytes(path, ("#!/bin/sh\necho \"$0 $*\" >> '" + log + "'\n").utf8_string());
    wxChmod(path, 0755);
}

TEST_F(WinKovixTest, ToolsFilesAndLinksOpenThroughTheDesktopAndTheEditor) {
    TempDir bin("kovix-bin");
    const wxString calls = bin.File("calls.txt");
    WriteRecorder(bin.File("xdg-open"), calls);
    WriteRecorder(bin.File("editor"), calls);
    MakeTreeFolder(tree.Root(), "utils");
    WriteRecorder(tree.File("utils/SQLiteBrowser"), calls);
    wxString path;
    wxGetEnv("PATH", &path);
    ScopedEnv desktop("PATH", bin.Path() + ":" + path);
    settings.SetTextEditor(bin.File("editor"));
    settings.SetPhpVersion("php_8.2");
    WinKovix& frame = Open();
    const wxString site = "http://localhost:" + settings.GetPortText() + "/";
    const wxString xdgOpen = bin.File("xdg-open") + " ";
    const wxString editor = bin.File("editor") + " ";
    const auto click = [&](int id) { return [&frame, id] { ClickButton(&frame, id); }; };
    const auto menu = [&](int id) { return [&frame, id] { ChooseMenu(&frame, id); }; };
    const struct {
        std::function<void()> action;
        wxString call;
    } cases[] = {
        {click(W::ID_WWW_SITE), xdgOpen + site},
        {click(W::ID_WWW_FOLDER), xdgOpen + tree.File("www")},
        {click(W::ID_PHPMYADMIN), xdgOpen + site + "mysql/"},
        {click(W::ID_PHPINFO), xdgOpen + site + "kovix/phpinfo.php"},
        {click(W::ID_SQLITE), tree.File("utils/SQLiteBrowser") + " "},
        {menu(W::ID_MENU_LOG_APACHE_ACCESS), editor + tree.File("apache/logs/access.log")},
        {click(W::ID_EDIT_PHP_FILE), editor + tree.File("apache/php_8.2/php_source.ini")},
        {[&] {
             wxHyperlinkEvent link(Control(window, W::ID_LINK_AUTHOR), W::ID_LINK_AUTHOR,
                                   W::AUTHOR_SITE);
             frame.GetEventHandler()->ProcessEvent(link);
         },
         xdgOpen + W::AUTHOR_SITE},
    };
    const auto lines = [&] {
        return wxStringTokenize(wxString::FromUTF8(ReadBytes(calls)), "\n", wxTOKEN_STRTOK);
    };
    size_t count = 0;
    for (const auto& item : cases) {
        item.action();
        ++count;
        ASSERT_TRUE(WaitFor([&] { return lines().size() == count; })) << item.call;
        EXPECT_EQ(lines().Last(), item.call);
    }
}

TEST_F(WinKovixTest, LogRemovalsAreRefusedWhileTheirServerRuns) {
    WinKovix& frame = Open();
    wxString message, caption;
    {
        FakeServer httpd(tree.Root(), "apache/bin/httpd");
        wxTEST_DIALOG(ChooseMenu(&frame, W::ID_MENU_LOG_APACHE_DELETE),
                      ExpectMessage(message, caption));
        EXPECT_EQ(message, "You must stop Apache server before supress log file");
        EXPECT_EQ(caption, "Kovix");
        EXPECT_TRUE(wxFileExists(tree.File("apache/logs/access.log")));
        wxTEST_DIALOG(ChooseMenu(&frame, W::ID_MENU_LOG_ALL_DELETE),
                      ExpectMessage(message, caption));
        EXPECT_EQ(message, "You must stop Apache and MySQL server before supress log file");
        EXPECT_TRUE(wxFileExists(tree.File("apache/sessions/sess_1")));
        EXPECT_TRUE(wxFileExists(tree.File("mysql/data/mysql.err")));

        EXPECT_NO_DIALOG(ChooseMenu(&frame, W::ID_MENU_LOG_SESSION_DELETE));
        EXPECT_FALSE(wxFileExists(tree.File("apache/sessions/sess_1")));
    }
    {
        FakeServer mysqld(tree.Root(), "mysql/bin/mysqld");
        wxTEST_DIALOG(ChooseMenu(&frame, W::ID_MENU_LOG_MYSQL_DELETE),
                      ExpectMessage(message, caption));
        EXPECT_EQ(message, "You must stop MySQL server before supress log file");
        EXPECT_TRUE(wxFileExists(tree.File("mysql/data/mysql.err")));
        EXPECT_NO_DIALOG(ChooseMenu(&frame, W::ID_MENU_LOG_APACHE_DELETE));
        EXPECT_FALSE(wxFileExists(tree.File("apache/logs/access.log")));
        EXPECT_FALSE(wxFileExists(tree.File("apache/logs/error.log")));
    }
    EXPECT_NO_DIALOG(ChooseMenu(&frame, W::ID_MENU_LOG_ALL_DELETE));
    EXPECT_FALSE(wxFileExists(tree.File("mysql/data/mysql.err")));
}

// The Yes answer is tried from the tray's Exit.
TEST_F(WinKovixTest, CloseAsksWhileAServerRunsAndCancelKeepsEverything) {
    WinKovix& frame = Open();
    frame.Show();
    FakeServer httpd(tree.Root(), "apache/bin/httpd");
    wxString message, caption;
    wxTEST_DIALOG(frame.Close(), ExpectMessage(message, caption, wxID_CANCEL));
    EXPECT_EQ(message, "Server curently running, do you want stop Apache and MySQL before closing "
                       "Kovix");
    EXPECT_EQ(caption, "Kovix");
    wxTheApp->ProcessIdle();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->IsShown());
    EXPECT_TRUE(httpd.IsActive());

    wxTEST_DIALOG(frame.Close(), ExpectMessage(message, caption, wxID_NO));
    EXPECT_TRUE(WaitFor([&] { return !window; }));
    EXPECT_TRUE(httpd.IsActive());
}

// A kovix.ini that cannot be replaced (here a folder of that name) is said as the window closes,
// in the user's language, and the window goes all the same.
TEST_F(WinKovixTest, ASettingsFileThatCannotBeWrittenIsSaidWhenTheWindowCloses) {
    MakeTreeFolder(tree.Root(), "kovix.ini");
    const wxString file = tree.File("kovix.ini");
    const struct {
        const char* language;
        wxString message;
    } languages[] = {
        {"en", "Cannot write " + file + ": Is a directory"},
        {"fr", wxString::FromUTF8("Impossible d'écrire ") + file + " : Is a directory"}};
    for (const auto& language : languages) {
        SCOPED_TRACE(language.language);
        InitLangTable(settings, language.language);
        WinKovix& frame = Open();
        frame.Show();
        wxString message, caption;
        wxTEST_DIALOG(frame.Close(), ExpectMessage(message, caption));
        EXPECT_EQ(message, language.message);
        EXPECT_EQ(caption, "Kovix");
        EXPECT_TRUE(WaitFor([&] { return !window; }));
    }
}

} // namespace
