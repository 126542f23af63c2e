#include "core/net/HostNameLookupThread.h"

#include "core/SharedRegex.h"

#include <wx/protocol/http.h>
#include <wx/sckaddr.h>
#include <wx/sckstrm.h>
#include <wx/sstream.h>
#include <wx/utils.h>

namespace {

wxString HostFromEnvironment(const char* variable, const char* defaultHost) {
    wxString host;
    return wxGetEnv(variable, &host) && !host.empty() ? host : wxString(defaultHost);
}

// "host" or "host:port"; false when the host does not resolve or the port is not a number.
bool Resolve(wxIPV4address& address, const wxString& hostAndPort) {
    unsigned long port = 80;
    const wxString host = hostAndPort.BeforeLast(':');
    if (!host.empty() && (!hostAndPort.AfterLast(':').ToULong(&port) || port > 0xFFFF))
        return false;
    return address.Hostname(host.empty() ? hostAndPort : host) &&
           address.Service(static_cast<unsigned short>(port));
}

// One HTTP GET; the body decoded as UTF-8, or "" on any failure. wxHTTP connects when the
// request is made, waiting at most the socket time-out.
wxString Fetch(const wxIPV4address& address, const wxString& path) {
    wxHTTP http;
    http.SetHeader("Content-type", "text/html; charset=utf-8");
    http.SetTimeout(HostNameLookupThread::TIMEOUT_SECONDS);
    http.Connect(address, false);
    std::unique_ptr<wxInputStream> stream(http.GetInputStream(path));
    wxString page;
    if (stream && http.GetError() == wxPROTO_NOERR) {
        wxStringOutputStream out(&page, wxConvUTF8);
        stream->Read(out);
    }
    stream.reset();
    http.Close();
    return page;
}

} // namespace

HostNameLookupThread::Hosts HostNameLookupThread::Hosts::FromEnvironment() {
    return {HostFromEnvironment(IP_SERVICE_VARIABLE, DEFAULT_IP_SERVICE),
            HostFromEnvironment(PRODUCT_SITE_VARIABLE, DEFAULT_PRODUCT_SITE)};
}

HostNameLookupThread::HostNameLookupThread(const Hosts& hosts)
    : wxThread(wxTHREAD_JOINABLE), hosts(hosts) {}

std::unique_ptr<HostNameLookupThread> HostNameLookupThread::Start(const Hosts& hosts) {
    wxASSERT(wxIsMainThread());
    if (!wxSocketBase::IsInitialized())
        wxSocketBase::Initialize();
    std::unique_ptr<HostNameLookupThread> thread(new HostNameLookupThread(hosts));
    thread->started = thread->Run() == wxTHREAD_NO_ERROR;
    if (!thread->started)
        thread->resolved = true;
    return thread;
}

// Delete asks a joinable thread to stop and joins it: a Wait after it would join twice, which
// Windows refuses (its thread handle is already closed) with an error box that outlives the panel.
// Blocking, not yielding: no window message may run while the owner is being destroyed.
HostNameLookupThread::~HostNameLookupThread() {
    if (started)
        Delete(nullptr, wxTHREAD_WAIT_BLOCK);
}

wxString HostNameLookupThread::FindPublicIp(const wxString& page) {
    static const SharedRegex address("([0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+)");
    return address.Group(page, 1);
}

wxString HostNameLookupThread::FindLatestVersion(const wxString& page) {
    static const SharedRegex assignment("([^ ]*)[ \t]*=[ \t]*\"([^\"]*)\"");
    return assignment.Group(page, 2);
}

wxThread::ExitCode HostNameLookupThread::Entry() {
    wxIPV4address ipService;
    wxIPV4address productSite;
    const bool siteFound = Resolve(productSite, hosts.productSite);
    const bool serviceFound = Resolve(ipService, hosts.ipService);
    if (serviceFound && !TestDestroy())
        publicIp = FindPublicIp(Fetch(ipService, "/"));
    if (siteFound && !TestDestroy())
        latestVersion = FindLatestVersion(Fetch(productSite, VERSION_PATH));
    resolved = true;
    return 0;
}
