// Screenshots for the documentation, taken against a real tree and written to the folder that
// KOVIX_SCREENSHOTS_DIR names (scripts/screenshots.sh sets it; without it the tests do nothing):
// the main window stopped and running, the statistics and the preferences in English and French,
// both pages of the Apache and PHP configuration dialogs and the sites in English.
#include "gui/GuiFixtures.h"
#include "gui/ScreenCapture.h"
#include "gui/WinPrefs.h"
#include "gui/WinStats.h"
#include "gui/apache/WinApacheConf.h"
#include "gui/php/WinPHPExt.h"
#include "gui/sites/WinSites.h"
#include "platform/Platform.h"
#include "support/TempDir.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/listctrl.h>
#include <wx/notebook.h>

namespace {

wxString ShotsFolder() {
    wxString folder;
    wxGetEnv("KOVIX_SCREENSHOTS_DIR", &folder);
    return folder;
}

// Shows page of a dialog's notebook first when page is given.
void Shoot(wxWindow& window, const wxString& name, int page = -1) {
    if (page >= 0)
        Named<wxNotebook>(&window, "notebook")->SetSelection(page);
    window.Raise();
    ASSERT_TRUE(WaitForPaint(window));
    const wxImage shot = CaptureScreen(window.GetScreenRect());
    ASSERT_TRUE(shot.IsOk()) << "ImageMagick's import is needed";
    const wxString file = wxFileName(ShotsFolder(), name + ".png").GetFullPath();
    ASSERT_TRUE(shot.SaveFile(file, wxBITMAP_TYPE_PNG));
}

class ScreenshotTest : public MainWindowTest<RealTree> {
protected:
    void SetUp() override {
        if (ShotsFolder().empty())
            GTEST_SKIP() << "KOVIX_SCREENSHOTS_DIR is not set";
        ipService.Serve("/", "203.0.113.7\n");
        productSite.Serve(HostNameLookupThread::VERSION_PATH, "version = \"1.1\"");
    }

    void OpenIn(const char* language) {
        settings.SetString(AppSettings::CURRENT_LANG, language);
        InitLangTable(settings, language);
        Open(ipService, productSite).Show();
        ASSERT_TRUE(WaitFor([&] { return Label(WinKovix::ID_IP_VALUE) == "203.0.113.7"; }));
    }

    // After 25 s of page requests and a few quiet ticks, so that the chart shows the load falling
    // off at its right edge: the main window, the statistics and the preferences of a new user.
    void ShootRunning(const wxString& language) {
        ChildSpec load;
        load.commandLine =
            wxString::Format("/bin/sh -c \"while :; do curl -s -o /dev/null http://127.0.0.1:%d/; "
                             "curl -s -o /dev/null http://127.0.0.1:%d/kovix/phpinfo.php; done\"",
                             tree.ApachePort(), tree.ApachePort());
        if (const std::unique_ptr<ChildProcess> requests = Platform::Get().StartHidden(load)) {
            WaitFor([] { return false; }, 25000);
            Platform::Get().KillProcess(requests->Pid());
        }
        WaitFor([] { return false; }, 3000);
        Shoot(*window, "main-" + language + "-running");

        window->GetStatsWindow()->Show();
        Shoot(*window->GetStatsWindow(), "stats-" + language);
        window->GetStatsWindow()->Hide();

        settings.SetBool(AppSettings::START_ON_START, true);
        TempDir scratch("kovix-shots");
        auto* prefs = new WinPrefs(window, settings, scratch.File("kovix.ini"));
        prefs->Show();
        Shoot(*prefs, "prefs-" + language);
        prefs->Destroy();
        settings.SetBool(AppSettings::START_ON_START, false);
    }

    LocalHttpServer ipService;
    LocalHttpServer productSite;
};

using ConfigDialogScreenshotTest = ConfigDialogTest<WinApacheConf>;

const char* const SAMPLE_HOSTS = "\n<VirtualHost *:80>\n"
                                 "\tDocumentRoot \"{DOCUMENTPATH}/shop\"\n"
                                 "\tServerName \"shop.local\"\n"
                                 "\tServerAlias \"www.shop.local\"\n"
                                 "\tAlias \"/media\" \"{DOCUMENTPATH}/shop-media\"\n"
                                 "\t<Directory \"{DOCUMENTPATH}/shop\">\n"
                                 "\t\tAllowOverride All\n"
                                 "\t\tOptions FollowSymLinks Indexes \n"
                                 "\t</Directory>\n"
                                 "</VirtualHost>\n"
                                 "<VirtualHost 127.0.0.1:80>\n"
                                 "\tServerName \"blog.local\"\n"
                                 "</VirtualHost>\n";

} // namespace

// One server session for both languages: the French window starts the servers and is closed
// with them running, the English one finds them running and stops them.
TEST_F(ScreenshotTest, MainStatisticsAndPreferencesInEnglishAndFrench) {
    OpenIn("en");
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped", 30000));
    Shoot(*window, "main-en-stopped");
    Close();

    OpenIn("fr");
    ASSERT_TRUE(WaitForStates(wxString::FromUTF8("Arrêté"), wxString::FromUTF8("Arrêté"), 30000));
    Shoot(*window, "main-fr-stopped");
    window->StartBoth();
    ASSERT_TRUE(WaitForStates(wxString::FromUTF8("Démarré"), wxString::FromUTF8("Démarré"), 30000));
    ShootRunning("fr");
    Close();

    OpenIn("en");
    ASSERT_TRUE(WaitForStates("Running", "Running", 30000));
    ShootRunning("en");
    window->StopBoth();
    EXPECT_TRUE(WaitForStates("Stopped", "Stopped", 30000));
}

TEST_F(ConfigDialogScreenshotTest, ApacheAndPhpDialogs) {
    if (ShotsFolder().empty())
        GTEST_SKIP() << "KOVIX_SCREENSHOTS_DIR is not set";
    WriteBytes(paths.ApacheSourceConfig(), ReadBytes(paths.ApacheSourceConfig()) + SAMPLE_HOSTS);
    WinApacheConf apache(nullptr, paths);
    WinPHPExt php(nullptr, paths);
    apache.Show();
    php.Show();
    ASSERT_TRUE(WaitFor([&] { return !apache.IsBusy() && !php.IsBusy(); }));
    Choose(Control(&apache, WinApacheConf::ID_HOSTS), 0);
    Shoot(apache, "apache-hosts-en", 0);
    Choose(Control(&apache, WinApacheConf::ID_MODULES), "rewrite_module");
    Shoot(apache, "apache-modules-en", 1);
    apache.Hide();
    Choose(Control(&php, WinPHPExt::ID_EXTENSIONS), "curl");
    Shoot(php, "php-extensions-en", 0);
    Choose(Control(&php, WinPHPExt::ID_SETTINGS), "Display errors");
    Shoot(php, "php-settings-en", 1);
}

TEST_F(ConfigDialogScreenshotTest, SitesDialog) {
    if (ShotsFolder().empty())
        GTEST_SKIP() << "KOVIX_SCREENSHOTS_DIR is not set";
    for (const char* folder : {"My Project", "shop", "blog", "Notes 2024", "~old~"})
        wxMkdir(paths.WwwFolder() + "/" + folder);
    settings.SetPort(8080);
    settings.SetString(AppSettings::HTTPS_PORT, "8443");
    settings.SetBool(AppSettings::HTTPS_ENABLED, true);
    WinSites sites(nullptr, settings, paths);
    sites.Show();
    auto* list = Named<wxListCtrl>(&sites, "list_Sites");
    list->SetItemState(1, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);
    Shoot(sites, "sites-en");
}
