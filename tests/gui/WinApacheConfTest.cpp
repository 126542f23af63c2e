#include "gui/apache/WinApacheConf.h"

#include "core/TemplateSwitches.h"
#include "gui/GuiFixtures.h"
#include "gui/apache/WinAliasConf.h"
#include "gui/apache/WinDirectoryConf.h"
#include "gui/apache/WinOthersConf.h"

#include <wx/checkbox.h>
#include <wx/checklst.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

namespace {

using A = WinApacheConf;

class WinApacheConfTest : public ConfigDialogTest<WinApacheConf> {
protected:
    wxString Source() const { return paths.ApacheSourceConfig(); }
    static wxListBox* List(wxWindow* dialog, int id) { return Control<wxListBox>(dialog, id); }
    static wxString Field(wxWindow* dialog, int id) {
        return Control<wxTextCtrl>(dialog, id)->GetValue();
    }
};

// A host entered through the page and the three small dialogs reaches the template in the
// writer's layout, and is what the dialog shows when it is opened again.
TEST_F(WinApacheConfTest, AHostEnteredAndSavedIsWrittenInTheWritersLayoutAndReadBack) {
    const std::string expected = ReadBytes(Source()) + "\n<VirtualHost *:80>\n"
                                                       "#KOVIX Generate Virtual Host\n"
                                                       "\tDocumentRoot \"{DOCUMENTPATH}/test\"\n"
                                                       "\tServerName \"test.local\"\n"
                                                       "\tServerAlias \"www.test.local\"\n"
                                                       "\tAlias \"/img\" \"{DOCUMENTPATH}/img\"\n"
                                                       "\t<Directory \"{DOCUMENTPATH}/test\">\n"
                                                       "\t\tAllowOverride All\n"
                                                       "\t\tOptions FollowSymLinks Indexes \n"
                                                       "\t\tOrder allow,deny\n"
                                                       "\t</Directory>\n"
                                                       "</VirtualHost>\n";
    EXPECT_EQ(
        RunDialog([&](A& dialog) {
            ClickButton(&dialog, A::ID_ADD_HOST);
            wxListBox* hosts = List(&dialog, A::ID_HOSTS);
            EXPECT_EQ(Rows(hosts), std::vector<wxString>{"Apache Main localost"});
            Choose(hosts, 0);
            EXPECT_EQ(Field(&dialog, A::ID_SERVER_IP), "localost");
            Type(&dialog, A::ID_SERVER_IP, "*:80");
            Type(&dialog, A::ID_SERVER_NAME, "test.local");
            Type(&dialog, A::ID_SERVER_ALIAS, "www.test.local");
            Type(&dialog, A::ID_DOCUMENT_ROOT, "{DOCUMENTPATH}/test");

            ClickButton(&dialog, A::ID_ALIAS_ADD);
            EXPECT_EQ(hosts->GetString(0), "test.local *:80"); // adding commits the fields
            WhenModal([] {
                auto* alias = OpenDialog<WinAliasConf>();
                ASSERT_NE(alias, nullptr);
                EXPECT_EQ(Field(alias, WinAliasConf::ID_NAME), "New Alias");
                Type(alias, WinAliasConf::ID_NAME, "/img");
                Type(alias, WinAliasConf::ID_FOLDER, "{DOCUMENTPATH}/img");
                ClickButton(alias, WinAliasConf::ID_OK);
            });
            Choose(List(&dialog, A::ID_ALIASES), 0, wxEVT_LISTBOX_DCLICK);

            ClickButton(&dialog, A::ID_DIRECTORY_ADD);
            WhenModal([] {
                auto* directory = OpenDialog<WinDirectoryConf>();
                ASSERT_NE(directory, nullptr);
                Type(directory, WinDirectoryConf::ID_DIRECTORY, "{DOCUMENTPATH}/test");
                for (int id : {WinDirectoryConf::ID_FOLLOW_SYMLINKS, WinDirectoryConf::ID_INDEXES})
                    Control<wxCheckBox>(directory, id)->SetValue(true);
                Control<wxRadioButton>(directory, WinDirectoryConf::ID_OVERRIDE_ALL)
                    ->SetValue(true);
                ClickButton(directory, WinDirectoryConf::ID_OTHERS_ADD);
                WhenModal([] {
                    auto* other = OpenDialog<WinOthersConf>();
                    ASSERT_NE(other, nullptr);
                    Type(other, WinOthersConf::ID_NAME, "Order allow,deny");
                    ClickButton(other, WinOthersConf::ID_OK);
                });
                Choose(Control(directory, WinDirectoryConf::ID_OTHERS), 0, wxEVT_LISTBOX_DCLICK);
                ClickButton(directory, WinDirectoryConf::ID_OK);
            });
            Choose(List(&dialog, A::ID_DIRECTORIES), 0, wxEVT_LISTBOX_DCLICK);
            ClickButton(&dialog, A::ID_OK);
        }),
        wxID_OK);
    EXPECT_EQ(ReadBytes(Source()), expected);

    EXPECT_EQ(RunDialog([&](A& dialog) {
                  EXPECT_EQ(Rows(List(&dialog, A::ID_HOSTS)),
                            std::vector<wxString>{"test.local *:80"});
                  Choose(List(&dialog, A::ID_HOSTS), 0);
                  EXPECT_EQ(Field(&dialog, A::ID_SERVER_ALIAS), "www.test.local");
                  EXPECT_EQ(Rows(List(&dialog, A::ID_ALIASES)),
                            std::vector<wxString>{"/img -> {DOCUMENTPATH}/img"});
                  // Cancel drops every change.
                  ClickButton(&dialog, A::ID_ADD_HOST);
                  ClickButton(&dialog, A::ID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_EQ(ReadBytes(Source()), expected);
}

TEST_F(WinApacheConfTest, OkSwitchesTheModuleLines) {
    RunDialog([&](A& dialog) {
        auto* modules = Control<wxCheckListBox>(&dialog, A::ID_MODULES);
        EXPECT_EQ(modules->GetCount(), TemplateSwitches::ListModuleLines(paths).size());
        const int rewrite = modules->FindString("rewrite_module", true);
        const int expires = modules->FindString("expires_module", true);
        ASSERT_NE(rewrite, wxNOT_FOUND);
        ASSERT_NE(expires, wxNOT_FOUND);
        EXPECT_TRUE(modules->IsChecked(rewrite));
        EXPECT_FALSE(modules->IsChecked(expires));
        modules->Check(rewrite, false);
        modules->Check(expires, true);
        ClickButton(&dialog, A::ID_OK);
    });
    const std::string saved = ReadBytes(Source());
    EXPECT_NE(saved.find("\n#LoadModule rewrite_module modules/mod_rewrite.so\n"),
              std::string::npos);
    EXPECT_NE(saved.find("\nLoadModule expires_module modules/mod_expires.so\n"),
              std::string::npos);
    EXPECT_NE(saved.find("\nLoadModule {PHPMODULENAME} "), std::string::npos);
}

} // namespace
