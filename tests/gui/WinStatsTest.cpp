#include "gui/WinStats.h"

#include "app/AppSettings.h"
#include "gui/GuiWait.h"
#include "gui/ScreenCapture.h"
#include "gui/StatsControl.h"
#include "gui/TestWindows.h"
#include "lang/LangTable.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/statline.h>

namespace {

class WinStatsTest : public testing::Test {
protected:
    void SetUp() override {
        settings.SetString("CURRENT_LANG", "en");
        InitLangTable(settings, "en");
        owner = new wxFrame(nullptr, wxID_ANY, "owner");
        stats = new WinStats(owner, &series);
    }
    void TearDown() override { CloseWindow(owner); }

    wxButton* CloseButton() const {
        return wxDynamicCast(stats->FindWindow(WinStats::ID_BTN_OK), wxButton);
    }

    // The chart's pixel at a point of its client area, as the screen shows it.
    wxColour OnScreen(const wxPoint& point) const {
        const wxPoint at = stats->GetChart()->ClientToScreen(point);
        const wxImage image = CaptureScreen(wxRect(at, wxSize(1, 1)));
        if (!image.IsOk())
            return wxNullColour;
        return wxColour(image.GetRed(0, 0), image.GetGreen(0, 0), image.GetBlue(0, 0));
    }

    AppSettings settings;
    std::vector<ChartSeries> series = MakeCpuSeries();
    wxFrame* owner = nullptr;
    WinStats* stats = nullptr;
};

} // namespace

TEST_F(WinStatsTest, BuildsItsControlsHiddenWithTextsInBothLanguages) {
    EXPECT_FALSE(stats->IsShown());
    EXPECT_EQ(stats->GetTitle(), "Stats CPU");
    EXPECT_EQ(stats->GetName(), "dialog");
    EXPECT_EQ(stats->GetChart()->GetName(), "panel");
    EXPECT_NE(wxDynamicCast(stats->FindWindow("staticLine"), wxStaticLine), nullptr);
    ASSERT_NE(CloseButton(), nullptr);
    EXPECT_EQ(CloseButton()->GetName(), "btn_OK");
    EXPECT_EQ(CloseButton()->GetLabel(), "Close");

    SetLangIndex(1);
    stats->ApplyTexts();
    EXPECT_EQ(CloseButton()->GetLabel(), "Fermer");
}

TEST_F(WinStatsTest, CloseAndTheButtonOnlyHide) {
    stats->Show();
    wxCloseEvent close(wxEVT_CLOSE_WINDOW, stats->GetId());
    close.SetEventObject(stats);
    close.SetCanVeto(true);
    stats->ProcessWindowEvent(close);
    EXPECT_FALSE(stats->IsShown());
    EXPECT_FALSE(stats->IsBeingDeleted());

    stats->Show();
    wxCommandEvent click(wxEVT_BUTTON, WinStats::ID_BTN_OK);
    click.SetEventObject(CloseButton());
    CloseButton()->ProcessWindowEvent(click);
    EXPECT_FALSE(stats->IsShown());
    EXPECT_EQ(owner->FindWindow("dialog"), nullptr) << "a dialog is a top-level window";
    EXPECT_TRUE(wxTopLevelWindows.Find(stats) != nullptr) << "still exists after closing";
}

TEST_F(WinStatsTest, TheShownChartFollowsTheSeriesAfterEachChange) {
    stats->Show();
    ASSERT_TRUE(WaitForPaint(*stats->GetChart()));
    const wxSize size = stats->GetChart()->GetClientSize();
    // 50 % of Apache lies at H - H / 2; the probe sits left of the legends and off the grid.
    const wxPoint probe(size.x / 4, size.y - (50 * size.y) / 100);
    EXPECT_EQ(OnScreen(probe), *wxBLACK);

    for (int tick = 0; tick < 100; ++tick)
        series[0].Add(50);
    PaintWatch watch(*stats->GetChart());
    stats->SeriesChanged();
    ASSERT_TRUE(watch.Wait()) << "the change repaints the chart";
    EXPECT_EQ(OnScreen(probe), series[0].colour);
}
