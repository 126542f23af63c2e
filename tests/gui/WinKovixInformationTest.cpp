// The main window's information panel against real local web services: the public IP and the
// release line as the user sees them, shown once, and a window that keeps ticking while a
// service stalls.
#include "app/AppSettings.h"
#include "gui/GuiWait.h"
#include "gui/WinKovix.h"
#include "lang/LangTable.h"
#include "net/HostNameLookupThread.h"
#include "support/LocalHttpServer.h"
#include "support/ScopedEnv.h"
#include "support/SmallTree.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/hyperlink.h>
#include <wx/modalhook.h>
#include <wx/stattext.h>
#include <wx/weakref.h>

#include <algorithm>
#include <chrono>
#include <memory>

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Counts the modal dialogs shown while it lives and closes them at once.
class DialogCounter : public wxModalDialogHook {
public:
    DialogCounter() { Register(); }
    ~DialogCounter() override { Unregister(); }
    int shown = 0;

protected:
    int Enter(wxDialog*) override {
        ++shown;
        return wxID_CANCEL;
    }
    void Exit(wxDialog*) override {}
};

class WinKovixInformationTest : public testing::Test {
protected:
    void SetUp() override {
        settings.SetBool(AppSettings::START_ON_START, false);
        settings.SetPort(TestTree::FreePort());
        InitLangTable(settings, "en");
    }
    void TearDown() override { Close(); }

    // Builds the window with its lookups pointed at the two services.
    WinKovix& Open(const LocalHttpServer& ipService, const LocalHttpServer& productSite) {
        ScopedEnv ip(HostNameLookupThread::IP_SERVICE_VARIABLE, ipService.HostAndPort());
        ScopedEnv site(HostNameLookupThread::PRODUCT_SITE_VARIABLE, productSite.HostAndPort());
        window = new WinKovix(tree.Root(), settings);
        return *window;
    }
    void Close() {
        if (!window)
            return;
        window->Destroy();
        EXPECT_TRUE(WaitFor([&] { return !window; }));
    }
    wxString Label(int id) { return wxWindow::FindWindowById(id, window.get())->GetLabel(); }
    wxHyperlinkCtrl* Link() {
        return wxDynamicCast(wxWindow::FindWindowById(WinKovix::ID_UPDATE_LINK, window.get()),
                             wxHyperlinkCtrl);
    }
    bool IsShown(int id) { return wxWindow::FindWindowById(id, window.get())->IsShown(); }
    bool WaitForInformation(int timeoutMs = 15000) {
        return WaitFor([&] { return Label(WinKovix::ID_IP_VALUE) != "Search..."; }, timeoutMs);
    }

    SmallTree tree;
    AppSettings settings;
    wxWeakRef<WinKovix> window;
};

TEST_F(WinKovixInformationTest, ShowsTheAddressAndTheReleaseLine) {
    const struct {
        const char* ipPage;
        const char* versionPage;
        const char* ip;
        const char* update; // the text of the line, plain or link
        bool link;
    } cases[] = {
        {"203.0.113.7\n", "<?php $version = \"1.2\"; ?>", "203.0.113.7",
         "A new Kovix version is available ( 1.2 )", true},
        {"Address: 198.51.100.4, gateway 10.0.0.1", "version = \"1.1\"", "198.51.100.4",
         "You have the last version of Kovix ( 1.1 )", false},
        {"<b>192.0.2.1</b>", "version = \"1.0.9\"", "192.0.2.1",
         "You have the last version of Kovix ( 1.1 )", false},
        {"no address here", "version = \"1,2\"", "No available",
         "A new Kovix version is available ( 1,2 )", true},
        {"1.2.3", "no version here", "No available", "You have the last version of Kovix ( 1.1 )",
         false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.versionPage);
        LocalHttpServer ipService;
        LocalHttpServer productSite;
        ipService.Serve("/", c.ipPage);
        productSite.Serve(HostNameLookupThread::VERSION_PATH, c.versionPage);
        Open(ipService, productSite);
        ASSERT_TRUE(WaitForInformation());
        EXPECT_EQ(Label(WinKovix::ID_IP_VALUE), c.ip);
        EXPECT_EQ(IsShown(WinKovix::ID_UPDATE_LINK), c.link);
        EXPECT_EQ(IsShown(WinKovix::ID_UPDATE_VALUE), !c.link);
        if (c.link) {
            EXPECT_EQ(Link()->GetLabel(), c.update);
            EXPECT_EQ(Link()->GetURL(), "http://www.kovix.org/");
            EXPECT_GE(Link()->GetSize().GetWidth(), Link()->GetBestSize().GetWidth())
                << "the link is sized to its text";
        } else {
            EXPECT_EQ(Label(WinKovix::ID_UPDATE_VALUE), c.update);
        }
        Close();
    }
}

TEST_F(WinKovixInformationTest, FillsThePanelOnceAndNeverAsksAgain) {
    LocalHttpServer ipService;
    LocalHttpServer productSite;
    ipService.Serve("/", "203.0.113.7");
    productSite.Serve(HostNameLookupThread::VERSION_PATH, "version = \"1.2\"");
    Open(ipService, productSite);
    ASSERT_TRUE(WaitForInformation());
    Link()->SetLabel("changed");
    wxWindow::FindWindowById(WinKovix::ID_IP_VALUE, window.get())->SetLabel("changed");
    const auto start = Clock::now();
    WaitFor([&] { return SecondsSince(start) > 1.5; }); // three ticks
    EXPECT_EQ(Label(WinKovix::ID_IP_VALUE), "changed");
    EXPECT_EQ(Link()->GetLabel(), "changed");
    EXPECT_EQ(ipService.Requests().size(), 1u);
    EXPECT_EQ(productSite.Requests().size(), 1u);
}

TEST_F(WinKovixInformationTest, StalledServicesLeaveTheWindowTickingUntilBothLinesShow) {
    LocalHttpServer stalled(true);
    DialogCounter dialogs;
    Open(stalled, stalled);
    const auto start = Clock::now();
    auto lastLook = start;
    double longestPause = 0;
    int ticks = 0;
    auto* apacheState = wxWindow::FindWindowById(WinKovix::ID_STATUS_APACHE, window.get());
    const bool shown = WaitFor(
        [&] {
            longestPause = std::max(longestPause, SecondsSince(lastLook));
            lastLook = Clock::now();
            if (apacheState->GetLabel() != "seen") { // a tick wrote the state line again
                ++ticks;
                apacheState->SetLabel("seen");
            }
            return Label(WinKovix::ID_IP_VALUE) != "Search...";
        },
        30000);
    const double seconds = SecondsSince(start);
    ASSERT_TRUE(shown);
    EXPECT_EQ(Label(WinKovix::ID_IP_VALUE), "No available");
    EXPECT_EQ(Label(WinKovix::ID_UPDATE_VALUE), "You have the last version of Kovix ( 1.1 )");
    EXPECT_FALSE(IsShown(WinKovix::ID_UPDATE_LINK));
    EXPECT_GE(seconds, 2 * HostNameLookupThread::TIMEOUT_SECONDS - 1) << "both requests waited";
    EXPECT_LT(longestPause, 1.0) << "the window never stopped for the network";
    EXPECT_GE(ticks, static_cast<int>(seconds / 0.5) - 3) << "the status ticks kept running";
    EXPECT_EQ(dialogs.shown, 0);
    EXPECT_EQ(stalled.Requests().size(), 2u);
}

} // namespace
