#include "apache/WinApacheConf.h"

#include "apache/HelpCatalogue.h"
#include "apache/VirtualHostFile.h"
#include "apache/WinAliasConf.h"
#include "apache/WinDirectoryConf.h"
#include "apache/WinOthersConf.h"
#include "core/TemplateSwitches.h"
#include "gui/GuiFixtures.h"

#include <wx/checkbox.h>
#include <wx/checklst.h>
#include <wx/hyperlink.h>
#include <wx/radiobut.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

// The block the writer makes of the host that the scenario below builds.
const char* const TEST_BLOCK = "<VirtualHost *:80>\n"
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

class WinApacheConfTest : public ConfigDialogTest<WinApacheConf> {
protected:
    wxString Source() const { return paths.ApacheSourceConfig(); }
    static wxListBox* List(wxWindow* dialog, int id) { return Control<wxListBox>(dialog, id); }
    static wxListBox* Hosts(wxWindow* dialog) { return List(dialog, WinApacheConf::ID_HOSTS); }
    static wxCheckListBox* Modules(wxWindow* dialog) {
        return Control<wxCheckListBox>(dialog, WinApacheConf::ID_MODULES);
    }
    static wxString Field(wxWindow* dialog, int id) {
        return Control<wxTextCtrl>(dialog, id)->GetValue();
    }

    // The host of the scenario, entered through the page and the three small dialogs.
    void EnterTestHost(WinApacheConf& dialog) {
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        wxListBox* hosts = Hosts(&dialog);
        ASSERT_EQ(hosts->GetCount(), 1u);
        EXPECT_EQ(hosts->GetString(0), "Apache Main localost");
        Choose(hosts, 0);
        EXPECT_EQ(Field(&dialog, WinApacheConf::ID_SERVER_IP), "localost");
        Type(&dialog, WinApacheConf::ID_SERVER_IP, "*:80");
        Type(&dialog, WinApacheConf::ID_SERVER_NAME, "test.local");
        Type(&dialog, WinApacheConf::ID_SERVER_ALIAS, "www.test.local");
        Type(&dialog, WinApacheConf::ID_DOCUMENT_ROOT, "{DOCUMENTPATH}/test");

        ClickButton(&dialog, WinApacheConf::ID_ALIAS_ADD);
        // Adding commits the fields typed so far.
        EXPECT_EQ(hosts->GetString(0), "test.local *:80");
        wxListBox* aliases = List(&dialog, WinApacheConf::ID_ALIASES);
        EXPECT_EQ(Rows(aliases), std::vector<wxString>{"New Alias -> {DOCUMENTPATH}/myfolder/"});
        EXPECT_EQ(aliases->GetSelection(), 0);
        WhenModal([] {
            auto* alias = OpenDialog<WinAliasConf>();
            ASSERT_NE(alias, nullptr);
            EXPECT_EQ(alias->GetTitle(), "Alias");
            EXPECT_EQ(Control<wxTextCtrl>(alias, WinAliasConf::ID_NAME)->GetValue(), "New Alias");
            Type(alias, WinAliasConf::ID_NAME, "/img");
            Type(alias, WinAliasConf::ID_FOLDER, "{DOCUMENTPATH}/img");
            ClickButton(alias, WinAliasConf::ID_OK);
        });
        Choose(aliases, 0, wxEVT_LISTBOX_DCLICK);
        EXPECT_EQ(Rows(aliases), std::vector<wxString>{"/img -> {DOCUMENTPATH}/img"});

        ClickButton(&dialog, WinApacheConf::ID_DIRECTORY_ADD);
        WhenModal([] { EditTestDirectory(); });
        Choose(List(&dialog, WinApacheConf::ID_DIRECTORIES), 0, wxEVT_LISTBOX_DCLICK);
        EXPECT_EQ(Rows(List(&dialog, WinApacheConf::ID_DIRECTORIES)),
                  std::vector<wxString>{"{DOCUMENTPATH}/test"});
    }

    static void EditTestDirectory() {
        auto* directory = OpenDialog<WinDirectoryConf>();
        ASSERT_NE(directory, nullptr);
        EXPECT_EQ(Control<wxTextCtrl>(directory, WinDirectoryConf::ID_DIRECTORY)->GetValue(),
                  "{DOCUMENTPATH}/myfolder/");
        Type(directory, WinDirectoryConf::ID_DIRECTORY, "{DOCUMENTPATH}/test");
        Control<wxCheckBox>(directory, WinDirectoryConf::ID_FOLLOW_SYMLINKS)->SetValue(true);
        Control<wxCheckBox>(directory, WinDirectoryConf::ID_INDEXES)->SetValue(true);
        Control<wxRadioButton>(directory, WinDirectoryConf::ID_OVERRIDE_ALL)->SetValue(true);
        ClickButton(directory, WinDirectoryConf::ID_OTHERS_ADD);
        WhenModal([] {
            auto* other = OpenDialog<WinOthersConf>();
            ASSERT_NE(other, nullptr);
            EXPECT_EQ(other->GetTitle(), "WinOthersConf");
            Type(other, WinOthersConf::ID_NAME, "Order allow,deny");
            ClickButton(other, WinOthersConf::ID_OK);
        });
        Choose(Control(directory, WinDirectoryConf::ID_OTHERS), 0, wxEVT_LISTBOX_DCLICK);
        ClickButton(directory, WinDirectoryConf::ID_OK);
    }
};

} // namespace

