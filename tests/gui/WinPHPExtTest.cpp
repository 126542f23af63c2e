#include "php/WinPHPExt.h"

#include "apache/HelpCatalogue.h"
#include "core/TemplateSwitches.h"
#include "gui/GuiFixtures.h"

#include <wx/checklst.h>
#include <wx/combobox.h>
#include <wx/hyperlink.h>
#include <wx/stattext.h>

namespace {

class WinPHPExtTest : public ConfigDialogTest<WinPHPExt> {
protected:
    wxString Source() const { return paths.PhpSourceConfig(); }
    static wxCheckListBox* Extensions(wxWindow* dialog) {
        return Control<wxCheckListBox>(dialog, WinPHPExt::ID_EXTENSIONS);
    }
    static wxComboBox* Value(wxWindow* dialog) {
        return Control<wxComboBox>(dialog, WinPHPExt::ID_SETTING_VALUE);
    }
    static wxString Shown(wxWindow* dialog, const wxString& name) {
        return Unwrapped(Named<wxStaticText>(dialog, name)->GetLabelText());
    }
    void ReplaceInSource(const std::string& from, const std::string& to) {
        std::string text = ReadBytes(Source());
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        WriteBytes(Source(), text.replace(at, from.size(), to));
    }
    size_t TemplateExtensions() const { return TemplateSwitches::ListExtensionLines(paths).size(); }
};

TEST_F(WinPHPExtTest, LocksOnlyOkAndCancelWhileLoading) {
    WinPHPExt dialog(nullptr, paths);
    EXPECT_EQ(Named<wxStaticText>(&dialog, "label_loading")->GetLabel(),
              "Loading PHP Extensions...");
    EXPECT_FALSE(IsEnabled(&dialog, WinPHPExt::ID_OK));
    EXPECT_FALSE(IsEnabled(&dialog, WinPHPExt::ID_CANCEL));
    EXPECT_TRUE(IsEnabled(&dialog, WinPHPExt::ID_RESTORE));
    EXPECT_TRUE(Named<wxWindow>(&dialog, "notebook")->IsEnabled());

    ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
    EXPECT_TRUE(IsEnabled(&dialog, WinPHPExt::ID_OK));
    EXPECT_TRUE(IsEnabled(&dialog, WinPHPExt::ID_CANCEL));
    EXPECT_FALSE(Named<wxWindow>(&dialog, "label_loading")->GetParent()->IsShown());
    EXPECT_EQ(Extensions(&dialog)->GetCount(), TemplateExtensions());
}

TEST_F(WinPHPExtTest, OkSwitchesExtensionsAndWritesSettings) {
    HelpCatalogue catalogue;
    ReplaceInSource("\ndisplay_errors = On", "\ndisplay_errors = on");
    EXPECT_EQ(RunDialog([&](WinPHPExt& dialog) {
                  wxCheckListBox* extensions = Extensions(&dialog);
                  const int gd = extensions->FindString("gd", true);
                  const int shmop = extensions->FindString("shmop", true);
                  ASSERT_NE(gd, wxNOT_FOUND);
                  ASSERT_NE(shmop, wxNOT_FOUND);
                  EXPECT_TRUE(extensions->IsChecked(gd));
                  EXPECT_FALSE(extensions->IsChecked(shmop));
                  Choose(extensions, gd);
                  EXPECT_EQ(Shown(&dialog, "label_ModuleDescription"),
                            Unwrapped(catalogue.ExtensionDescription("gd")));
                  EXPECT_EQ(Named<wxHyperlinkCtrl>(&dialog, "link_Description")->GetURL(),
                            catalogue.ExtensionLink("gd"));
                  extensions->Check(gd, false);
                  extensions->Check(shmop, true);

                  wxWindow* settings = Control(&dialog, WinPHPExt::ID_SETTINGS);
                  Choose(settings, "Display errors");
                  EXPECT_EQ(Value(&dialog)->GetValue(), "On"); // "on" in the file
                  Choose(settings, "ASP tag");
                  EXPECT_TRUE(Value(&dialog)->IsEnabled());
                  EXPECT_EQ(Value(&dialog)->GetCount(), 2u);
                  EXPECT_EQ(Value(&dialog)->GetSelection(), wxNOT_FOUND); // not in the file
                  Choose(settings, "Short open tag");
                  EXPECT_EQ(Value(&dialog)->GetValue(), "Off");
                  EXPECT_TRUE(Shown(&dialog, "label_SettingDescription")
                                  .StartsWith("Tells PHP whether the short form"));
                  EXPECT_EQ(Named<wxHyperlinkCtrl>(&dialog, "link_SettingDescription")->GetURL(),
                            "http://www.php.net/short-open-tag");
                  Choose(Value(&dialog), "On");
                  ClickButton(&dialog, WinPHPExt::ID_OK);
                  EXPECT_EQ(Named<wxStaticText>(&dialog, "label_loading")->GetLabel(),
                            "Saving PHP Extensions...");
              }),
              wxID_OK);
    const std::string saved = ReadBytes(Source());
    EXPECT_NE(saved.find("\n;extension=php_gd.so\n"), std::string::npos);
    EXPECT_NE(saved.find("\nextension=php_shmop.so\n"), std::string::npos);
    EXPECT_NE(saved.find("\nshort_open_tag = On\n"), std::string::npos);
    EXPECT_NE(saved.find("\ndisplay_errors = on\n"), std::string::npos);
    EXPECT_EQ(saved.find("asp_tags"), std::string::npos);
}

TEST_F(WinPHPExtTest, RestoreAsksFirstAndReloadsTheInitialTemplateAndCancelWritesNothing) {
    ReplaceInSource("\nextension=php_gd.so", "\n;extension=php_gd.so");
    const std::string edited = ReadBytes(Source());
    EXPECT_EQ(RunDialog([&](WinPHPExt& dialog) {
                  const int gd = Extensions(&dialog)->FindString("gd", true);
                  EXPECT_FALSE(Extensions(&dialog)->IsChecked(gd));
                  wxString message, caption;
                  wxTEST_DIALOG(ClickButton(&dialog, WinPHPExt::ID_RESTORE),
                                ExpectMessage(message, caption, wxID_NO));
                  EXPECT_EQ(caption, "Kovix");
                  EXPECT_TRUE(
                      message.StartsWith("WARNING : The initial restoration configuration"));
                  EXPECT_FALSE(dialog.IsBusy());
                  EXPECT_EQ(ReadBytes(Source()), edited);

                  wxTEST_DIALOG(ClickButton(&dialog, WinPHPExt::ID_RESTORE),
                                ExpectMessage(message, caption, wxID_YES));
                  // The Apache text first, while the initial file is copied back.
                  EXPECT_EQ(Named<wxStaticText>(&dialog, "label_loading")->GetLabel(),
                            "Loading Apache Config...");
                  EXPECT_FALSE(IsEnabled(&dialog, WinPHPExt::ID_OK));
                  ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
                  EXPECT_EQ(Extensions(&dialog)->GetCount(), TemplateExtensions());
                  EXPECT_TRUE(
                      Extensions(&dialog)->IsChecked(Extensions(&dialog)->FindString("gd", true)));
                  EXPECT_EQ(ReadBytes(Source()), ReadBytes(paths.PhpInitialConfig()));
                  // Cancel drops every change.
                  Extensions(&dialog)->Check(0, !Extensions(&dialog)->IsChecked(0));
                  Choose(Control(&dialog, WinPHPExt::ID_SETTINGS), 0);
                  Choose(Value(&dialog), "On");
                  ClickButton(&dialog, WinPHPExt::ID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_EQ(ReadBytes(Source()), ReadBytes(paths.PhpInitialConfig()));
}

// A restore during a load runs a second load; OK and Cancel stay locked until both reported.
TEST_F(WinPHPExtTest, RestoreWhileLoadingKeepsTheDialogLockedUntilBothLoadsReport) {
    WinPHPExt dialog(nullptr, paths);
    wxString message, caption;
    wxTEST_DIALOG(ClickButton(&dialog, WinPHPExt::ID_RESTORE),
                  ExpectMessage(message, caption, wxID_YES));
    ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
    EXPECT_TRUE(IsEnabled(&dialog, WinPHPExt::ID_OK));
    EXPECT_EQ(Extensions(&dialog)->GetCount(), TemplateExtensions());
}

// Closing at any point stops and joins the workers; under ThreadSanitizer this is the race test.
// Every fifth round a restore during the load runs two jobs at once, and the dialog closes on
// both.
TEST_F(WinPHPExtTest, OpensLoadsSavesAndCloses50Times) {
    for (int round = 0; round < 50; ++round) {
        {
            WinPHPExt closedWhileLoading(nullptr, paths);
            if (round % 5 == 0) {
                wxString message, caption;
                wxTEST_DIALOG(ClickButton(&closedWhileLoading, WinPHPExt::ID_RESTORE),
                              ExpectMessage(message, caption, wxID_YES));
            }
        }
        ASSERT_EQ(RunDialog([&](WinPHPExt& dialog) {
                      Extensions(&dialog)->Check(0, round % 2 == 0);
                      ClickButton(&dialog, WinPHPExt::ID_OK);
                  }),
                  wxID_OK);
    }
    const std::vector<wxString> lines = TemplateSwitches::ListExtensionLines(paths);
    ASSERT_FALSE(lines.empty());
    EXPECT_FALSE(TemplateSwitches::IsExtensionLineEnabled(lines[0]));
}

} // namespace
