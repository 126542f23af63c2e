#pragma once

#include <wx/string.h>
#include <wx/thread.h>

#include <atomic>
#include <memory>

// Finds the machine's public IP address and the latest release without ever holding up the
// window. On its own joinable thread it resolves the what-is-my-IP service and the product site,
// fetches "/" from the first and the version file from the second (one HTTP GET each, 5 s
// time-outs), keeps what it found and sets IsResolved() last. The owner reads PublicIp() and
// LatestVersion() only once IsResolved() is true; both are "" when nothing was found. Destroying
// the object asks a lookup in progress to stop and waits for it (at most one time-out).
class HostNameLookupThread : public wxThread {
public:
    static constexpr const char* DEFAULT_IP_SERVICE = "checkip.amazonaws.com";
    static constexpr const char* DEFAULT_PRODUCT_SITE = "www.kovix.org";
    static constexpr const char* IP_SERVICE_VARIABLE = "KOVIX_IP_SERVICE";
    static constexpr const char* PRODUCT_SITE_VARIABLE = "KOVIX_UPDATE_SITE";
    static constexpr const char* VERSION_PATH = "/file/version.php";
    static constexpr int TIMEOUT_SECONDS = 5;

    // The two web services, each "host" (port 80) or "host:port".
    struct Hosts {
        wxString ipService;
        wxString productSite;
        // The defaults, each replaced by its environment variable when that is set.
        static Hosts FromEnvironment();
    };

    // Creates the thread and runs it. Call on the main thread: it prepares the sockets for use
    // from other threads first.
    static std::unique_ptr<HostNameLookupThread>
    Start(const Hosts& hosts = Hosts::FromEnvironment());
    ~HostNameLookupThread() override;

    bool IsResolved() const { return resolved; }
    wxString PublicIp() const { return resolved ? publicIp : wxString(); }
    wxString LatestVersion() const { return resolved ? latestVersion : wxString(); }

    // The first dotted quad in page, or "".
    static wxString FindPublicIp(const wxString& page);
    // The quoted value of the first `word = "value"` in page, or "".
    static wxString FindLatestVersion(const wxString& page);

protected:
    ExitCode Entry() override;

private:
    explicit HostNameLookupThread(const Hosts& hosts);

    const Hosts hosts;
    bool started = false;
    wxString publicIp;
    wxString latestVersion;
    std::atomic<bool> resolved{false};
};
