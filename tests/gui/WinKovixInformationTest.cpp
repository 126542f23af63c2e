// The main window's information panel against real local web services: the public IP and the
// release line as the user sees them, shown once, and a window that keeps ticking while a
// service stalls.
#include "gui/GuiFixtures.h"

#include <wx/hyperlink.h>

#include <algorithm>
#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

class WinKovixInformationTest : public MainWindowTest<SmallTree> {
protected:
    wxHyperlinkCtrl* Link() { return Control<wxHyperlinkCtrl>(window, WinKovix::ID_UPDATE_LINK); }
    bool IsShown(int id) { return Control(window, id)->IsShown(); }
    bool WaitForInformation(int timeoutMs = 15000) {
        return WaitFor([&] { return Label(WinKovix::ID_IP_VALUE) != "Search..."; }, timeoutMs);
    }
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

TEST_F(WinKovixInformationTest, StalledServicesLeaveTheWindowTickingUntilBothLinesShow) {
    LocalHttpServer stalled(true);
    Open(stalled, stalled);
    const auto start = Clock::now();
    auto lastLook = start;
    double longestPause = 0;
    int ticks = 0;
    wxWindow* apacheState = Control(window, WinKovix::ID_STATUS_APACHE);
    bool shown = false;
    EXPECT_NO_DIALOG(shown = WaitFor(
                         [&] {
                             longestPause = std::max(longestPause, SecondsSince(lastLook));
                             lastLook = Clock::now();
                             if (apacheState->GetLabel() != "seen") { // a tick wrote it again
                                 ++ticks;
                                 apacheState->SetLabel("seen");
                             }
                             return Label(WinKovix::ID_IP_VALUE) != "Search...";
                         },
                         30000));
    const double seconds = SecondsSince(start);
    ASSERT_TRUE(shown);
    EXPECT_EQ(Label(WinKovix::ID_IP_VALUE), "No available");
    EXPECT_EQ(Label(WinKovix::ID_UPDATE_VALUE), "You have the last version of Kovix ( 1.1 )");
    EXPECT_FALSE(IsShown(WinKovix::ID_UPDATE_LINK));
    EXPECT_GE(seconds, 2 * HostNameLookupThread::TIMEOUT_SECONDS - 1) << "both requests waited";
    EXPECT_LT(longestPause, 1.0) << "the window never stopped for the network";
    EXPECT_GE(ticks, static_cast<int>(seconds / 0.5) - 3) << "the status ticks kept running";
    EXPECT_EQ(stalled.Requests().size(), 2u);
}

} // namespace
