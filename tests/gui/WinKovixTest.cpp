// The main window against a small tree: controls and texts, choices, menus, refusals, the port
// test, the close question. Servers are stood in for by FakeServer processes.
#include "gui/WinKovix.h"
#include "app/AppSettings.h"
#include "core/ProcessLookup.h"
#include "gui/GuiDialogs.h"
#include "gui/GuiWait.h"
#include "gui/WinPrefs.h"
#include "gui/WinStats.h"
#include "gui/WinTaskBarIcon.h"
#include "lang/LangTable.h"
#include "support/FakeServer.h"
#include "support/ScopedEnv.h"
#include "support/SmallTree.h"
#include "support/TestTree.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/bmpbuttn.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/hyperlink.h>
#include <wx/menu.h>
#include <wx/panel.h>
#include <wx/socket.h>
#include <wx/spinctrl.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/tokenzr.h>
#include <wx/weakref.h>

namespace {

class WinKovixTest : public testing::Test {
protected:
    void SetUp() override {
        settings.SetBool(AppSettings::START_ON_START, false);
        settings.SetPort(TestTree::FreePort());
        InitLangTable(settings, "en");
    }
    void TearDown() override { DestroyWindow(); }

    WinKovix& Open() {
        window = new WinKovix(tree.Root(), settings);
        return *window;
    }
    void DestroyWindow() {
        if (!window)
            return;
        window->Destroy();
        EXPECT_TRUE(WaitFor([&] { return !window; }));
    }
    wxWindow* Find(int id) { return wxWindow::FindWindowById(id, window.get()); }
    template <class T> T* Control(int id) { return wxDynamicCast(Find(id), T); }
    wxString Label(int id) { return Find(id)->GetLabel(); }
    bool IsEnabled(int id) { return Find(id)->IsEnabled(); }
    void Choose(int id, int index) {
        auto* choice = Control<wxChoice>(id);
        choice->SetSelection(index);
        wxCommandEvent event(wxEVT_CHOICE, id);
        event.SetEventObject(choice);
        event.SetInt(index);
        choice->GetEventHandler()->ProcessEvent(event);
    }
    // Waits for a status tick to show the Apache line starting with prefix.
    bool WaitForApacheState(const wxString& prefix) {
        return WaitFor([&] { return Label(WinKovix::ID_STATUS_APACHE).StartsWith(prefix); });
    }

