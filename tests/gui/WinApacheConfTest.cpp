#include "apache/WinApacheConf.h"

#include "apache/HelpCatalogue.h"
#include "apache/VirtualHostFile.h"
#include "apache/WinAliasConf.h"
#include "apache/WinDirectoryConf.h"
#include "apache/WinOthersConf.h"
#include "core/TemplateSwitches.h"
#include "gui/ConfigDialogTesting.h"
#include "support/TempDir.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/checklst.h>
#include <wx/hyperlink.h>
#include <wx/notebook.h>
#include <wx/radiobut.h>

#include <cstring>
#include <functional>

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

class WinApacheConfTest : public ConfigDialogTest {
protected:
    wxString Source() const { return paths.ApacheSourceConfig(); }
    wxListBox* Hosts(wxWindow* dialog) {
        return Control<wxListBox>(dialog, WinApacheConf::ID_HOSTS);
    }
    wxListBox* List(wxWindow* dialog, int id) { return Control<wxListBox>(dialog, id); }
    wxCheckListBox* Modules(wxWindow* dialog) {
        return Control<wxCheckListBox>(dialog, WinApacheConf::ID_MODULES);
    }
    wxString Field(wxWindow* dialog, int id) { return Control<wxTextCtrl>(dialog, id)->GetValue(); }

    // Shows the dialog modally, runs steps in it once its template is loaded, and returns how it
    // ended; steps must end it.
    int RunDialog(const std::function<void(WinApacheConf&)>& steps) {
        WinApacheConf dialog(nullptr, paths);
        WhenModal([&] {
            EXPECT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
            steps(dialog);
        });
        return dialog.ShowModal();
    }

    // Clicks OK and waits for the save to close the dialog.
    void Save(WinApacheConf& dialog) { ClickButton(&dialog, WinApacheConf::ID_OK); }
    void Cancel(WinApacheConf& dialog) { ClickButton(&dialog, WinApacheConf::ID_CANCEL); }

    // The host of the scenario, entered through the page and the three small dialogs.
    void EnterTestHost(WinApacheConf& dialog) {
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        wxListBox* hosts = Hosts(&dialog);
        ASSERT_EQ(hosts->GetCount(), 1u);
        EXPECT_EQ(hosts->GetString(0), "Apache Main localost");
        SelectRow(hosts, 0);
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
        DoubleClickRow(aliases, 0);
        EXPECT_EQ(Rows(aliases), std::vector<wxString>{"/img -> {DOCUMENTPATH}/img"});

        ClickButton(&dialog, WinApacheConf::ID_DIRECTORY_ADD);
        WhenModal([] { EditTestDirectory(); });
        DoubleClickRow(List(&dialog, WinApacheConf::ID_DIRECTORIES), 0);
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
        DoubleClickRow(Control<wxListBox>(directory, WinDirectoryConf::ID_OTHERS), 0);
        ClickButton(directory, WinDirectoryConf::ID_OK);
    }
};

} // namespace

