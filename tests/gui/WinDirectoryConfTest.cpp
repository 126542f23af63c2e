#include "apache/WinDirectoryConf.h"

#include "apache/WinOthersConf.h"
#include "app/AppSettings.h"
#include "gui/GuiTesting.h"
#include "lang/LangTable.h"

#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

namespace {

class WinDirectoryConfTest : public testing::Test {
protected:
    void SetUp() override {
        InitLangTable(settings, "en");
        record.path = "{DOCUMENTPATH}/site";
        record.Indexes = true;
        record.MultiViews = true;
        record.AllowOverride = true;
        record.others = {"Order allow,deny", "Allow from all"};
    }

    // Shows the dialog on record modally and runs steps in it; steps must end it.
    int Run(const std::function<void(WinDirectoryConf&)>& steps) {
        WinDirectoryConf dialog(nullptr, record, "Directory");
        WhenModal([&] { steps(dialog); });
        return dialog.ShowModal();
    }
    static wxCheckBox* Check(wxWindow* dialog, int id) { return Control<wxCheckBox>(dialog, id); }
    static wxListBox* Custom(wxWindow* dialog) {
        return Control<wxListBox>(dialog, WinDirectoryConf::ID_OTHERS);
    }

    AppSettings settings;
    DirectoryRecord record;
};

// Cancel drops the working copy: Custom lines added, edited or removed are lost too.
TEST_F(WinDirectoryConfTest, ShowsTheRecordAndCancelLeavesItAsItWasEvenAfterCustomEdits) {
    const DirectoryRecord before = record;
    EXPECT_EQ(
        Run([&](WinDirectoryConf& dialog) {
            EXPECT_EQ(dialog.GetTitle(), "Directory");
            EXPECT_EQ(Control<wxTextCtrl>(&dialog, WinDirectoryConf::ID_DIRECTORY)->GetValue(),
                      "{DOCUMENTPATH}/site");
            EXPECT_FALSE(Check(&dialog, WinDirectoryConf::ID_FOLLOW_SYMLINKS)->GetValue());
            EXPECT_FALSE(Check(&dialog, WinDirectoryConf::ID_INCLUDES)->GetValue());
            EXPECT_TRUE(Check(&dialog, WinDirectoryConf::ID_INDEXES)->GetValue());
            EXPECT_TRUE(Check(&dialog, WinDirectoryConf::ID_MULTIVIEWS)->GetValue());
            EXPECT_TRUE(
                Control<wxRadioButton>(&dialog, WinDirectoryConf::ID_OVERRIDE_ALL)->GetValue());
            EXPECT_EQ(Rows(Custom(&dialog)), record.others);
            EXPECT_FALSE(IsEnabled(&dialog, WinDirectoryConf::ID_OTHERS_REMOVE));

            ClickButton(&dialog, WinDirectoryConf::ID_OTHERS_ADD);
            EXPECT_EQ(Custom(&dialog)->GetSelection(), 2);
            WhenModal([] {
                auto* other = OpenDialog<WinOthersConf>();
                ASSERT_NE(other, nullptr);
                Type(other, WinOthersConf::ID_NAME, "Require all granted");
                ClickButton(other, WinOthersConf::ID_OK);
            });
            Choose(Custom(&dialog), 0, wxEVT_LISTBOX_DCLICK);
            EXPECT_EQ(Custom(&dialog)->GetString(0), "Require all granted");
            Choose(Custom(&dialog), 1);
            EXPECT_TRUE(IsEnabled(&dialog, WinDirectoryConf::ID_OTHERS_REMOVE));
            ClickButton(&dialog, WinDirectoryConf::ID_OTHERS_REMOVE);
            Check(&dialog, WinDirectoryConf::ID_INDEXES)->SetValue(false);
            Type(&dialog, WinDirectoryConf::ID_DIRECTORY, "elsewhere");
            ClickButton(&dialog, WinDirectoryConf::ID_CANCEL);
        }),
        wxID_CANCEL);
    EXPECT_EQ(record, before);
}

TEST_F(WinDirectoryConfTest, OkStoresWhatWasTypedAndChosen) {
    EXPECT_EQ(
        Run([&](WinDirectoryConf& dialog) {
            ClickButton(&dialog, WinDirectoryConf::ID_OTHERS_ADD);
            Choose(Custom(&dialog), 0);
            ClickButton(&dialog, WinDirectoryConf::ID_OTHERS_REMOVE);
            Check(&dialog, WinDirectoryConf::ID_INDEXES)->SetValue(false);
            Check(&dialog, WinDirectoryConf::ID_MULTIVIEWS)->SetValue(false);
            Control<wxRadioButton>(&dialog, WinDirectoryConf::ID_OVERRIDE_NONE)->SetValue(true);
            Type(&dialog, WinDirectoryConf::ID_DIRECTORY, " \"quoted\" path ");
            ClickButton(&dialog, WinDirectoryConf::ID_OK);
        }),
        wxID_OK);
    EXPECT_EQ(record.path, " \"quoted\" path ");
    EXPECT_FALSE(record.AllowOverride);
    EXPECT_FALSE(record.FollowSymLinks || record.Includes || record.Indexes || record.MultiViews);
    EXPECT_EQ(record.others,
              (std::vector<wxString>{"Allow from all", "enter your custom setting here"}));
}

} // namespace
