// Sites on NAME.localhost and local HTTPS, against the real Apache and mkcert of a tree copy.
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <wx/filefn.h>
#include <wx/filename.h>

#include <fstream>

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class Sites : public testing::Test {
protected:
    Sites() {
        std::ofstream(tree.File("kovix.ini").utf8_string(), std::ios::app)
            << "HTTPS_PORT = \"" << httpsPort << "\"\n";
        Put("www/probe.txt", "main");
        Put("www/My Project/index.html", "project");
        Put("www/shop/index.html", "shop");
        wxMkdir(tree.File("www/___"));
    }
    ~Sites() override { Ctl({"stop", "apache"}); }

    CommandResult Ctl(std::vector<wxString> arguments) const {
        return tree.Ctl(KOVIXCTL_PATH, std::move(arguments));
    }
    void Put(const wxString& relativePath, const std::string& bytes) const {
        wxFileName::Mkdir(wxFileName(tree.File(relativePath)).GetPath(), 0755, wxPATH_MKDIR_FULL);
        WriteBytes(tree.File(relativePath), bytes);
    }

    // curl's status line and body for url, connecting to address; "000" when nothing answered
    // or the certificate was refused.
    std::string Get(const wxString& url, const wxString& address = "127.0.0.1",
                    bool withAuthority = true) const {
        const wxString host = url.AfterFirst('/').AfterFirst('/').BeforeFirst('/');
        std::vector<wxString> argv{
            "curl",        "-s",    "-w",        " %{http_code}",      "--max-time", "10",
            "--interface", address, "--resolve", host + ":" + address, url};
        if (withAuthority)
            argv.insert(argv.begin() + 1, {"--cacert", tree.File("ssl/ca/rootCA.pem")});
        return RunCommand(argv).out.utf8_string();
    }
    std::string Status(const wxString& url, const wxString& address = "127.0.0.1") const {
        const std::string reply = Get(url, address);
        return reply.substr(reply.size() - 3);
    }
    wxString Http(const wxString& name, const wxString& path = "/") const {
        return wxString::Format("http://%s:%d%s", name, tree.ApachePort(), path);
    }
    wxString Https(const wxString& name, const wxString& path = "/") const {
        return wxString::Format("https://%s:%d%s", name, httpsPort, path);
    }
    // Apache's own check of the generated configuration.
    CommandResult SyntaxCheck() const {
        return RunShell("cd \"" + tree.File("apache") +
                        "\" && PHP_INI_SCAN_DIR= bin/httpd -t -f \"" +
                        tree.File("apache/conf/httpd.conf") + "\"");
    }

    TestTree tree{KOVIX_SOURCE_DIR};
    int httpsPort = TestTree::FreePort();
};

