// The main window driving the real Apache and MariaDB of a temporary tree: start and stop, the
// restart after a PHP version or template change, and the servers' own output in the console.
// The tree's destructor stops whatever a failing test leaves running.
#include "app/AppSettings.h"
#include "core/ProcessLookup.h"
#include "core/TextFiles.h"
#include "gui/GuiDialogs.h"
#include "gui/GuiWait.h"
#include "gui/WinKovix.h"
#include "lang/LangTable.h"
#include "support/CommandRunner.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/choice.h>
#include <wx/datetime.h>
#include <wx/filename.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

#include <algorithm>
#include <memory>

namespace {

const int SERVER_WAIT_MS = 30000;

class WinKovixServersTest : public testing::Test {
protected:
    void SetUp() override {
        tree = std::make_unique<TestTree>(KOVIX_SOURCE_DIR);
        settings.Load(tree->File("kovix.ini"));
        settings.SetBool(AppSettings::START_ON_START, false);
        InitLangTable(settings, "en");
    }
    void TearDown() override {
        if (window) {
            window->Destroy();
            EXPECT_TRUE(WaitFor([&] { return !window; }));
        }
        tree.reset();
    }

    WinKovix& Open() {
        window = new WinKovix(tree->Root(), settings);
        return *window;
    }
    wxString Label(int id) { return wxWindow::FindWindowById(id, window.get())->GetLabel(); }
    bool IsEnabled(int id) { return wxWindow::FindWindowById(id, window.get())->IsEnabled(); }
    wxString Console() {
        return wxDynamicCast(wxWindow::FindWindowById(WinKovix::ID_CONSOLE, window.get()),
                             wxTextCtrl)
            ->GetValue();
    }
    bool WaitForStates(const wxString& apache, const wxString& mysql, int timeoutMs = 5000) {
        return WaitFor(
            [&] {
                return Label(WinKovix::ID_STATUS_APACHE).StartsWith(apache) &&
                       Label(WinKovix::ID_STATUS_MYSQL).StartsWith(mysql);
            },
            timeoutMs);
    }
    // The oldest process of the name: the server's master.
    static long MasterPid(const wxString& name) {
        const std::vector<long> pids = ProcessLookup::Find(name);
        return pids.empty() ? 0 : *std::min_element(pids.begin(), pids.end());
    }
    bool WaitForRestart(long apachePid, long mysqlPid) {
        return WaitFor(
            [&] {
                const long apache = MasterPid("httpd");
                const long mysql = MasterPid("mysqld");
                return window->GetRestartState() == WinKovix::RESTART_IDLE && apache != 0 &&
                       apache != apachePid && mysql != 0 && mysql != mysqlPid;
            },
            SERVER_WAIT_MS);
    }
    void ChoosePhpVersion(const wxString& version) {
        auto* choice = wxDynamicCast(
            wxWindow::FindWindowById(WinKovix::ID_PHP_VERSION, window.get()), wxChoice);
        choice->SetStringSelection(version);
        wxCommandEvent event(wxEVT_CHOICE, WinKovix::ID_PHP_VERSION);
        event.SetEventObject(choice);
        choice->GetEventHandler()->ProcessEvent(event);
    }
    // A second PHP version beside the shipped one: a copy of its folder.
    void AddPhpVersion(const wxString& version) {
        const wxString first = settings.GetPhpVersion();
        ASSERT_EQ(
            RunCommand({"cp", "-a", tree->File("apache/" + first), tree->File("apache/" + version)})
                .exitCode,
            0);
    }
    void TouchApacheTemplate() {
        wxFileName file(tree->File("apache/conf/httpd_source.conf"));
        const wxDateTime later = wxDateTime::Now() + wxTimeSpan::Seconds(5);
        ASSERT_TRUE(file.SetTimes(&later, &later, nullptr));
    }
    wxString PageStatus(const wxString& url) {
        return RunCommand({"curl", "-s", "-o", "/dev/null", "-w", "%{http_code}", url}).out;
    }

    std::unique_ptr<TestTree> tree;
    AppSettings settings;
    wxWeakRef<WinKovix> window;
};

TEST_F(WinKovixServersTest, StartAndStopDriveTheRealServersAndTheWindowFollows) {
    WinKovix& frame = Open();
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped"));

    EXPECT_NO_DIALOG(ClickButton(&frame, WinKovix::ID_BTN_START));
    ASSERT_TRUE(WaitForStates("Running - CPU: ", "Running - CPU: "));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_STOP));
    EXPECT_TRUE(
        WaitFor([&] { return PageStatus(frame.Paths().PhpInfoUrl()) == "200"; }, SERVER_WAIT_MS));

    ClickButton(&frame, WinKovix::ID_BTN_STOP);
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped", SERVER_WAIT_MS));
    EXPECT_TRUE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_STOP));
    EXPECT_TRUE(ProcessLookup::Find("httpd").empty());
    EXPECT_TRUE(ProcessLookup::Find("mysqld").empty());
}