    SmallTree tree;
    AppSettings settings;
    wxWeakRef<WinKovix> window;
};

struct ControlRow {
    int id;
    const char* name;
    wxClassInfo* kind;
    const char* key;     // language key of the label, or nullptr
    const char* label;   // fixed label when there is no key, or nullptr when not checked
    bool applied = true; // false: the key's text is set once, when the window is built
};

// Every control of the window with the label it carries once the texts are applied.
const ControlRow controlRows[] = {
    {WinKovix::ID_PANEL, "panel", wxCLASSINFO(wxPanel), nullptr, nullptr},
    {WinKovix::ID_GROUP_STATUS, "groupBox", wxCLASSINFO(wxStaticBox), "STATUS", nullptr},
    {WinKovix::ID_GROUP_SERVER, "groupBox", wxCLASSINFO(wxStaticBox), "SERVER", nullptr},
    {WinKovix::ID_GROUP_TOOLS, "groupBox", wxCLASSINFO(wxStaticBox), "TOOLS", nullptr},
    {WinKovix::ID_GROUP_CONFIGURATION, "groupBox", wxCLASSINFO(wxStaticBox), "CONFIGURATION",
     nullptr},
    {WinKovix::ID_BTN_START, "btn_Start", wxCLASSINFO(wxButton), "START", nullptr},
    {WinKovix::ID_BTN_STOP, "btn_Stop", wxCLASSINFO(wxButton), "STOP", nullptr},
    {WinKovix::ID_CONSOLE, "TextBoxConsole", wxCLASSINFO(wxTextCtrl), nullptr, nullptr},
    {WinKovix::ID_LABEL_MYSQL, "WxStaticText2", wxCLASSINFO(wxStaticText), nullptr, "MySQL :"},
    {WinKovix::ID_LABEL_APACHE, "WxStaticText1", wxCLASSINFO(wxStaticText), nullptr, "Apache :"},
    {WinKovix::ID_STATUS_APACHE, "staticTextStApache", wxCLASSINFO(wxStaticText), "GET_STATUS",
     nullptr},
    {WinKovix::ID_STATUS_MYSQL, "staticTextStMySQL", wxCLASSINFO(wxStaticText), "GET_STATUS",
     nullptr},
    {WinKovix::ID_BITMAP_LOGO, "staticBitmap", wxCLASSINFO(wxStaticBitmap), nullptr, nullptr},
    {WinKovix::ID_PANEL_TOOLS, "panel", wxCLASSINFO(wxPanel), nullptr, nullptr},
    {WinKovix::ID_WWW_SITE, "WxButtonWWW", wxCLASSINFO(wxButton), "WWW_SITE", nullptr},
    {WinKovix::ID_WWW_FOLDER, "WxButtonWWWF", wxCLASSINFO(wxButton), "WWW_FODLER", nullptr},
    {WinKovix::ID_PHPMYADMIN, "WxButtonPHPAdmin", wxCLASSINFO(wxButton), nullptr, "PHPMyAdmin"},
    {WinKovix::ID_PHPINFO, "WxButtonPHPInfo", wxCLASSINFO(wxButton), nullptr, "PHPInfo"},
    {WinKovix::ID_SQLITE, "WxButtonSQLite", wxCLASSINFO(wxButton), nullptr, "SQLite"},
    {WinKovix::ID_TOOLS_PLUS, "WxButtonToolsPlus", wxCLASSINFO(wxBitmapButton), nullptr, nullptr},
    {WinKovix::ID_PANEL_LINKS, "panel", wxCLASSINFO(wxPanel), nullptr, nullptr},
    {WinKovix::ID_LINK_KOVIX, "hyperLinkKovix", wxCLASSINFO(wxHyperlinkCtrl), nullptr,
     "www.kovix.org"},
    {WinKovix::ID_LINK_AUTHOR, "hyperLinkAuthor", wxCLASSINFO(wxHyperlinkCtrl), nullptr,
     "dev.kovix.org"},
    {WinKovix::ID_PREFERENCES, "WxButtonPref", wxCLASSINFO(wxButton), "PREFERENCES", nullptr},
    {WinKovix::ID_LABEL_PHP_VERSION, "WxStaticText3", wxCLASSINFO(wxStaticText), "PHP_VERSION2",
     nullptr},
    {WinKovix::ID_PHP_VERSION, "comboPHPVersion", wxCLASSINFO(wxChoice), nullptr, nullptr},
    {WinKovix::ID_LABEL_PORT, "WxStaticText4", wxCLASSINFO(wxStaticText), "APACHE_PORT2", nullptr},
    {WinKovix::ID_PORT, "wxSpinCtrl", wxCLASSINFO(wxSpinCtrl), nullptr, nullptr},
    {WinKovix::ID_BITMAP_GEAR, "staticBitmap", wxCLASSINFO(wxStaticBitmap), nullptr, nullptr},
    {WinKovix::ID_STATUS_PICTURE, "staticBitmap", wxCLASSINFO(wxStaticBitmap), nullptr, nullptr},
    {WinKovix::ID_PHP_EXT, "btn_PhpExt", wxCLASSINFO(wxButton), "PHP_CONFIG", nullptr},
    {WinKovix::ID_APACHE_CONF, "btn_ApacheConf", wxCLASSINFO(wxButton), "APACHE_CONFIG", nullptr},
    {WinKovix::ID_STATS, "btn_Stat", wxCLASSINFO(wxBitmapButton), nullptr, nullptr},
    {WinKovix::ID_BITMAP_GLOBE, "staticBitmap", wxCLASSINFO(wxStaticBitmap), nullptr, nullptr},
    {WinKovix::ID_EDIT_PHP_FILE, "btn_ConfigPHPFile", wxCLASSINFO(wxBitmapButton), nullptr,
     nullptr},
    {WinKovix::ID_EDIT_APACHE_FILE, "btn_ConfigApacheFile", wxCLASSINFO(wxBitmapButton), nullptr,
     nullptr},
    {WinKovix::ID_ONLINE_MODE, "comboOnlineMode", wxCLASSINFO(wxChoice), nullptr, nullptr},
    {WinKovix::ID_START_SOLO, "btn_StartSolo", wxCLASSINFO(wxBitmapButton), nullptr, nullptr},
    {WinKovix::ID_STOP_SOLO, "btn_StopSolo", wxCLASSINFO(wxBitmapButton), nullptr, nullptr},
    {WinKovix::ID_GROUP_INFORMATION, "groupBox", wxCLASSINFO(wxStaticBox), nullptr, "Information"},
    {WinKovix::ID_LABEL_IP, "WxStaticTextIP", wxCLASSINFO(wxStaticText), "INFO_PUBLICIP", nullptr},
    {WinKovix::ID_LABEL_UPDATE, "WxStaticTextUpdate", wxCLASSINFO(wxStaticText), "INFO_UPDATE",
     nullptr},
    {WinKovix::ID_UPDATE_VALUE, "WxStaticTextUpdateValue", wxCLASSINFO(wxStaticText), "INFO_SEARCH",
     nullptr, false},
    {WinKovix::ID_UPDATE_LINK, "WxStaticTextUpdateValueLink", wxCLASSINFO(wxHyperlinkCtrl), nullptr,
     "aa"},
    {WinKovix::ID_IP_VALUE, "WxStaticTextIPValue", wxCLASSINFO(wxStaticText), "INFO_SEARCH",
     nullptr, false},
};

// Checks every control; after a language change (appliedOnly) the texts set once at build time
// are not checked.
void ExpectEveryControl(WinKovix& window, bool appliedOnly = false) {
    for (const ControlRow& row : controlRows) {
        wxWindow* control = wxWindow::FindWindowById(row.id, &window);
        ASSERT_NE(control, nullptr) << row.name;
        EXPECT_EQ(control->GetName(), row.name) << row.id;
        EXPECT_TRUE(control->IsKindOf(row.kind)) << row.name;
        if ((row.key || row.label) && (row.applied || !appliedOnly)) {
            EXPECT_EQ(control->GetLabel(), row.key ? GetLangText(row.key) : wxString(row.label))
                << row.name;
        }
    }
}

TEST_F(WinKovixTest, StartUpBuildsEveryControlWithEnglishTexts) {
    WinKovix& frame = Open();
    ExpectEveryControl(frame);
    EXPECT_EQ(Label(WinKovix::ID_BTN_START), "Start");
    EXPECT_EQ(Label(WinKovix::ID_LABEL_IP), "Public IP address : ");
    EXPECT_EQ(Label(WinKovix::ID_IP_VALUE), "Search...");
    EXPECT_FALSE(Find(WinKovix::ID_UPDATE_LINK)->IsShown());
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_STOP));
    EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_START));

    EXPECT_EQ(frame.GetTitle(), "Kovix 1.1");
    EXPECT_EQ(frame.GetName(), "frame");
    const long style = frame.GetWindowStyleFlag();
    EXPECT_FALSE(style & (wxRESIZE_BORDER | wxMAXIMIZE_BOX));
    EXPECT_EQ(style & (wxCAPTION | wxSYSTEM_MENU | wxMINIMIZE_BOX | wxCLOSE_BOX),
              wxCAPTION | wxSYSTEM_MENU | wxMINIMIZE_BOX | wxCLOSE_BOX);
    EXPECT_EQ(frame.GetMinSize(), frame.GetMaxSize());
    EXPECT_NE(frame.GetTrayIcon(), nullptr);
    EXPECT_EQ(Control<wxTextCtrl>(WinKovix::ID_CONSOLE)->GetValue(),
              "Welcome To Kovix (Apache PHP MySQL PHPMyAdmin server)\n" + wxString('-', 49) +
                  "\n\n");
    auto* spin = Control<wxSpinCtrl>(WinKovix::ID_PORT);
    EXPECT_EQ(spin->GetMin(), 0);
    EXPECT_EQ(spin->GetMax(), 80000);
    auto* modes = Control<wxChoice>(WinKovix::ID_ONLINE_MODE);
    ASSERT_EQ(modes->GetCount(), 2u);
    EXPECT_EQ(modes->GetString(0), "Offline Mode");
    EXPECT_EQ(modes->GetString(1), "Online Mode");
    EXPECT_EQ(modes->GetSelection(), 0);
}