TEST_F(Sites, FoldersAnswerAtTheirOwnNamesOverHttpAndTrustedHttps) {
    EXPECT_EQ(Ctl({"https", "on"}).exitCode, 0);
    const CommandResult start = Ctl({"start", "apache"});
    ASSERT_EQ(start.exitCode, 0) << start.err;
    EXPECT_EQ(start.err, "The folder " + tree.File("www/___") +
                             " is not served as a site: its name gives no valid address (letters "
                             "a-z, digits and \"-\", not at either end).\n");

    EXPECT_EQ(Get(Http("my-project.localhost")), "project 200");
    EXPECT_EQ(Get(Http("shop.localhost")), "shop 200");
    EXPECT_EQ(Status(Http("shop.localhost", "/probe.txt")), "404");
    for (const char* main : {"localhost", "127.0.0.1"})
        EXPECT_EQ(Get(Http(main, "/probe.txt")), "main 200") << main;
    EXPECT_EQ(Get(Https("shop.localhost")), "shop 200");
    EXPECT_EQ(Get(Https("localhost", "/probe.txt")), "main 200");
    EXPECT_EQ(Get(Https("shop.localhost"), "127.0.0.1", false), " 000") << "unknown authority";

    const wxString names = RunCommand({"openssl", "x509", "-noout", "-ext", "subjectAltName", "-in",
                                       tree.File("ssl/localhost.pem")})
                               .out;
    EXPECT_NE(names.Find("DNS:localhost, DNS:my-project.localhost, DNS:shop.localhost, IP "
                         "Address:127.0.0.1, IP Address:0:0:0:0:0:0:0:1"),
              wxNOT_FOUND)
        << names;

    // Offline: on both ports, an address other than this computer's own (127.0.0.2 is not
    // 127.0.0.1) cannot even connect.
    for (const wxString& url :
         {Http("shop.localhost"), Https("shop.localhost"), Http("localhost", "/probe.txt")})
        EXPECT_EQ(Status(url, "127.0.0.2"), "000") << url;

    nlohmann::json listing = nlohmann::json::parse(Ctl({"sites", "--json"}).out.utf8_string());
    ASSERT_EQ(listing.size(), 2u);
    EXPECT_EQ(listing[0]["name"], "my-project");
    EXPECT_EQ(listing[0]["folder"], tree.File("www/My Project").utf8_string());
    EXPECT_EQ(listing[1]["http"], Http("shop.localhost").utf8_string());
    EXPECT_EQ(listing[1]["https"], Https("shop.localhost").utf8_string());

    // A folder made while Apache runs is served from its next start, with a new certificate.
    Put("www/Blog/index.html", "blog");
    EXPECT_EQ(Get(Http("blog.localhost", "/probe.txt")), "main 200") << "not yet a site";
    ASSERT_EQ(Ctl({"stop", "apache"}).exitCode, 0);
    ASSERT_EQ(Ctl({"start", "apache"}).exitCode, 0);
    EXPECT_EQ(Get(Http("blog.localhost")), "blog 200");
    EXPECT_EQ(Get(Https("blog.localhost")), "blog 200");
    EXPECT_EQ(SyntaxCheck().err, "Syntax OK\n");
}

// Folder names that Apache would misread unless written with care.
TEST_F(Sites, SitesOffAndHttpsOffLeaveNoSiteConfigurationAndApacheAcceptsEachCombination) {
    for (const char* folder : {"www/say \"hi\" now", "www/back\\slash", "www/line\nbreak"})
        wxMkdir(tree.File(folder));
    for (const char* https : {"on", "off"}) {
        for (bool sites : {true, false}) {
            Ctl({"https", https});
            std::ofstream(tree.File("kovix.ini").utf8_string(), std::ios::app)
                << "SITES_ENABLED = \"" << (sites ? "1" : "0") << "\"\n";
            Ctl({"generate"});
            const CommandResult check = SyntaxCheck();
            EXPECT_EQ(check.exitCode, 0) << https << sites << check.err;
            EXPECT_EQ(check.err, "Syntax OK\n");
            EXPECT_EQ(wxFileExists(tree.File("apache/conf/sites.conf")),
                      sites || wxString(https) == "on");
        }
    }
    EXPECT_EQ(Ctl({"sites"}).out, "") << "sites off";
    std::ofstream(tree.File("kovix.ini").utf8_string(), std::ios::app) << "SITES_ENABLED = \"1\"\n";
    const CommandResult listing = Ctl({"sites"});
    EXPECT_NE(listing.out.Find("http://say--hi--now.localhost"), wxNOT_FOUND) << listing.out;
    EXPECT_NE(listing.out.Find("http://back-slash.localhost"), wxNOT_FOUND);
    EXPECT_NE(listing.err.Find("break is not served as a site: its name holds a line break"),
              wxNOT_FOUND)
        << listing.err;
}