TEST_F(WinApacheConfTest, ShowsItsControlsAndTheLoadingTextUntilTheTemplateIsRead) {
    WinApacheConf dialog(nullptr, paths);
    EXPECT_EQ(dialog.GetTitle(), "Apache Config");
    auto* loading = Named<wxStaticText>(&dialog, "label_loading");
    ASSERT_NE(loading, nullptr);
    EXPECT_EQ(loading->GetLabel(), "Loading Apache Config...");
    EXPECT_TRUE(dialog.IsBusy());
    EXPECT_FALSE(Control<wxButton>(&dialog, WinApacheConf::ID_OK)->IsEnabled());

    auto* notebook = Control<wxNotebook>(&dialog, WinApacheConf::ID_NOTEBOOK);
    EXPECT_EQ(notebook->GetPageText(0), "Virtual Server");
    EXPECT_EQ(notebook->GetPageText(1), "Modules");
    const struct {
        int id;
        const char* name;
        const char* label;
    } expected[] = {
        {WinApacheConf::ID_LABEL_IP, "label_ip", "Host IP :"},
        {WinApacheConf::ID_LABEL_SERVER_NAME, "label_ServerName", "Server Name :"},
        {WinApacheConf::ID_LABEL_SERVER_ALIAS, "label_ServerAlias", "Server Alias :"},
        {WinApacheConf::ID_LABEL_DOCUMENT_ROOT, "label_DocumentRoot", "Document Root :"},
        {WinApacheConf::ID_LABEL_ALIAS, "label_Alias", "Alias : "},
        {WinApacheConf::ID_LABEL_DIRECTORY, "label_Directory", "Folder : "},
        {WinApacheConf::ID_LABEL_OTHER, "label_Other", "Others : "},
        {WinApacheConf::ID_GROUP_HOST, "groupBox", "Virtual Server"},
        {WinApacheConf::ID_GROUP_DESCRIPTION, "groupBox", "Description"},
        {WinApacheConf::ID_RESTORE, "btn_RestoreConfig", "Restore initial config"},
        {WinApacheConf::ID_CANCEL, "btn_Cancel", "Cancel"},
        {WinApacheConf::ID_OK, "btn_OK", "OK"},
        {WinApacheConf::ID_HELP_HOST_IP, "btn_Help_HostIP", "?"},
        {WinApacheConf::ID_ALIAS_ADD, "btn_AliasAdd", "+"},
        {WinApacheConf::ID_DIRECTORY_REMOVE, "btn_DirectoryRemove", "-"},
        {WinApacheConf::ID_OTHERS_ADD, "btn_OthersAdd", "+"},
    };
    for (const auto& control : expected) {
        wxWindow* window = wxWindow::FindWindowById(control.id, &dialog);
        ASSERT_NE(window, nullptr) << control.name;
        EXPECT_EQ(window->GetName(), control.name);
        EXPECT_EQ(window->GetLabel(), control.label) << control.name;
    }
    EXPECT_EQ(Shown(Control<wxStaticText>(&dialog, WinApacheConf::ID_MODULE_DESCRIPTION)),
              "No Description");
    EXPECT_EQ(Control<wxHyperlinkCtrl>(&dialog, WinApacheConf::ID_MODULE_LINK)->GetLabel(), "link");
    EXPECT_EQ(Modules(&dialog)->GetName(), "listbox_Modules");

    ASSERT_TRUE(WaitFor([&] { return !dialog.IsBusy(); }));
    EXPECT_FALSE(loading->GetParent()->IsShown());
    EXPECT_TRUE(Control<wxButton>(&dialog, WinApacheConf::ID_OK)->IsEnabled());
    EXPECT_EQ(Modules(&dialog)->GetCount(), TemplateSwitches::ListModuleLines(paths).size());
}