TEST_F(WinApacheConfTest, ShowsTheLoadingTextAndLocksOkUntilTheTemplateIsRead) {
    WinApacheConf dialog(nullptr, paths);
    auto* loading = Named<wxStaticText>(&dialog, "label_loading");
    ASSERT_NE(loading, nullptr);
    EXPECT_EQ(loading->GetLabel(), "Loading Apache Config...");
    EXPECT_TRUE(dialog.IsBusy());
    EXPECT_FALSE(IsEnabled(&dialog, WinApacheConf::ID_OK));
    ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
    EXPECT_FALSE(loading->GetParent()->IsShown());
    EXPECT_TRUE(IsEnabled(&dialog, WinApacheConf::ID_OK));
    EXPECT_EQ(Modules(&dialog)->GetCount(), TemplateSwitches::ListModuleLines(paths).size());
}

// The scenario: a host entered through the page and the three small dialogs reaches the
// template in the writer's layout, and is what the dialog shows when it is opened again.
TEST_F(WinApacheConfTest, AHostEnteredAndSavedIsWrittenInTheWritersLayoutAndReadBack) {
    const std::string original = ReadBytes(Source());
    EXPECT_EQ(RunDialog([&](WinApacheConf& dialog) {
                  EnterTestHost(dialog);
                  ClickButton(&dialog, WinApacheConf::ID_OK);
              }),
              wxID_OK);

    // Nothing but the block was added to the template.
    EXPECT_EQ(ReadBytes(Source()), original + "\n" + TEST_BLOCK);

    EXPECT_EQ(RunDialog([&](WinApacheConf& dialog) {
                  EXPECT_EQ(Rows(Hosts(&dialog)), std::vector<wxString>{"test.local *:80"});
                  Choose(Hosts(&dialog), 0);
                  EXPECT_EQ(Field(&dialog, WinApacheConf::ID_SERVER_ALIAS), "www.test.local");
                  EXPECT_EQ(Field(&dialog, WinApacheConf::ID_DOCUMENT_ROOT), "{DOCUMENTPATH}/test");
                  EXPECT_EQ(Rows(List(&dialog, WinApacheConf::ID_ALIASES)),
                            std::vector<wxString>{"/img -> {DOCUMENTPATH}/img"});
                  // Cancel drops every change.
                  ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
                  Modules(&dialog)->Check(0, !Modules(&dialog)->IsChecked(0));
                  ClickButton(&dialog, WinApacheConf::ID_CANCEL);
              }),
              wxID_CANCEL);
    EXPECT_EQ(ReadBytes(Source()), original + "\n" + TEST_BLOCK);
}

TEST_F(WinApacheConfTest, RecordsAreRemovedAndHostsWithoutNameAreTheMainServer) {
    const std::string original = ReadBytes(Source());
    RunDialog([&](WinApacheConf& dialog) {
        // Without a selected host the record buttons do nothing.
        for (int id : {WinApacheConf::ID_ALIAS_ADD, WinApacheConf::ID_DIRECTORY_ADD,
                       WinApacheConf::ID_OTHERS_ADD, WinApacheConf::ID_REMOVE_HOST})
            ClickButton(&dialog, id);
        Choose(List(&dialog, WinApacheConf::ID_ALIASES), wxNOT_FOUND, wxEVT_LISTBOX_DCLICK);
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        Choose(Hosts(&dialog), 1);
        Type(&dialog, WinApacheConf::ID_SERVER_NAME, "second.local");
        ClickButton(&dialog, WinApacheConf::ID_OTHERS_ADD);
        ClickButton(&dialog, WinApacheConf::ID_OTHERS_ADD);
        wxListBox* others = List(&dialog, WinApacheConf::ID_OTHERS);
        EXPECT_EQ(others->GetCount(), 2u);
        wxWindow* remove = Control(&dialog, WinApacheConf::ID_OTHERS_REMOVE);
        EXPECT_TRUE(remove->IsEnabled());
        ClickButton(&dialog, WinApacheConf::ID_OTHERS_REMOVE);
        EXPECT_EQ(Rows(others), std::vector<wxString>{"enter your custom setting here"});
        EXPECT_FALSE(remove->IsEnabled());
        Choose(others, 0);
        EXPECT_TRUE(remove->IsEnabled());

        // Moving the selection commits the fields of the host left.
        Choose(Hosts(&dialog), 0);
        EXPECT_EQ(Rows(Hosts(&dialog)),
                  (std::vector<wxString>{"Apache Main localost", "second.local localost"}));
        EXPECT_TRUE(others->IsEmpty());
        ClickButton(&dialog, WinApacheConf::ID_REMOVE_HOST);
        EXPECT_EQ(Rows(Hosts(&dialog)), std::vector<wxString>{"second.local localost"});
        EXPECT_TRUE(Field(&dialog, WinApacheConf::ID_SERVER_NAME).empty());
        ClickButton(&dialog, WinApacheConf::ID_OK);
    });
    EXPECT_EQ(ReadBytes(Source()), original +
                                       "\n<VirtualHost localost>\n#KOVIX Generate Virtual Host\n"
                                       "\tServerName \"second.local\"\n"
                                       "\tenter your custom setting here\n</VirtualHost>\n");
}

