#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "core/sites/LocalCertificate.h"
#include "core/sites/SiteConfig.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/utils.h>

#include <algorithm>

#include <sys/stat.h>

namespace {

TEST(SiteNames, FolderNamesBecomeHostLabelsOrNothing) {
    const std::pair<const char*, const char*> cases[] = {
        {"My Project", "my-project"},
        {"shop", "shop"},
        {"Shop_2024", "shop-2024"},
        {"a.b", "a-b"},
        {"caf\xc3\xa9", ""},
        {"___", ""},
        {"-lead", ""},
        {"trail ", ""},
        {"x", "x"},
        {"", ""},
    };
    for (const auto& [folder, name] : cases)
        EXPECT_EQ(SiteList::NameOf(wxString::FromUTF8(folder)), name) << folder;
    EXPECT_EQ(SiteList::NameOf(wxString::FromUTF8("caf\xc3\xa9s-bar")), "caf-s-bar");
    EXPECT_EQ(SiteList::NameOf(wxString('a', 63)), wxString('a', 63));
    EXPECT_EQ(SiteList::NameOf(wxString('a', 64)), "");
}

// A tree whose mkcert is a script that records its arguments and CAROOT, and writes the two files
// it is asked for unless told to fail.
class SitesTest : public testing::Test {
protected:
    SitesTest() : tree("kovix sites"), paths(tree.Path(), settings) {
        InitLangTable(settings, "en");
        settings.SetPortText("8080");
        settings.SetString(AppSettings::HTTPS_PORT, "8443");
        for (const char* folder : {"apache/conf", "www/kovix", "www/.git", "www/My Project",
                                   "www/my-project", "www/shop", "www/___"})
            MakeTreeFolder(tree.Path(), folder);
        WriteTreeFile(tree.Path(), "www/index.html", "main");
        WriteTreeFile(tree.Path(), "fake-mkcert",
                      "#!/bin/sh\n"
                      "echo \"$CAROOT|$*\" >> \"$0.calls\"\n"
                      "[ -n \"$FAIL\" ] && { echo 'ERROR: broken'; exit 1; }\n"
                      "mkdir -p \"$CAROOT\" && touch \"$CAROOT/rootCA.pem\" \"$2\" \"$4\"\n");
        chmod(tree.File("fake-mkcert").utf8_str(), 0755);
        wxSetEnv("KOVIX_MKCERT", tree.File("fake-mkcert"));
    }
    ~SitesTest() override {
        wxUnsetEnv("KOVIX_MKCERT");
        wxUnsetEnv("FAIL");
    }

    std::string Live() const { return ReadBytes(paths.SitesLiveConfig()); }
    std::string Calls() const {
        return wxFileExists(tree.File("fake-mkcert.calls"))
                   ? ReadBytes(tree.File("fake-mkcert.calls"))
                   : "";
    }