// The scenario: a host entered through the page and the three small dialogs reaches the
// template in the writer's layout, and is what the dialog shows when it is opened again.
TEST_F(WinApacheConfTest, AHostEnteredAndSavedIsWrittenInTheWritersLayoutAndReadBack) {
    const std::string original = ReadBytes(Source());
    EXPECT_EQ(RunDialog([&](WinApacheConf& dialog) {
                  EnterTestHost(dialog);
                  Save(dialog);
              }),
              wxID_OK);

    VirtualHostRecord expected;
    expected.address = "*:80";
    expected.ServerName = "test.local";
    expected.ServerAlias = "www.test.local";
    expected.DocumentRoot = "{DOCUMENTPATH}/test";
    expected.aliases.push_back({"/img", "{DOCUMENTPATH}/img"});
    DirectoryRecord directory;
    directory.path = "{DOCUMENTPATH}/test";
    directory.AllowOverride = true;
    directory.FollowSymLinks = true;
    directory.Indexes = true;
    directory.others.push_back("Order allow,deny");
    expected.directories.push_back(directory);
    // Nothing but the block changed: the writer makes the same file of the original template.
    TempDir scratch("kovix-apache-conf");
    WriteBytes(scratch.File("httpd_source.conf"), original);
    VirtualHostFile model;
    model.path = scratch.File("httpd_source.conf");
    model.hosts.push_back(expected);
    ASSERT_TRUE(WriteVirtualHosts(model));
    const std::string saved = ReadBytes(Source());
    EXPECT_EQ(saved, ReadBytes(model.path));
    ASSERT_GE(saved.size(), std::strlen(TEST_BLOCK));
    EXPECT_EQ(saved.substr(saved.size() - std::strlen(TEST_BLOCK)), TEST_BLOCK);

    EXPECT_EQ(RunDialog([&](WinApacheConf& dialog) {
                  EXPECT_EQ(Rows(Hosts(&dialog)), std::vector<wxString>{"test.local *:80"});
                  SelectRow(Hosts(&dialog), 0);
                  EXPECT_EQ(Field(&dialog, WinApacheConf::ID_SERVER_ALIAS), "www.test.local");
                  EXPECT_EQ(Field(&dialog, WinApacheConf::ID_DOCUMENT_ROOT), "{DOCUMENTPATH}/test");
                  EXPECT_EQ(Rows(List(&dialog, WinApacheConf::ID_ALIASES)),
                            std::vector<wxString>{"/img -> {DOCUMENTPATH}/img"});
                  Cancel(dialog);
              }),
              wxID_CANCEL);
}

TEST_F(WinApacheConfTest, ANewHostSavedUntouchedIsAnEmptyBlockAtLocalost) {
    RunDialog([&](WinApacheConf& dialog) {
        // Without a selected host the record buttons do nothing.
        for (int id : {WinApacheConf::ID_ALIAS_ADD, WinApacheConf::ID_DIRECTORY_ADD,
                       WinApacheConf::ID_OTHERS_ADD, WinApacheConf::ID_REMOVE_HOST})
            ClickButton(&dialog, id);
        DoubleClickRow(List(&dialog, WinApacheConf::ID_ALIASES), wxNOT_FOUND);
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        Save(dialog);
    });
    const std::string saved = ReadBytes(Source());
    const std::string block = "\n<VirtualHost localost>\n#KOVIX Generate Virtual Host\n"
                              "</VirtualHost>\n";
    ASSERT_GE(saved.size(), block.size());
    EXPECT_EQ(saved.substr(saved.size() - block.size()), block);
}

TEST_F(WinApacheConfTest, RecordsAreRemovedAndHostsWithoutNameAreTheMainServer) {
    RunDialog([&](WinApacheConf& dialog) {
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
        SelectRow(Hosts(&dialog), 1);
        Type(&dialog, WinApacheConf::ID_SERVER_NAME, "second.local");
        ClickButton(&dialog, WinApacheConf::ID_OTHERS_ADD);
        ClickButton(&dialog, WinApacheConf::ID_OTHERS_ADD);
        wxListBox* others = List(&dialog, WinApacheConf::ID_OTHERS);
        EXPECT_EQ(others->GetCount(), 2u);
        auto* remove = Control<wxButton>(&dialog, WinApacheConf::ID_OTHERS_REMOVE);
        EXPECT_TRUE(remove->IsEnabled());
        ClickButton(&dialog, WinApacheConf::ID_OTHERS_REMOVE);
        EXPECT_EQ(Rows(others), std::vector<wxString>{"enter your custom setting here"});
        EXPECT_FALSE(remove->IsEnabled());
        SelectRow(others, 0);
        EXPECT_TRUE(remove->IsEnabled());

        // Moving the selection commits the fields of the host left.
        SelectRow(Hosts(&dialog), 0);
        EXPECT_EQ(Rows(Hosts(&dialog)),
                  (std::vector<wxString>{"Apache Main localost", "second.local localost"}));
        EXPECT_TRUE(others->IsEmpty());
        ClickButton(&dialog, WinApacheConf::ID_REMOVE_HOST);
        EXPECT_EQ(Rows(Hosts(&dialog)), std::vector<wxString>{"second.local localost"});
        EXPECT_TRUE(Field(&dialog, WinApacheConf::ID_SERVER_NAME).empty());
        Save(dialog);
    });
    VirtualHostFile file;
    file.path = Source();
    ASSERT_TRUE(ReadVirtualHosts(file));
    ASSERT_EQ(file.hosts.size(), 1u);
    EXPECT_EQ(file.hosts[0].ServerName, "second.local");
    EXPECT_EQ(file.hosts[0].others, std::vector<wxString>{"enter your custom setting here"});
}