TEST_F(WinKovixTest, StartUpInFrenchTranslatesTheKeyedLabelsOnly) {
    InitLangTable(settings, "fr");
    Open();
    ExpectEveryControl(*window);
    EXPECT_EQ(Label(WinKovix::ID_BTN_START), wxString::FromUTF8("Démarrer"));
    EXPECT_EQ(Label(WinKovix::ID_GROUP_TOOLS), "Outils");
    EXPECT_EQ(Label(WinKovix::ID_WWW_FOLDER), "www Dossier");
    EXPECT_EQ(Label(WinKovix::ID_LABEL_UPDATE), wxString::FromUTF8("Mise à jour : "));
    EXPECT_EQ(Label(WinKovix::ID_UPDATE_VALUE), "Recherche...");
    EXPECT_EQ(Control<wxTextCtrl>(WinKovix::ID_CONSOLE)->GetValue(),
              "Bienvenue sur Kovix (Apache PHP MySQL PHPMyAdmin serveur)\n" + wxString('-', 49) +
                  "\n\n");
}

TEST_F(WinKovixTest, ApplyTextsFollowsALanguageChangeButLeavesFixedTextsAndChoices) {
    settings.SetOnline(true);
    WinKovix& frame = Open();
    SetLangIndex(1);
    frame.ApplyTexts();
    ExpectEveryControl(frame, true);
    EXPECT_EQ(Label(WinKovix::ID_IP_VALUE), "Search...");
    EXPECT_EQ(Label(WinKovix::ID_PREFERENCES), wxString::FromUTF8("Préférences"));
    EXPECT_EQ(Label(WinKovix::ID_STATUS_MYSQL), wxString::FromUTF8("Récupération status..."));
    EXPECT_EQ(Control<wxChoice>(WinKovix::ID_ONLINE_MODE)->GetStringSelection(), "Online Mode");
}