    TempDir tree;
    AppSettings settings;
    InstallPaths paths;
};

TEST_F(SitesTest, ScanListsSitesSkipsInvalidAndSameNamesAndIgnoresHiddenAndOwnFolders) {
    const SiteList list = SiteList::Scan(paths.WwwFolder());
    ASSERT_EQ(list.sites.size(), 2u);
    EXPECT_EQ(list.sites[0].name, "my-project");
    EXPECT_EQ(list.sites[0].folder, tree.File("www/My Project"));
    EXPECT_EQ(list.sites[1].name, "shop");
    ASSERT_EQ(list.skipped.size(), 2u);
    EXPECT_EQ(list.skipped[0].folder, tree.File("www/___"));
    EXPECT_NE(list.skipped[0].reason.Find("no valid address"), wxNOT_FOUND);
    EXPECT_EQ(list.skipped[1].folder, tree.File("www/my-project"));
    EXPECT_EQ(list.skipped[1].reason, "the folder \"My Project\" has the same address");
    EXPECT_TRUE(SiteList::Scan(tree.File("nothing")).sites.empty());
}

TEST_F(SitesTest, GenerationWritesOneHostPerSiteAfterTheMainSiteAndRemovesTheFileWhenOff) {
    const wxString problems = SiteConfig(paths).Generate().leftOut;
    EXPECT_NE(problems.Find(tree.File("www/___") + " is not served as a site"), wxNOT_FOUND);
    const std::string live = Live();
    const std::string www = tree.File("www").utf8_string();
    EXPECT_NE(live.find("<VirtualHost *:8080>\n\tServerName localhost\n\tDocumentRoot \"" + www +
                        "\"\n</VirtualHost>\n<VirtualHost *:8080>\n\tServerName "
                        "my-project.localhost\n\tDocumentRoot \"" +
                        www + "/My Project\"\n"),
              std::string::npos)
        << live;
    EXPECT_NE(live.find("ServerName shop.localhost"), std::string::npos);
    EXPECT_EQ(live.find("SSL"), std::string::npos) << "HTTPS is off by default";
    EXPECT_EQ(Calls(), "");

    // A template kept from before sites existed is said to leave them out.
    WriteTreeFile(tree.Path(), "apache/conf/httpd_source.conf", "Listen {APACHE_PORT}\n");
    EXPECT_NE(SiteConfig(paths).Generate().leftOut.Find(
                  "The Apache template " + paths.ApacheSourceConfig() +
                  " does not include conf/sites.conf, so the sites and HTTPS are not served"),
              wxNOT_FOUND);

    settings.SetBool(AppSettings::SITES_ENABLED, false);
    EXPECT_EQ(SiteConfig(paths).Generate().leftOut, "");
    EXPECT_FALSE(wxFileExists(paths.SitesLiveConfig()));
}

// Apache would read the stale file: that is no part left out but a failed generation.
TEST_F(SitesTest, AFileThatCannotBeWrittenIsAFailure) {
    const wxLogNull quiet;
    ASSERT_TRUE(wxMkdir(paths.SitesLiveConfig()));
    const GenerationReport report = SiteConfig(paths).Generate();
    EXPECT_TRUE(report.failures.StartsWith("Cannot write " + paths.SitesLiveConfig()))
        << report.failures;
    EXPECT_EQ(report.leftOut.Find("sites.conf"), wxNOT_FOUND) << report.leftOut;
}

TEST_F(SitesTest, HttpsCertificateIsMadeInTheTreeOnlyWhenTheNamesChange) {
    settings.SetBool(AppSettings::HTTPS_ENABLED, true);
    settings.SetBool(AppSettings::SITES_ENABLED, false);
    EXPECT_EQ(SiteConfig(paths).Generate().leftOut, "");
    const std::string live = Live();
    EXPECT_NE(live.find("Listen 127.0.0.1:8443 https\n"), std::string::npos) << live;
    EXPECT_NE(live.find("https\n<VirtualHost *:8443>\n\tServerName localhost"), std::string::npos)
        << live;
    EXPECT_EQ(live.find("*:8080"), std::string::npos) << "sites off: no host on Apache's port";
    const std::string caRoot = paths.CertificateAuthorityFolder().utf8_string();
    EXPECT_EQ(Calls(), caRoot + "|-cert-file " + paths.SiteCertificate().utf8_string() +
                           " -key-file " + paths.SiteCertificateKey().utf8_string() +
                           " localhost 127.0.0.1 ::1\n");

    SiteConfig(paths).Generate().leftOut; // same names: nothing made
    settings.SetBool(AppSettings::SITES_ENABLED, true);
    SiteConfig(paths).Generate().leftOut;
    MakeTreeFolder(tree.Path(), "www/blog");
    SiteConfig(paths).Generate().leftOut;
    const std::string calls = Calls();
    ASSERT_EQ(std::count(calls.begin(), calls.end(), '\n'), 3) << calls;
    EXPECT_NE(calls.find("::1 blog.localhost my-project.localhost shop.localhost\n"),
              std::string::npos)
        << calls;
    EXPECT_NE(Live().find("<VirtualHost *:8443>\n\tServerName blog.localhost"), std::string::npos);
}

TEST_F(SitesTest, HttpsThatCannotBeMadeIsLeftOutAndSaysWhy) {
    settings.SetBool(AppSettings::HTTPS_ENABLED, true);
    wxSetEnv("KOVIX_MKCERT", tree.File("no-such-mkcert"));
    wxString problems = SiteConfig(paths).Generate().leftOut;
    EXPECT_NE(problems.Find("HTTPS is not served: the certificate tool " +
                            tree.File("no-such-mkcert") + " cannot be run"),
              wxNOT_FOUND)
        << problems;
    EXPECT_EQ(Live().find("SSL"), std::string::npos);
    EXPECT_NE(Live().find("ServerName shop.localhost"), std::string::npos) << "sites still served";

    wxSetEnv("KOVIX_MKCERT", tree.File("fake-mkcert"));
    wxSetEnv("FAIL", "1");
    problems = SiteConfig(paths).Generate().leftOut;
    EXPECT_NE(problems.Find("mkcert made no certificate:\nERROR: broken"), wxNOT_FOUND) << problems;
    EXPECT_EQ(Live().find("SSL"), std::string::npos);

    // A file where the authority's folder should be.
    wxUnsetEnv("FAIL");
    ASSERT_TRUE(wxFileName::Rmdir(paths.CertificateAuthorityFolder(), wxPATH_RMDIR_RECURSIVE));
    WriteTreeFile(tree.Path(), "ssl/ca", "");
    problems = SiteConfig(paths).Generate().leftOut;
    EXPECT_NE(problems.Find("the folder of the local authority " +
                            paths.CertificateAuthorityFolder() + " cannot be written"),
              wxNOT_FOUND)
        << problems;
    EXPECT_FALSE(wxFileExists(paths.SiteCertificate()));
}

TEST_F(SitesTest, SiteAddressesLeaveOutTheUsualPorts) {
    EXPECT_EQ(paths.SiteUrl("shop", false), "http://shop.localhost:8080/");
    EXPECT_EQ(paths.SiteUrl("shop", true), "https://shop.localhost:8443/");
    settings.SetPort(80);
    settings.SetString(AppSettings::HTTPS_PORT, "443");
    EXPECT_EQ(paths.SiteUrl("shop", false), "http://shop.localhost/");
    EXPECT_EQ(paths.SiteUrl("shop", true), "https://shop.localhost/");
}

} // namespace