TEST_F(WinApacheConfTest, ModulePageDescribesModulesAndOkSwitchesTheirLines) {
    HelpCatalogue catalogue;
    RunDialog([&](WinApacheConf& dialog) {
        wxCheckListBox* modules = Modules(&dialog);
        const int rewrite = RowOf(modules, "rewrite_module");
        const int expires = RowOf(modules, "expires_module");
        const int php = RowOf(modules, TemplateSwitches::PHP_MODULE_LABEL);
        ASSERT_NE(rewrite, wxNOT_FOUND);
        ASSERT_NE(expires, wxNOT_FOUND);
        ASSERT_NE(php, wxNOT_FOUND);
        EXPECT_TRUE(modules->IsChecked(rewrite));
        EXPECT_FALSE(modules->IsChecked(expires));

        auto* description = Control<wxStaticText>(&dialog, WinApacheConf::ID_MODULE_DESCRIPTION);
        auto* link = Control<wxHyperlinkCtrl>(&dialog, WinApacheConf::ID_MODULE_LINK);
        SelectRow(modules, rewrite);
        EXPECT_EQ(Shown(description), Unwrapped(catalogue.ModuleDescription("rewrite_module")));
        EXPECT_EQ(link->GetURL(), "http://httpd.apache.org/docs/2.2/mod/mod_rewrite.html");
        SelectRow(modules, php);
        EXPECT_EQ(Shown(description), "No Description Available");
        EXPECT_EQ(link->GetURL(), "");

        modules->Check(rewrite, false);
        modules->Check(expires, true);
        Save(dialog);
    });
    const std::string saved = ReadBytes(Source());
    EXPECT_NE(saved.find("\n#LoadModule rewrite_module modules/mod_rewrite.so\n"),
              std::string::npos);
    EXPECT_NE(saved.find("\nLoadModule expires_module modules/mod_expires.so\n"),
              std::string::npos);
    EXPECT_NE(saved.find("\nLoadModule {PHPMODULENAME} "), std::string::npos);
}

TEST_F(WinApacheConfTest, CancelWritesNothing) {
    const std::string original = ReadBytes(Source());
    EXPECT_EQ(RunDialog([&](WinApacheConf& dialog) {
                  ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
                  Modules(&dialog)->Check(0, !Modules(&dialog)->IsChecked(0));
                  Cancel(dialog);
              }),
              wxID_CANCEL);
    EXPECT_EQ(ReadBytes(Source()), original);
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
        Cancel(dialog);
    });
}

TEST_F(WinApacheConfTest, OpensFromTheMainWindow) {
    EXPECT_TRUE(
        OpensFromMainWindow<WinApacheConf>(WinKovix::ID_APACHE_CONF, WinApacheConf::ID_CANCEL));
}

// Closing at any point stops and joins the worker; under ThreadSanitizer this is the race test.
TEST_F(WinApacheConfTest, OpensLoadsSavesAndCloses50Times) {
    for (int round = 0; round < 50; ++round) {
        { WinApacheConf closedWhileLoading(nullptr, paths); }
        ASSERT_EQ(RunDialog([&](WinApacheConf& dialog) {
                      if (round % 10 == 0)
                          ClickButton(&dialog, WinApacheConf::ID_ADD_HOST);
                      Save(dialog);
                  }),
                  wxID_OK);
    }
    VirtualHostFile file;
    file.path = Source();
    ASSERT_TRUE(ReadVirtualHosts(file));
    EXPECT_EQ(file.hosts.size(), 5u);
}
