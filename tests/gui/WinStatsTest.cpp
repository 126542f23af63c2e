#include "gui/WinStats.h"

#include "app/AppSettings.h"
#include "gui/GuiTesting.h"
#include "gui/ScreenCapture.h"
#include "gui/StatsControl.h"
#include "lang/LangTable.h"

#include <wx/frame.h>

namespace {

class WinStatsTest : public testing::Test {
protected:
    void SetUp() override {
        InitLangTable(settings, "en");
        owner = new wxFrame(nullptr, wxID_ANY, "owner");
        stats = new WinStats(owner, &series);
    }
    void TearDown() override { CloseWindow(owner); }

    AppSettings settings;
    std::vector<ChartSeries> series = MakeCpuSeries();
    wxFrame* owner = nullptr;
    WinStats* stats = nullptr;
};

// The language change is tried from the main window's preferences.
TEST_F(WinStatsTest, BuiltHiddenAndCloseAndTheButtonOnlyHide) {
    EXPECT_FALSE(stats->IsShown());
    EXPECT_EQ(stats->GetTitle(), "Stats CPU");
    EXPECT_EQ(Label(stats, WinStats::ID_BTN_OK), "Close");

    stats->Show();
    wxCloseEvent close(wxEVT_CLOSE_WINDOW, stats->GetId());
    close.SetEventObject(stats);
    close.SetCanVeto(true);
    stats->ProcessWindowEvent(close);
    EXPECT_FALSE(stats->IsShown());
    EXPECT_FALSE(stats->IsBeingDeleted());

    stats->Show();
    ClickButton(stats, WinStats::ID_BTN_OK);
    EXPECT_FALSE(stats->IsShown());
    EXPECT_TRUE(wxTopLevelWindows.Find(stats) != nullptr) << "still exists after closing";
}

TEST_F(WinStatsTest, TheShownChartFollowsTheSeriesAfterEachChange) {
    stats->Show();
    ASSERT_TRUE(WaitForPaint(*stats->GetChart()));
    const wxSize size = stats->GetChart()->GetClientSize();
    // 50 % of Apache lies at H - H / 2; the probe sits left of the legends and off the grid.
    const wxPoint probe(size.x / 4, size.y - (50 * size.y) / 100);
    const auto onScreen = [&] {
        const wxImage image =
            CaptureScreen(wxRect(stats->GetChart()->ClientToScreen(probe), wxSize(1, 1)));
        return image.IsOk()
                   ? wxColour(image.GetRed(0, 0), image.GetGreen(0, 0), image.GetBlue(0, 0))
                   : wxNullColour;
    };
    EXPECT_EQ(onScreen(), *wxBLACK);

    for (int tick = 0; tick < 100; ++tick)
        series[0].Add(50);
    ASSERT_TRUE(WaitForPaint(*stats->GetChart(), [&] { stats->SeriesChanged(); }))
        << "the change repaints the chart";
    EXPECT_EQ(onScreen(), series[0].colour);
}

} // namespace
