#include "gui/php/WinPHPExt.h"

#include "core/TemplateSwitches.h"
#include "gui/GuiFixtures.h"
#include "support/ImmutablePath.h"

#include <wx/checklst.h>
#include <wx/combobox.h>
#include <wx/filefn.h>

namespace {

using P = WinPHPExt;

class WinPHPExtTest : public ConfigDialogTest<WinPHPExt> {
protected:
    wxString Source() const { return paths.PhpSourceConfig(); }
    static wxCheckListBox* Extensions(wxWindow* dialog) {
        return Control<wxCheckListBox>(dialog, P::ID_EXTENSIONS);
    }
    static wxComboBox* Value(wxWindow* dialog) {
        return Control<wxComboBox>(dialog, P::ID_SETTING_VALUE);
    }
    void ReplaceInSource(const std::string& from, const std::string& to) {
        std::string text = ReadBytes(Source());
        const size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        WriteBytes(Source(), text.replace(at, from.size(), to));
    }
};

TEST_F(WinPHPExtTest, OkSwitchesExtensionsAndWritesSettings) {
    ReplaceInSource("\ndisplay_errors = On", "\ndisplay_errors = on");
    EXPECT_EQ(RunDialog([&](P& dialog) {
                  wxCheckListBox* extensions = Extensions(&dialog);
                  const int gd = extensions->FindString("gd", true);
                  const int shmop = extensions->FindString("shmop", true);
                  ASSERT_NE(gd, wxNOT_FOUND);
                  ASSERT_NE(shmop, wxNOT_FOUND);
                  EXPECT_TRUE(extensions->IsChecked(gd));
                  EXPECT_FALSE(extensions->IsChecked(shmop));
                  extensions->Check(gd, false);
                  extensions->Check(shmop, true);

                  wxWindow* settings = Control(&dialog, P::ID_SETTINGS);
                  Choose(settings, "Display errors");
                  EXPECT_EQ(Value(&dialog)->GetValue(), "On"); // "on" in the file
                  Choose(settings, "ASP tag");
                  EXPECT_EQ(Value(&dialog)->GetSelection(), wxNOT_FOUND); // not in the file
                  Choose(settings, "Short open tag");
                  EXPECT_EQ(Value(&dialog)->GetValue(), "Off");
                  Choose(Value(&dialog), "On");
                  ClickButton(&dialog, P::ID_OK);
              }),
              wxID_OK);
    const std::string saved = ReadBytes(Source());
    EXPECT_NE(saved.find("\n;extension=php_gd.so\n"), std::string::npos);
    EXPECT_NE(saved.find("\nextension=php_shmop.so\n"), std::string::npos);
    EXPECT_NE(saved.find("\nshort_open_tag = On\n"), std::string::npos);
    EXPECT_NE(saved.find("\ndisplay_errors = on\n"), std::string::npos);
    EXPECT_EQ(saved.find("asp_tags"), std::string::npos);
}

TEST_F(WinPHPExtTest, ASaveOrRestoreThatCannotWriteSaysWhyAndKeepsTheDialogOpen) {
    const std::string before = ReadBytes(Source());
    const ImmutablePath locked(wxPathOnly(Source()));
    if (!locked.made)
        GTEST_SKIP() << "this file system has no immutable folders";
    EXPECT_EQ(RunDialog([&](P& dialog) {
                  Extensions(&dialog)->Check(0, !Extensions(&dialog)->IsChecked(0));
                  wxString message, caption;
                  wxTEST_DIALOG(
                      {
                          ClickButton(&dialog, P::ID_OK);
                          EXPECT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
                      },
                      ExpectMessage(message, caption));
                  const wxString refusal = "Cannot write " + Source() + ": Operation not permitted";
                  EXPECT_EQ(message, refusal);
                  EXPECT_TRUE(IsEnabled(&dialog, P::ID_OK)) << "the changes are still there";

                  wxString question;
                  wxTEST_DIALOG(
                      {
                          ClickButton(&dialog, P::ID_RESTORE);
                          EXPECT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
                      },
                      ExpectMessage(question, caption, wxID_YES), ExpectMessage(message, caption));
                  EXPECT_EQ(message, refusal);
                  ClickButton(&dialog, P::ID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_EQ(ReadBytes(Source()), before);
}

TEST_F(WinPHPExtTest, RestoreAsksFirstAndReloadsTheInitialTemplateAndCancelWritesNothing) {
    ReplaceInSource("\nextension=php_gd.so", "\n;extension=php_gd.so");
    const std::string edited = ReadBytes(Source());
    EXPECT_EQ(RunDialog([&](P& dialog) {
                  EXPECT_FALSE(
                      Extensions(&dialog)->IsChecked(Extensions(&dialog)->FindString("gd", true)));
                  wxString message, caption;
                  wxTEST_DIALOG(ClickButton(&dialog, P::ID_RESTORE),
                                ExpectMessage(message, caption, wxID_NO));
                  EXPECT_EQ(caption, "Kovix");
                  EXPECT_TRUE(
                      message.StartsWith("WARNING : The initial restoration configuration"));
                  EXPECT_EQ(ReadBytes(Source()), edited);

                  wxTEST_DIALOG(ClickButton(&dialog, P::ID_RESTORE),
                                ExpectMessage(message, caption, wxID_YES));
                  EXPECT_FALSE(IsEnabled(&dialog, P::ID_OK));
                  ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
                  EXPECT_TRUE(
                      Extensions(&dialog)->IsChecked(Extensions(&dialog)->FindString("gd", true)));
                  EXPECT_EQ(ReadBytes(Source()), ReadBytes(paths.PhpInitialConfig()));
                  // Cancel drops every change.
                  Extensions(&dialog)->Check(0, !Extensions(&dialog)->IsChecked(0));
                  Choose(Control(&dialog, P::ID_SETTINGS), 0);
                  Choose(Value(&dialog), "On");
                  ClickButton(&dialog, P::ID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_EQ(ReadBytes(Source()), ReadBytes(paths.PhpInitialConfig()));
}

// Closing at any point stops and joins the workers; under ThreadSanitizer this is the race test.
// Every fifth round a restore during the load runs two jobs at once.
TEST_F(WinPHPExtTest, OpensLoadsSavesAndCloses50Times) {
    for (int round = 0; round < 50; ++round) {
        {
            WinPHPExt closedWhileLoading(nullptr, paths);
            wxString message, caption;
            if (round % 5 == 0)
                wxTEST_DIALOG(ClickButton(&closedWhileLoading, P::ID_RESTORE),
                              ExpectMessage(message, caption, wxID_YES));
        }
        ASSERT_EQ(RunDialog([&](P& dialog) {
                      Extensions(&dialog)->Check(0, round % 2 == 0);
                      ClickButton(&dialog, P::ID_OK);
                  }),
                  wxID_OK);
    }
    const std::vector<wxString> lines = TemplateSwitches::ListExtensionLines(paths);
    ASSERT_FALSE(lines.empty());
    EXPECT_FALSE(TemplateSwitches::IsExtensionLineEnabled(lines[0]));
}

} // namespace