TEST_F(WinKovixTest, StoredPhpVersionIsSelectedAndAppliedWithoutARestart) {
    settings.SetPhpVersion("php_8.2");
    Open();
    auto* versions = Control<wxChoice>(WinKovix::ID_PHP_VERSION);
    ASSERT_EQ(versions->GetCount(), 2u);
    EXPECT_EQ(versions->GetString(0), "php_7.4");
    EXPECT_EQ(versions->GetStringSelection(), "php_8.2");
    EXPECT_EQ(settings.GetPhpVersion(), "php_8.2");
    EXPECT_EQ(window->GetRestartState(), WinKovix::RESTART_IDLE);
}

TEST_F(WinKovixTest, MissingOrUnknownPhpVersionFallsBackToTheFirstInstalled) {
    for (const char* stored : {"", "php_9.9", "PHP_8.2"}) {
        settings.SetPhpVersion(stored);
        Open();
        EXPECT_EQ(Control<wxChoice>(WinKovix::ID_PHP_VERSION)->GetSelection(), 0) << stored;
        EXPECT_EQ(settings.GetPhpVersion(), "php_7.4") << stored;
        EXPECT_EQ(window->GetRestartState(), WinKovix::RESTART_IDLE);
        DestroyWindow();
    }
}

TEST_F(WinKovixTest, UserChoicesMarkARestartThatAStoppedTickDropsWithoutStarting) {
    WinKovix& frame = Open();
    Choose(WinKovix::ID_PHP_VERSION, 1);
    EXPECT_EQ(settings.GetPhpVersion(), "php_8.2");
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_PENDING);
    frame.StatusTick();
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_IDLE);

    Choose(WinKovix::ID_ONLINE_MODE, 1);
    EXPECT_TRUE(settings.IsOnline());
    EXPECT_EQ(settings.GetString(AppSettings::APACHE_MODE), "1");
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_PENDING);
    frame.StatusTick();
    frame.StatusTick();
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_IDLE);
    EXPECT_TRUE(ProcessLookup::Find("httpd").empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld").empty());
}

