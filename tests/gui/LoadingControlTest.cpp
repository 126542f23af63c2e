#include "gui/LoadingControl.h"

#include "gui/GuiTesting.h"
#include "gui/ScreenCapture.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/stattext.h>

namespace {

class LoadingControlTest : public testing::Test {
protected:
    void SetUp() override {
        dialog = new wxDialog(nullptr, wxID_ANY, "owner", wxDefaultPosition, wxSize(420, 240));
        // A control under the indicator, as in the configuration dialogs.
        new wxButton(dialog, wxID_ANY, "Underneath", wxPoint(0, 30), wxSize(420, 80));
        loading = new LoadingControl(dialog, wxID_ANY, 50);
        dialog->Show();
    }
    void TearDown() override { CloseWindow(dialog); }

    wxStaticText* Label() const {
        return wxDynamicCast(loading->FindWindow("label_loading"), wxStaticText);
    }

    wxDialog* dialog = nullptr;
    LoadingControl* loading = nullptr;
};

TEST_F(LoadingControlTest, ShowsItsTextOverTheDialogAtOnceAndReplacesIt) {
    EXPECT_FALSE(loading->IsShown());
    ASSERT_TRUE(WaitForPaint(*dialog));

    const wxString text = "Loading Apache Config...";
    loading->ShowText(text);
    // No event loop from here on: the text must already be on the screen.
    const int textHeight = Label()->GetTextExtent(text).y;
    EXPECT_TRUE(loading->IsShown());
    EXPECT_EQ(loading->GetPosition(), wxPoint(10, 50));
    EXPECT_EQ(loading->GetSize().y, textHeight + 1);
    EXPECT_EQ(Label()->GetSize(), loading->GetSize());
    EXPECT_EQ(Label()->GetLabelText(), text);

    const wxImage shot = CaptureScreen(loading->GetScreenRect());
    const wxColour background = loading->GetBackgroundColour();
    const wxColour ink = Label()->GetForegroundColour();
    int backgroundPixels = 0, inkPixels = 0;
    for (int y = 0; y < shot.GetHeight(); ++y)
        for (int x = 0; x < shot.GetWidth(); ++x) {
            const wxColour pixel(shot.GetRed(x, y), shot.GetGreen(x, y), shot.GetBlue(x, y));
            backgroundPixels += pixel == background;
            inkPixels += pixel == ink;
        }
    EXPECT_GT(backgroundPixels, shot.GetWidth() * shot.GetHeight() / 2);
    EXPECT_GT(inkPixels, 20) << "the text is drawn";

    // A second text replaces the first.
    const std::size_t children = dialog->GetChildren().size();
    loading->ShowText("Saving PHP Extensions...");
    EXPECT_EQ(Label()->GetLabelText(), "Saving PHP Extensions...");
    EXPECT_EQ(dialog->GetChildren().size(), children);
    EXPECT_EQ(loading->GetChildren().size(), 1u);
    EXPECT_EQ(loading->GetPosition(), wxPoint(10, 50));
}

} // namespace
