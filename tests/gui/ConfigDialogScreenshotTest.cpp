// Screenshots of the Apache and PHP configuration dialogs, both pages each, in English, against a
// real tree: apache-hosts-en.png, apache-modules-en.png, php-extensions-en.png and
// php-settings-en.png. Runs only when KOVIX_SCREENSHOTS_DIR names the folder to write to.
#include "apache/WinApacheConf.h"
#include "gui/ConfigDialogTesting.h"
#include "gui/ScreenCapture.h"
#include "php/WinPHPExt.h"
#include "support/TempDir.h"

#include <wx/checklst.h>
#include <wx/filename.h>
#include <wx/notebook.h>

namespace {

const char* const SAMPLE_HOST = "\n<VirtualHost *:80>\n"
                                "\tDocumentRoot \"{DOCUMENTPATH}/shop\"\n"
                                "\tServerName \"shop.local\"\n"
                                "\tServerAlias \"www.shop.local\"\n"
                                "\tAlias \"/media\" \"{DOCUMENTPATH}/shop-media\"\n"
                                "\tErrorLog \"{APACHEPATH}/logs/shop-error.log\"\n"
                                "\t<Directory \"{DOCUMENTPATH}/shop\">\n"
                                "\t\tAllowOverride All\n"
                                "\t\tOptions FollowSymLinks Indexes \n"
                                "\t\tRequire all granted\n"
                                "\t</Directory>\n"
                                "</VirtualHost>\n"
                                "<VirtualHost 127.0.0.1:80>\n"
                                "\tServerName \"blog.local\"\n"
                                "\tDocumentRoot \"{DOCUMENTPATH}/blog\"\n"
                                "</VirtualHost>\n";

class ConfigDialogScreenshotTest : public ConfigDialogTest {
protected:
    void SetUp() override {
        if (!wxGetEnv("KOVIX_SCREENSHOTS_DIR", &folder))
            GTEST_SKIP() << "KOVIX_SCREENSHOTS_DIR is not set";
    }

    void Shoot(wxDialog& dialog, int page, const wxString& name) {
        Named<wxNotebook>(&dialog, "notebook")->SetSelection(page);
        dialog.Raise();
        ASSERT_TRUE(WaitForPaint(dialog));
        const wxImage shot = CaptureWindow(dialog);
        ASSERT_TRUE(shot.IsOk()) << "ImageMagick's import is needed";
        ASSERT_TRUE(
            shot.SaveFile(wxFileName(folder, name + ".png").GetFullPath(), wxBITMAP_TYPE_PNG));
    }

    wxString folder;
};

} // namespace

TEST_F(ConfigDialogScreenshotTest, ApacheDialog) {
    WriteBytes(paths.ApacheSourceConfig(), ReadBytes(paths.ApacheSourceConfig()) + SAMPLE_HOST);
    WinApacheConf dialog(nullptr, paths);
    dialog.Show();
    ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
    SelectRow(Control<wxListBox>(&dialog, WinApacheConf::ID_HOSTS), 0);
    Shoot(dialog, 0, "apache-hosts-en");
    auto* modules = Control<wxCheckListBox>(&dialog, WinApacheConf::ID_MODULES);
    SelectRow(modules, RowOf(modules, "rewrite_module"));
    Shoot(dialog, 1, "apache-modules-en");
}

TEST_F(ConfigDialogScreenshotTest, PhpDialog) {
    WinPHPExt dialog(nullptr, paths);
    dialog.Show();
    ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
    auto* extensions = Control<wxCheckListBox>(&dialog, WinPHPExt::ID_EXTENSIONS);
    SelectRow(extensions, RowOf(extensions, "curl"));
    Shoot(dialog, 0, "php-extensions-en");
    auto* settings = Control<wxListBox>(&dialog, WinPHPExt::ID_SETTINGS);
    SelectRow(settings, RowOf(settings, "Display errors"));
    Shoot(dialog, 1, "php-settings-en");
}