TEST_F(WinKovixTest, LaunchStartsTheServersOnlyWhenAskedAndNothingRuns) {
    settings.SetBool(AppSettings::START_ON_START, true);
    {
        FakeServer httpd(tree.Root(), "apache/bin/httpd");
        EXPECT_NO_DIALOG(Open());
        EXPECT_FALSE(wxFileExists(tree.File("apache/conf/httpd.conf")));
        EXPECT_FALSE(wxFileExists(tree.File("mysql/my.ini")));
        DestroyWindow();
    }
    EXPECT_NO_DIALOG(Open());
    EXPECT_TRUE(wxFileExists(tree.File("apache/conf/httpd.conf")));
    EXPECT_TRUE(wxFileExists(tree.File("mysql/my.ini")));
}

TEST_F(WinKovixTest, PreferencesLanguageShowsAtOnceInTheWindow) {
    WinKovix& frame = Open();
    WhenModal([] {
        WinPrefs* prefs = nullptr;
        for (wxWindow* top : wxTopLevelWindows)
            prefs = prefs ? prefs : dynamic_cast<WinPrefs*>(top);
        ASSERT_NE(prefs, nullptr);
        auto* languages =
            wxDynamicCast(wxWindow::FindWindowById(WinPrefs::ID_LANG, prefs), wxComboBox);
        languages->SetSelection(1);
        wxCommandEvent choice(wxEVT_COMBOBOX, WinPrefs::ID_LANG);
        choice.SetEventObject(languages);
        languages->GetEventHandler()->ProcessEvent(choice);
        ClickButton(prefs, WinPrefs::ID_CANCEL);
    });
    ClickButton(&frame, WinKovix::ID_PREFERENCES);
    EXPECT_EQ(Label(WinKovix::ID_BTN_START), wxString::FromUTF8("Démarrer"));
    EXPECT_EQ(Label(WinKovix::ID_WWW_FOLDER), "www Dossier");
    EXPECT_EQ(frame.GetStatsWindow()->FindWindow(WinStats::ID_BTN_OK)->GetLabel(), "Fermer");

    EXPECT_FALSE(frame.GetStatsWindow()->IsShown());
    ClickButton(&frame, WinKovix::ID_STATS);
    EXPECT_TRUE(frame.GetStatsWindow()->IsShown());
}

TEST_F(WinKovixTest, PortSpinShowsTheStoredPortAndStoresEveryChange) {
    settings.SetPortText("abc");
    Open();
    auto* spin = Control<wxSpinCtrl>(WinKovix::ID_PORT);
    EXPECT_EQ(spin->GetValue(), 80);
    EXPECT_EQ(settings.GetPortText(), "80");
    spin->SetValue(8081);
    wxSpinEvent event(wxEVT_SPINCTRL, WinKovix::ID_PORT);
    event.SetEventObject(spin);
    event.SetPosition(8081);
    spin->GetEventHandler()->ProcessEvent(event);
    EXPECT_EQ(settings.GetPortText(), "8081");
    EXPECT_EQ(window->GetRestartState(), WinKovix::RESTART_IDLE);
}

