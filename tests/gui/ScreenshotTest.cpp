// Screenshots for the documentation, taken of the real panel against a real tree with running
// servers: the main window stopped and running, the statistics window and the preferences dialog,
// in English and in French. Runs only when KOVIX_SCREENSHOTS_DIR names the folder to write to
// (scripts/screenshots.sh sets it); otherwise it does nothing.
#include "app/AppSettings.h"
#include "gui/GuiWait.h"
#include "gui/ScreenCapture.h"
#include "gui/WinKovix.h"
#include "gui/WinPrefs.h"
#include "gui/WinStats.h"
#include "lang/LangTable.h"
#include "net/HostNameLookupThread.h"
#include "platform/Platform.h"
#include "support/LocalHttpServer.h"
#include "support/ScopedEnv.h"
#include "support/TempDir.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/filename.h>
#include <wx/stattext.h>
#include <wx/weakref.h>

#include <memory>

namespace {

const int SERVER_WAIT_MS = 30000;
// Ticks of page load before the running shots, so that the chart has something to show.
const int LOAD_MS = 25000;

wxString ShotsFolder() {
    wxString folder;
    return wxGetEnv("KOVIX_SCREENSHOTS_DIR", &folder) ? folder : wxString();
}

// Asks Apache for pages without pause (the welcome page, which also talks to MySQL, and
// phpinfo), like a developer reloading a site, until destroyed.
class PageLoad {
public:
    explicit PageLoad(int port) {
        ChildSpec launch;
        launch.commandLine =
            wxString::Format("/bin/sh -c \"while :; do curl -s -o /dev/null http://127.0.0.1:%d/; "
                             "curl -s -o /dev/null http://127.0.0.1:%d/kovix/phpinfo.php; done\"",
                             port, port);
        child = Platform::Get().StartHidden(launch);
    }
    ~PageLoad() {
        if (child)
            Platform::Get().KillProcess(child->Pid());
    }

private:
    std::unique_ptr<ChildProcess> child;
};

class ScreenshotTest : public testing::Test {
protected:
    void SetUp() override {
        folder = ShotsFolder();
        if (folder.empty())
            GTEST_SKIP() << "KOVIX_SCREENSHOTS_DIR is not set";
        tree = std::make_unique<TestTree>(KOVIX_SOURCE_DIR);
        settings.Load(tree->File("kovix.ini"));
        settings.SetBool(AppSettings::START_ON_START, false);
        // The information box answered by local stand-ins: no request leaves the machine.
        ipService.Serve("/", "203.0.113.7\n");
        productSite.Serve(HostNameLookupThread::VERSION_PATH, "version = \"1.1\"");
    }
    void TearDown() override {
        Close();
        tree.reset();
    }

    void Open(const char* language) {
        settings.SetString(AppSettings::CURRENT_LANG, language);
        InitLangTable(settings, language);
        ScopedEnv ip(HostNameLookupThread::IP_SERVICE_VARIABLE, ipService.HostAndPort());
        ScopedEnv site(HostNameLookupThread::PRODUCT_SITE_VARIABLE, productSite.HostAndPort());
        window = new WinKovix(tree->Root(), settings);
        window->Show();
        ASSERT_TRUE(WaitFor([&] { return Label(WinKovix::ID_IP_VALUE) == "203.0.113.7"; }));
    }
    void Close() {
        if (!window)
            return;
        window->Destroy();
        EXPECT_TRUE(WaitFor([&] { return !window; }));
    }

    wxString Label(int id) { return wxWindow::FindWindowById(id, window.get())->GetLabel(); }
    bool WaitForStates(const wxString& apache, const wxString& mysql) {
        return WaitFor(
            [&] {
                return Label(WinKovix::ID_STATUS_APACHE).StartsWith(apache) &&
                       Label(WinKovix::ID_STATUS_MYSQL).StartsWith(mysql);
            },
            SERVER_WAIT_MS);
    }

    void Shoot(wxWindow& shown, const wxString& name) {
        shown.Raise();
        ASSERT_TRUE(WaitForPaint(shown));
        const wxImage shot = CaptureWindow(shown);
        ASSERT_TRUE(shot.IsOk()) << "ImageMagick's import is needed";
        ASSERT_TRUE(
            shot.SaveFile(wxFileName(folder, name + ".png").GetFullPath(), wxBITMAP_TYPE_PNG));
    }

    // The running shots after LOAD_MS of page load: main window, statistics, preferences.
    void ShootRunning(const wxString& language) {
        {
            PageLoad load(tree->ApachePort());
            WaitFor([] { return false; }, LOAD_MS);
        }
        // A few quiet ticks show the load falling off at the right edge of the chart.
        WaitFor([] { return false; }, 3000);
        Shoot(*window, "main-" + language + "-running");

        WinStats& stats = *window->GetStatsWindow();
        stats.Show();
        Shoot(stats, "stats-" + language);
        stats.Hide();

        // The preferences as a new user sees them.
        settings.SetBool(AppSettings::START_ON_START, true);
        TempDir scratch("kovix-shots");
        auto* prefs = new WinPrefs(window, settings, scratch.File("kovix.ini"));
        prefs->Show();
        Shoot(*prefs, "prefs-" + language);
        prefs->Destroy();
        settings.SetBool(AppSettings::START_ON_START, false);
    }

    wxString folder;
    std::unique_ptr<TestTree> tree;
    AppSettings settings;
    LocalHttpServer ipService;
    LocalHttpServer productSite;
    wxWeakRef<WinKovix> window;
};

} // namespace

// One server session for both languages: the French window starts the servers and is closed
// with them running, the English one finds them running and stops them.
TEST_F(ScreenshotTest, MainStatisticsAndPreferencesInEnglishAndFrench) {
    Open("en");
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped"));
    Shoot(*window, "main-en-stopped");
    Close();

    Open("fr");
    ASSERT_TRUE(WaitForStates(wxString::FromUTF8("Arrêté"), wxString::FromUTF8("Arrêté")));
    Shoot(*window, "main-fr-stopped");
    window->StartBoth();
    ASSERT_TRUE(WaitForStates(wxString::FromUTF8("Démarré"), wxString::FromUTF8("Démarré")));
    ShootRunning("fr");
    Close();

    Open("en");
    ASSERT_TRUE(WaitForStates("Running", "Running"));
    ShootRunning("en");
    window->StopBoth();
    EXPECT_TRUE(WaitForStates("Stopped", "Stopped"));
}
