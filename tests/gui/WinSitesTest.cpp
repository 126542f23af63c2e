#include "gui/sites/WinSites.h"
#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "gui/GuiTesting.h"
#include "support/ScopedEnv.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/listctrl.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

#include <sys/stat.h>

namespace {

class WinSitesTest : public testing::Test {
protected:
    void SetUp() override {
        InitLangTable(settings, "en");
        settings.SetPort(8080);
        settings.SetString(AppSettings::HTTPS_PORT, "8443");
        for (const char* folder : {"www/shop", "www/My Project", "www/___", "www/kovix"})
            MakeTreeFolder(tree.Path(), folder);
    }

    TempDir tree;
    AppSettings settings;
    InstallPaths paths{tree.Path(), settings};
};

// Opening needs a selection, HTTPS also needs HTTPS on; the switch and port are stored at once.
TEST_F(WinSitesTest, ListsTheSitesAndStoresTheHttpsSwitchAndPortAtOnce) {
    WinSites sites(nullptr, settings, paths);
    WhenModal([&] {
        auto* list = Named<wxListCtrl>(&sites, "list_Sites");
        ASSERT_EQ(list->GetItemCount(), 2);
        EXPECT_EQ(list->GetItemText(0), "http://my-project.localhost:8080/");
        EXPECT_EQ(list->GetItemText(0, 1), "My Project");
        EXPECT_NE(Named<wxStaticText>(&sites, "label_Note")->GetLabel().Find("www/___"),
                  wxNOT_FOUND);
        auto* http = Control<wxButton>(&sites, WinSites::ID_OPEN_HTTP);
        auto* https = Control<wxButton>(&sites, WinSites::ID_OPEN_HTTPS);
        EXPECT_FALSE(http->IsEnabled());
        list->SetItemState(0, wxLIST_STATE_SELECTED, wxLIST_STATE_SELECTED);
        EXPECT_TRUE(WaitFor([&] { return http->IsEnabled(); }));
        EXPECT_FALSE(https->IsEnabled());

        auto* serve = Control<wxCheckBox>(&sites, WinSites::ID_HTTPS);
        auto* port = Control<wxSpinCtrl>(&sites, WinSites::ID_HTTPS_PORT);
        EXPECT_EQ(port->GetValue(), 8443);
        port->SetValue(9443);
        wxSpinEvent changed(wxEVT_SPINCTRL, WinSites::ID_HTTPS_PORT);
        changed.SetPosition(9443);
        port->GetEventHandler()->ProcessEvent(changed);
        serve->SetValue(true);
        wxCommandEvent toggled(wxEVT_CHECKBOX, WinSites::ID_HTTPS);
        toggled.SetInt(1);
        serve->GetEventHandler()->ProcessEvent(toggled);
        EXPECT_TRUE(https->IsEnabled());
        ClickButton(&sites, WinSites::ID_CLOSE);
    });
    sites.ShowModal();
    AppSettings saved;
    saved.Load(paths.SettingsFile());
    EXPECT_TRUE(saved.GetHttpsEnabled());
    EXPECT_EQ(saved.GetHttpsPort(), 9443);
}

// A kovix.ini that cannot be replaced (here a folder of that name) is said at once.
TEST_F(WinSitesTest, ASettingsFileThatCannotBeWrittenIsSaid) {
    MakeTreeFolder(tree.Path(), "kovix.ini");
    WinSites sites(nullptr, settings, paths);
    wxString message, caption;
    WhenModal([&] {
        auto* serve = Control<wxCheckBox>(&sites, WinSites::ID_HTTPS);
        serve->SetValue(true);
        wxCommandEvent toggled(wxEVT_CHECKBOX, WinSites::ID_HTTPS);
        toggled.SetInt(1);
        wxTEST_DIALOG(serve->GetEventHandler()->ProcessEvent(toggled),
                      ExpectMessage(message, caption));
        ClickButton(&sites, WinSites::ID_CLOSE);
    });
    sites.ShowModal();
    EXPECT_EQ(message, "Cannot write " + paths.SettingsFile() + ": Is a directory");
}

// The worker runs mkcert (here a script) and its answer comes back as a message, success or not.
TEST_F(WinSitesTest, TrustRunsMkcertOnTheWorkerAndSaysWhatCameOfIt) {
    const wxString fake = tree.File("fake-mkcert");
    WriteTreeFile(tree.Path(), "fake-mkcert",
                  "#!/bin/sh\n[ -n \"$FAIL\" ] && { echo 'Warning: \"certutil\" is not available'; "
                  "exit 0; }\n[ \"$TRUST_STORES\" = nss ] && [ \"$1\" = -install ] && "
                  "echo 'The local CA is now installed in the Firefox and/or Chrome/Chromium "
                  "trust store'\n");
    chmod(fake.utf8_str(), 0755);
    const ScopedEnv mkcert("KOVIX_MKCERT", fake);
    auto* sites = new WinSites(nullptr, settings, paths);
    sites->Show();
    auto* trust = Control<wxButton>(sites, WinSites::ID_TRUST);
    wxString message, caption;
    wxTEST_DIALOG(
        {
            ClickButton(sites, WinSites::ID_TRUST);
            EXPECT_TRUE(WaitFor([&] { return trust->IsEnabled(); }));
        },
        ExpectMessage(message, caption));
    EXPECT_TRUE(message.StartsWith("This user's browsers (Firefox, Chromium) now trust"))
        << message;
    EXPECT_NE(message.Find("sudo cp \"" + tree.File("ssl/ca/rootCA.pem") + "\""), wxNOT_FOUND);

    const ScopedEnv fail("FAIL", "1");
    wxTEST_DIALOG(
        {
            ClickButton(sites, WinSites::ID_TRUST);
            EXPECT_TRUE(WaitFor([&] { return trust->IsEnabled(); }));
        },
        ExpectMessage(message, caption));
    EXPECT_TRUE(message.StartsWith("The local authority is not trusted: ")) << message;
    EXPECT_NE(message.Find("certutil"), wxNOT_FOUND);
    CloseWindow(sites);
}

} // namespace