TEST_F(WinKovixTest, StartWithThePortTakenShowsThePortMessageAndStartsNothing) {
    wxIPV4address address;
    address.Hostname("127.0.0.1");
    address.Service(0);
    wxSocketServer holder(address, wxSOCKET_REUSEADDR);
    ASSERT_TRUE(holder.IsOk());
    wxIPV4address bound;
    holder.GetLocal(bound);
    settings.SetPortText(wxString::Format("%d", bound.Service()));
    WinKovix& frame = Open();

    wxString message, caption;
    wxTEST_DIALOG(ClickButton(&frame, WinKovix::ID_BTN_START), ExpectMessage(message, caption));
    EXPECT_EQ(message,
              "The apache port " + settings.GetPortText() + " is already used by another program");
    EXPECT_EQ(caption, "Kovix");
    EXPECT_TRUE(Control<wxTextCtrl>(WinKovix::ID_CONSOLE)
                    ->GetValue()
                    .Contains("Port " + settings.GetPortText() + " is held by"));
    EXPECT_FALSE(frame.IsBusy());
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_TRUE(WaitFor([&] { return IsEnabled(WinKovix::ID_BTN_START); }));
    EXPECT_TRUE(ProcessLookup::Find("httpd").empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld").empty());
    EXPECT_FALSE(wxFileExists(tree.File("apache/conf/httpd.conf")));
}

TEST_F(WinKovixTest, StatusTickFollowsTheServersAndFeedsTheChartOnlyWhileOneRuns) {
    WinKovix& frame = Open();
    ASSERT_TRUE(WaitForApacheState("Stopped"));
    EXPECT_EQ(Label(WinKovix::ID_STATUS_MYSQL), "Stopped");
    const std::vector<ChartSeries> idle = frame.CpuSeries();
    frame.StatusTick();
    EXPECT_EQ(frame.CpuSeries()[0].samples, idle[0].samples);

    {
        FakeServer busyApache(tree.Root(), "apache/bin/httpd", "/bin/sh",
                              "-c \"while :; do :; done\"");
        ASSERT_TRUE(WaitFor([&] { return frame.CpuSeries()[0].Newest() > 0; }));
        EXPECT_TRUE(Label(WinKovix::ID_STATUS_APACHE).StartsWith("Running - CPU: "));
        EXPECT_TRUE(Label(WinKovix::ID_STATUS_APACHE).EndsWith("%"));
        EXPECT_EQ(Label(WinKovix::ID_STATUS_MYSQL), "Stopped");
        EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_START));
        EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_STOP));
        const std::vector<ChartSeries>& series = frame.CpuSeries();
        EXPECT_EQ(series[1].Newest(), 0);
        EXPECT_EQ(series[2].Newest(), series[0].Newest() + series[1].Newest());
        long shown = 0;
        Label(WinKovix::ID_STATUS_APACHE).AfterLast(' ').BeforeLast('%').ToLong(&shown);
        EXPECT_EQ(shown, series[0].Newest());
    }
    ASSERT_TRUE(WaitForApacheState("Stopped"));
    EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_STOP));
    const std::vector<ChartSeries> stopped = frame.CpuSeries();
    frame.StatusTick();
    frame.StatusTick();
    for (size_t i = 0; i < stopped.size(); ++i)
        EXPECT_EQ(frame.CpuSeries()[i].samples, stopped[i].samples);
}

TEST_F(WinKovixTest, StartAndStopMenusOfferWhatCanBeDone) {
    WinKovix& frame = Open();
    FakeServer mysqld(tree.Root(), "mysql/bin/mysqld");
    std::unique_ptr<wxMenu> start(frame.BuildStartMenu());
    ASSERT_EQ(start->GetMenuItemCount(), 2u);
    EXPECT_EQ(start->FindItemByPosition(0)->GetId(), WinKovix::ID_MENU_START_APACHE);
    EXPECT_EQ(start->FindItemByPosition(0)->GetItemLabelText(), "Start Apache");
    EXPECT_TRUE(start->FindItemByPosition(0)->IsEnabled());
    EXPECT_EQ(start->FindItemByPosition(1)->GetId(), WinKovix::ID_MENU_START_MYSQL);
    EXPECT_FALSE(start->FindItemByPosition(1)->IsEnabled());

    std::unique_ptr<wxMenu> stop(frame.BuildStopMenu());
    ASSERT_EQ(stop->GetMenuItemCount(), 2u);
    EXPECT_EQ(stop->FindItemByPosition(0)->GetItemLabelText(), "Stop Apache");
    EXPECT_FALSE(stop->FindItemByPosition(0)->IsEnabled());
    EXPECT_EQ(stop->FindItemByPosition(1)->GetId(), WinKovix::ID_MENU_STOP_MYSQL);
    EXPECT_TRUE(stop->FindItemByPosition(1)->IsEnabled());

    // Menu 1036 "Stop Apache" with Apache stopped does nothing; 1037 is told from the Start
    // button by its event kind.
    ChooseMenu(&frame, WinKovix::ID_MENU_STOP_APACHE);
    EXPECT_TRUE(mysqld.IsActive());
    EXPECT_NO_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_START_MYSQL));
    EXPECT_EQ(ProcessLookup::Find("mysqld"), std::vector<long>{mysqld.Pid()});
}