TEST_F(WinApacheConfTest, ModulePageDescribesModulesAndOkSwitchesTheirLines) {
    HelpCatalogue catalogue;
    RunDialog([&](WinApacheConf& dialog) {
        wxCheckListBox* modules = Modules(&dialog);
        const int rewrite = modules->FindString("rewrite_module", true);
        const int expires = modules->FindString("expires_module", true);
        const int php = modules->FindString(TemplateSwitches::PHP_MODULE_LABEL, true);
        ASSERT_NE(rewrite, wxNOT_FOUND);
        ASSERT_NE(expires, wxNOT_FOUND);
        ASSERT_NE(php, wxNOT_FOUND);
        EXPECT_TRUE(modules->IsChecked(rewrite));
        EXPECT_FALSE(modules->IsChecked(expires));

        auto* description = Control<wxStaticText>(&dialog, WinApacheConf::ID_MODULE_DESCRIPTION);
        auto* link = Control<wxHyperlinkCtrl>(&dialog, WinApacheConf::ID_MODULE_LINK);
        Choose(modules, rewrite);
        EXPECT_EQ(Unwrapped(description->GetLabelText()),
                  Unwrapped(catalogue.ModuleDescription("rewrite_module")));
        EXPECT_EQ(link->GetURL(), "http://httpd.apache.org/docs/2.2/mod/mod_rewrite.html");
        Choose(modules, php);
        EXPECT_EQ(Unwrapped(description->GetLabelText()), "No Description Available");
        EXPECT_EQ(link->GetURL(), "");

        modules->Check(rewrite, false);
        modules->Check(expires, true);
        ClickButton(&dialog, WinApacheConf::ID_OK);
    });
    const std::string saved = ReadBytes(Source());
    EXPECT_NE(saved.find("\n#LoadModule rewrite_module modules/mod_rewrite.so\n"),
              std::string::npos);
    EXPECT_NE(saved.find("\nLoadModule expires_module modules/mod_expires.so\n"),
              std::string::npos);
    EXPECT_NE(saved.find("\nLoadModule {PHPMODULENAME} "), std::string::npos);
}

TEST_F(WinApacheConfTest, RestoreAsksFirstAndThenReloadsTheInitialTemplate) {
    WriteBytes(Source(), ReadBytes(Source()) + "\n<VirtualHost *:80>\nServerName mine.local\n"
                                               "</VirtualHost>\n");
    const std::string edited = ReadBytes(Source());
    RunDialog([&](WinApacheConf& dialog) {
        EXPECT_EQ(Rows(Hosts(&dialog)), std::vector<wxString>{"mine.local *:80"});
        wxString message, caption;
        wxTEST_DIALOG(ClickButton(&dialog, WinApacheConf::ID_RESTORE),
                      ExpectMessage(message, caption, wxID_NO));
        EXPECT_EQ(caption, "Kovix");
        EXPECT_TRUE(message.StartsWith("WARNING : The initial restoration configuration"));
        EXPECT_FALSE(dialog.IsBusy());
        EXPECT_EQ(ReadBytes(Source()), edited);

        wxTEST_DIALOG(ClickButton(&dialog, WinApacheConf::ID_RESTORE),
                      ExpectMessage(message, caption, wxID_YES));
        EXPECT_EQ(Named<wxStaticText>(&dialog, "label_loading")->GetLabel(),
                  "Loading Apache Config...");
        ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
        EXPECT_TRUE(Hosts(&dialog)->IsEmpty());
        EXPECT_EQ(ReadBytes(Source()), ReadBytes(paths.ApacheInitialConfig()));
        ClickButton(&dialog, WinApacheConf::ID_CANCEL);
    });
}

// Closing at any point stops and joins the worker; under ThreadSanitizer this is the race test.
TEST_F(WinApacheConfTest, OpensLoadsSavesAndCloses50Times) {
    for (int round = 0; round < 50; ++round) {
        { WinApacheConf closedWhileLoading(nullptr, paths); }
        ASSERT_EQ(RunDialog([&](WinApacheConf& dialog) {
                      if (round % 10 == 0)
                          ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
                      ClickButton(&dialog, WinApacheConf::ID_OK);
                  }),
                  wxID_OK);
    }
    VirtualHostFile file;
    file.path = Source();
    ASSERT_TRUE(ReadVirtualHosts(file));
    EXPECT_EQ(file.hosts.size(), 5u);
}