// Each part that cannot be made is said, and Apache starts without it.
TEST_F(Sites, MissingMkcertUnwritableAuthorityFolderOrHeldPortLeaveHttpsOutButApacheStarts) {
    Ctl({"https", "on"});
    const wxString missing = tree.File("no mkcert here");
    {
        const ScopedEnv noMkcert("KOVIX_MKCERT", missing);
        const CommandResult start = Ctl({"start", "apache"});
        ASSERT_EQ(start.exitCode, 0) << start.err;
        EXPECT_NE(start.err.Find("HTTPS is not served: the certificate tool " + missing +
                                 " cannot be run (install the mkcert package)."),
                  wxNOT_FOUND)
            << start.err;
    }
    EXPECT_EQ(Get(Http("shop.localhost")), "shop 200");
    EXPECT_EQ(Get(Https("shop.localhost")), " 000");
    ASSERT_EQ(Ctl({"stop", "apache"}).exitCode, 0);

    // A file where the authority's folders go.
    ASSERT_TRUE(wxFileName::Rmdir(tree.File("ssl"), wxPATH_RMDIR_RECURSIVE));
    WriteBytes(tree.File("ssl"), "");
    const CommandResult start = Ctl({"start", "apache"});
    ASSERT_EQ(start.exitCode, 0) << start.err;
    EXPECT_NE(start.err.Find("HTTPS is not served: the folder of the local authority " +
                             tree.File("ssl/ca") + " cannot be written."),
              wxNOT_FOUND)
        << start.err;
    EXPECT_EQ(Get(Http("my-project.localhost")), "project 200");
    ASSERT_EQ(Ctl({"stop", "apache"}).exitCode, 0);

    wxRemoveFile(tree.File("ssl"));
    const int holder = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(httpsPort));
    ASSERT_EQ(bind(holder, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    listen(holder, 4);
    const CommandResult held = Ctl({"start", "apache"});
    close(holder);
    ASSERT_EQ(held.exitCode, 0) << held.err;
    EXPECT_NE(held.err.Find(wxString::Format(
                  "HTTPS is not served: the HTTPS port %d is already used by another program.",
                  httpsPort)),
              wxNOT_FOUND)
        << held.err;
    EXPECT_EQ(Get(Http("shop.localhost")), "shop 200");
}

// An ordinary user whose tree holds an authority folder it may not write: said, HTTPS left out.
TEST_F(Sites, AnAuthorityFolderTheUserMayNotWriteLeavesHttpsOut) {
    Ctl({"https", "on"});
    wxFileName::Mkdir(tree.File("ssl/ca"), 0755, wxPATH_MKDIR_FULL);
    ASSERT_EQ(RunCommand({"chown", "-R", "nobody:nogroup", tree.Root()}).exitCode, 0);
    ASSERT_EQ(chown(tree.File("ssl/ca").utf8_str(), 0, 0), 0);
    chmod(wxFileName(tree.Root()).GetPath().utf8_str(), 0711); // the temporary folder above
    const CommandResult generate =
        RunCommand({"setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", KOVIXCTL_PATH,
                    "--root", tree.Root(), "generate"});
    EXPECT_EQ(generate.exitCode, 0) << generate.err;
    EXPECT_NE(generate.err.Find("HTTPS is not served: the folder of the local authority " +
                                tree.File("ssl/ca") + " cannot be written."),
              wxNOT_FOUND)
        << generate.err;
    const std::string live = ReadBytes(tree.File("apache/conf/sites.conf"));
    EXPECT_EQ(live.find("SSL"), std::string::npos);
    EXPECT_NE(live.find("ServerName shop.localhost"), std::string::npos);
}

// The authority goes into this user's browser database, never into the system's.
TEST_F(Sites, TrustInstallsTheAuthorityForThisUsersBrowsers) {
    const wxString home = tree.File("home");
    const wxString database = "sql:" + home + "/.pki/nssdb";
    wxFileName::Mkdir(home + "/.pki/nssdb", 0700, wxPATH_MKDIR_FULL);
    ASSERT_EQ(RunCommand({"certutil", "-N", "--empty-password", "-d", database}).exitCode, 0);
    const ScopedEnv ownHome("HOME", home);
    const CommandResult trust = Ctl({"https", "trust"});
    ASSERT_EQ(trust.exitCode, 0) << trust.err;
    EXPECT_NE(trust.out.Find("sudo cp \"" + tree.File("ssl/ca/rootCA.pem") +
                             "\" /usr/local/share/ca-certificates/kovix-local-authority.crt && "
                             "sudo update-ca-certificates"),
              wxNOT_FOUND)
        << trust.out;
    EXPECT_NE(RunCommand({"certutil", "-L", "-d", database}).out.Find("mkcert development CA"),
              wxNOT_FOUND);
}

} // namespace