// A program that appends "<its path> <its arguments>" to log, one line per run.
void WriteRecorder(const wxString& path, const wxString& log) {
    WriteBytes(path, ("#!/bin/sh\necho \"$0 $*\" >> '" + log + "'\n").utf8_string());
    wxChmod(path, 0755);
}

wxArrayString Lines(const wxString& path) {
    return wxStringTokenize(wxString::FromUTF8(ReadBytes(path)), "\n", wxTOKEN_STRTOK);
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

    const struct {
        std::function<void()> action;
        wxString call;
    } cases[] = {
        {[&] { ClickButton(&frame, WinKovix::ID_WWW_SITE); }, xdgOpen + site},
        {[&] { ClickButton(&frame, WinKovix::ID_WWW_FOLDER); }, xdgOpen + tree.File("www")},
        {[&] { ClickButton(&frame, WinKovix::ID_PHPMYADMIN); }, xdgOpen + site + "mysql/"},
        {[&] { ClickButton(&frame, WinKovix::ID_PHPINFO); }, xdgOpen + site + "kovix/phpinfo.php"},
        {[&] { ClickButton(&frame, WinKovix::ID_SQLITE); }, tree.File("utils/SQLiteBrowser") + " "},
        {[&] { ChooseMenu(&frame, WinKovix::ID_MENU_LOG_APACHE_ACCESS); },
         editor + tree.File("apache/logs/access.log")},
        {[&] { ChooseMenu(&frame, WinKovix::ID_MENU_LOG_APACHE_ERROR); },
         editor + tree.File("apache/logs/error.log")},
        {[&] { ChooseMenu(&frame, WinKovix::ID_MENU_LOG_MYSQL_MAINFILE); },
         editor + tree.File("mysql/data/mysql.err")},
        {[&] { ClickButton(&frame, WinKovix::ID_EDIT_PHP_FILE); },
         editor + tree.File("apache/php_8.2/php_source.ini")},
        {[&] { ClickButton(&frame, WinKovix::ID_EDIT_APACHE_FILE); },
         editor + tree.File("apache/conf/httpd_source.conf")},
        {[&] {
             wxHyperlinkEvent click(Find(WinKovix::ID_LINK_AUTHOR), WinKovix::ID_LINK_AUTHOR,
                                    WinKovix::AUTHOR_SITE);
             frame.GetEventHandler()->ProcessEvent(click);
         },
         xdgOpen + WinKovix::AUTHOR_SITE},
    };
    size_t count = 0;
    for (const auto& item : cases) {
        item.action();
        ++count;
        ASSERT_TRUE(WaitFor([&] { return Lines(calls).size() == count; })) << item.call;
        EXPECT_EQ(Lines(calls).Last(), item.call);
    }
}

TEST_F(WinKovixTest, LogsMenuEnablesTheShowEntriesOfExistingFiles) {
    WinKovix& frame = Open();
    std::unique_ptr<wxMenu> menu(frame.BuildLogsMenu());
    const int ids[] = {WinKovix::ID_MENU_LOG_APACHE_ACCESS,
                       WinKovix::ID_MENU_LOG_APACHE_ERROR,
                       WinKovix::ID_MENU_LOG_APACHE_DELETE,
                       wxID_SEPARATOR,
                       WinKovix::ID_MENU_LOG_MYSQL_MAINFILE,
                       WinKovix::ID_MENU_LOG_MYSQL_DELETE,
                       wxID_SEPARATOR,
                       WinKovix::ID_MENU_LOG_SESSION_DELETE,
                       wxID_SEPARATOR,
                       WinKovix::ID_MENU_LOG_ALL_DELETE};
    ASSERT_EQ(menu->GetMenuItemCount(), std::size(ids));
    for (size_t i = 0; i < std::size(ids); ++i) {
        wxMenuItem* item = menu->FindItemByPosition(i);
        if (ids[i] == wxID_SEPARATOR) {
            EXPECT_TRUE(item->IsSeparator()) << i;
            continue;
        }
        EXPECT_EQ(item->GetId(), ids[i]) << i;
        EXPECT_TRUE(item->IsEnabled()) << i;
    }
    EXPECT_EQ(menu->FindItemByPosition(0)->GetItemLabelText(), "Show Apache access log");
    EXPECT_EQ(menu->FindItemByPosition(9)->GetItemLabelText(),
              "Remove Apache, MySQL logs and PHP sessions files");

    wxRemoveFile(tree.File("apache/logs/access.log"));
    wxRemoveFile(tree.File("mysql/data/mysql.err"));
    menu.reset(frame.BuildLogsMenu());
    EXPECT_FALSE(menu->FindItem(WinKovix::ID_MENU_LOG_APACHE_ACCESS)->IsEnabled());
    EXPECT_TRUE(menu->FindItem(WinKovix::ID_MENU_LOG_APACHE_ERROR)->IsEnabled());
    EXPECT_FALSE(menu->FindItem(WinKovix::ID_MENU_LOG_MYSQL_MAINFILE)->IsEnabled());
    EXPECT_TRUE(menu->FindItem(WinKovix::ID_MENU_LOG_ALL_DELETE)->IsEnabled());
}

