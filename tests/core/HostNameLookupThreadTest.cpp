#include "core/net/HostNameLookupThread.h"
#include "support/LocalHttpServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

// Runs a lookup against hosts and waits for its answers (at most 20 s).
std::unique_ptr<HostNameLookupThread> Lookup(const wxString& ipService,
                                             const wxString& productSite) {
    auto thread = HostNameLookupThread::Start({ipService, productSite});
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!thread->IsResolved() && std::chrono::steady_clock::now() < giveUp)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_TRUE(thread->IsResolved());
    return thread;
}

} // namespace

TEST(HostNameLookupFetch, AsksEachServiceForItsPageAndReadsUtf8) {
    LocalHttpServer ipService;
    LocalHttpServer productSite;
    ipService.Serve("/", "Your address: 203.0.113.9 (seen via 10.0.0.1)\n");
    productSite.Serve(HostNameLookupThread::VERSION_PATH,
                      "note = \"1.3 \xC3\xA9t\xC3\xA9\"\nversion = \"1.2\"\n");
    auto thread = Lookup(ipService.HostAndPort(), productSite.HostAndPort());
    EXPECT_EQ(thread->PublicIp(), "203.0.113.9");
    EXPECT_EQ(thread->LatestVersion(), wxString::FromUTF8("1.3 \xC3\xA9t\xC3\xA9"));

    ASSERT_EQ(ipService.Requests().size() + productSite.Requests().size(), 2u);
    EXPECT_EQ(ipService.Requests()[0].rfind("GET / HTTP/1.", 0), 0u);
    const std::string versionRequest = productSite.Requests()[0];
    EXPECT_EQ(versionRequest.rfind("GET /file/version.php HTTP/1.", 0), 0u) << versionRequest;
    EXPECT_NE(versionRequest.find("Content-type: text/html; charset=utf-8\r\n"), std::string::npos);
}

TEST(HostNameLookupFetch, HttpErrorsAndBadHostsGiveNothing) {
    LocalHttpServer server; // serves nothing: every page is a 404 whose body holds both answers
    auto thread = Lookup(server.HostAndPort(), server.HostAndPort());
    EXPECT_EQ(thread->PublicIp() + thread->LatestVersion(), "");
    EXPECT_EQ(server.Requests().size(), 2u);

    // A name that does not resolve must not fall back to the any-address, which is this machine.
    const wxString port = wxString::Format("%d", server.Port());
    thread = Lookup("nohost.invalid:" + port, "127.0.0.1:http" + port);
    EXPECT_EQ(thread->PublicIp() + thread->LatestVersion(), "");
    EXPECT_EQ(server.Requests().size(), 2u) << "no request after the bad host names";
}