TEST_F(WinKovixServersTest, OneServerAtATimeFromThePopUpMenus) {
    WinKovix& frame = Open();
    ChooseMenu(&frame, WinKovix::ID_MENU_START_MYSQL);
    ASSERT_TRUE(WaitForStates("Stopped", "Running"));
    EXPECT_FALSE(IsEnabled(WinKovix::ID_BTN_START));
    EXPECT_TRUE(ProcessLookup::Find("httpd").empty());

    EXPECT_NO_DIALOG(ChooseMenu(&frame, WinKovix::ID_MENU_START_APACHE));
    ASSERT_TRUE(WaitForStates("Running", "Running"));
    ChooseMenu(&frame, WinKovix::ID_MENU_STOP_APACHE);
    ASSERT_TRUE(WaitForStates("Stopped", "Running"));
    ChooseMenu(&frame, WinKovix::ID_MENU_STOP_MYSQL);
    ASSERT_TRUE(WaitForStates("Stopped", "Stopped", SERVER_WAIT_MS));
}

TEST_F(WinKovixServersTest, PhpVersionChangeRestartsRunningServersWithTheNewVersion) {
    AddPhpVersion("php_9.0");
    WinKovix& frame = Open();
    frame.StartBoth();
    ASSERT_TRUE(WaitForStates("Running", "Running"));
    const long apachePid = MasterPid("httpd");
    const long mysqlPid = MasterPid("mysqld");

    ChoosePhpVersion("php_9.0");
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_PENDING);
    ASSERT_TRUE(WaitForRestart(apachePid, mysqlPid));
    EXPECT_EQ(settings.GetPhpVersion(), "php_9.0");
    wxString phpIni;
    ASSERT_TRUE(TextFiles::Read(frame.Paths().PhpLiveConfig(), phpIni));
    EXPECT_TRUE(phpIni.Contains("/apache/php_9.0/ext")) << phpIni.Left(300);
    EXPECT_TRUE(
        WaitFor([&] { return PageStatus(frame.Paths().PhpInfoUrl()) == "200"; }, SERVER_WAIT_MS));
}

TEST_F(WinKovixServersTest, PhpVersionChangeWhileStoppedStartsNothing) {
    AddPhpVersion("php_9.0");
    WinKovix& frame = Open();
    ChoosePhpVersion("php_9.0");
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_PENDING);
    for (int tick = 0; tick < 4; ++tick)
        frame.StatusTick();
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_IDLE);
    EXPECT_TRUE(tree->Processes().empty());
}

TEST_F(WinKovixServersTest, TemplateChangeRestartsOnlyWithAutomaticRestartOn) {
    settings.SetBool(AppSettings::AUTO_RESTAT_CONFIG_CHANGED, false);
    WinKovix& frame = Open();
    frame.StartBoth();
    ASSERT_TRUE(WaitForStates("Running", "Running"));
    const long apachePid = MasterPid("httpd");
    const long mysqlPid = MasterPid("mysqld");

    TouchApacheTemplate();
    for (int tick = 0; tick < 4; ++tick)
        frame.StatusTick();
    EXPECT_EQ(frame.GetRestartState(), WinKovix::RESTART_IDLE);
    EXPECT_EQ(MasterPid("httpd"), apachePid);
    EXPECT_EQ(MasterPid("mysqld"), mysqlPid);

    settings.SetBool(AppSettings::AUTO_RESTAT_CONFIG_CHANGED, true);
    EXPECT_TRUE(WaitForRestart(apachePid, mysqlPid));
}

TEST_F(WinKovixServersTest, ApacheErrorsReachTheConsole) {
    const wxString source = tree->File("apache/conf/httpd_source.conf");
    wxString text;
    ASSERT_TRUE(TextFiles::Read(source, text));
    ASSERT_TRUE(TextFiles::WriteAtomically(source, text + "\nKovixBogusDirective on\n"));
    WinKovix& frame = Open();
    ChooseMenu(&frame, WinKovix::ID_MENU_START_APACHE);
    EXPECT_TRUE(WaitFor([&] { return Console().Contains("KovixBogusDirective"); }, 10000))
        << Console();
    EXPECT_TRUE(WaitForStates("Stopped", "Stopped"));
}

} // namespace