TEST_F(WinKovixTest, LogRemovalsAreRefusedWhileTheirServerRuns) {
    WinKovix& frame = Open();
    wxString message, caption;
    {
        FakeServer httpd(tree.Root(), "apache/bin/httpd");
        wxTEST_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_LOG_APACHE_DELETE),
                      ExpectMessage(message, caption));
        EXPECT_EQ(message, "You must stop Apache server before supress log file");
        EXPECT_EQ(caption, "Kovix");
        EXPECT_TRUE(wxFileExists(tree.File("apache/logs/access.log")));
        wxTEST_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_LOG_ALL_DELETE),
                      ExpectMessage(message, caption));
        EXPECT_EQ(message, "You must stop Apache and MySQL server before supress log file");
        EXPECT_TRUE(wxFileExists(tree.File("apache/sessions/sess_1")));
        EXPECT_TRUE(wxFileExists(tree.File("mysql/data/mysql.err")));

        EXPECT_NO_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_LOG_SESSION_DELETE));
        EXPECT_FALSE(wxFileExists(tree.File("apache/sessions/sess_1")));
    }
    {
        FakeServer mysqld(tree.Root(), "mysql/bin/mysqld");
        wxTEST_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_LOG_MYSQL_DELETE),
                      ExpectMessage(message, caption));
        EXPECT_EQ(message, "You must stop MySQL server before supress log file");
        EXPECT_TRUE(wxFileExists(tree.File("mysql/data/mysql.err")));
        EXPECT_NO_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_LOG_APACHE_DELETE));
        EXPECT_FALSE(wxFileExists(tree.File("apache/logs/access.log")));
        EXPECT_FALSE(wxFileExists(tree.File("apache/logs/error.log")));
    }
    EXPECT_NO_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_LOG_ALL_DELETE));
    EXPECT_FALSE(wxFileExists(tree.File("mysql/data/mysql.err")));
}

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
    EXPECT_TRUE(WaitFor([&] { return !this->window; }));
    EXPECT_TRUE(httpd.IsActive());
}

TEST_F(WinKovixTest, CloseWithYesStopsTheServersFirst) {
    WinKovix& frame = Open();
    FakeServer httpd(tree.Root(), "apache/bin/httpd");
    wxString message, caption;
    wxTEST_DIALOG(frame.Close(), ExpectMessage(message, caption, wxID_YES));
    EXPECT_TRUE(WaitFor([&] { return !this->window; }));
    EXPECT_TRUE(WaitFor([&] { return !httpd.IsActive(); }));
}

TEST_F(WinKovixTest, CloseWithNothingRunningAsksNothing) {
    WinKovix& frame = Open();
    EXPECT_NO_DIALOG(frame.Close());
    EXPECT_TRUE(WaitFor([&] { return !this->window; }));
}

TEST_F(WinKovixTest, MinimisingWithoutATrayKeepsTheWindowShown) {
    if (WinTaskBarIcon::IsAvailable())
        GTEST_SKIP() << "a tray host is running";
    WinKovix& frame = Open();
    frame.Show();
    wxIconizeEvent minimised(frame.GetId(), true);
    frame.GetEventHandler()->ProcessEvent(minimised);
    EXPECT_TRUE(frame.IsShown());
}

} // namespace
