#include "core/sites/SiteConfig.h"

#include "core/AppSettings.h"
#include "core/ConfigGenerator.h"
#include "core/FileErrors.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "core/sites/LocalCertificate.h"
#include "platform/Platform.h"

#include <wx/filefn.h>
#include <wx/log.h>

namespace {

const char* const Header =
    "#\n"
    "# Written by Kovix at every Apache start from the folders of www/: each one is\n"
    "# also served at NAME.localhost. Edits are lost at the next start.\n"
    "#\n";

// Apache reads \\ and \" inside a quoted argument as the character itself.
wxString Quoted(const wxString& path) {
    wxString escaped = path;
    escaped.Replace("\\", "\\\\");
    escaped.Replace("\"", "\\\"");
    return "\"" + escaped + "\"";
}

// The site folders lie inside www/, so the access rules of the main site (online or offline)
// reach them through its <Directory> block, exactly as they reach its other folders.
wxString VirtualHost(int port, const wxString& name, const wxString& folder, bool tls) {
    wxString text;
    text << "<VirtualHost *:" << port << ">\n"
         << "\tServerName " << name << "\n"
         << "\tDocumentRoot " << Quoted(folder) << "\n";
    if (tls)
        text << "\tSSLEngine on\n";
    return text + "</VirtualHost>\n";
}

wxString HostsOnPort(int port, const InstallPaths& paths, const SiteList& sites, bool tls) {
    // The first host of a port answers the names no other host claims: the main site.
    wxString text = VirtualHost(port, "localhost", paths.WwwFolder(), tls);
    for (const Site& site : sites.sites)
        text << VirtualHost(port, site.name + ".localhost", site.folder, tls);
    return text;
}

wxString TlsModules(const InstallPaths& paths) {
    wxString text;
    text << "<IfModule !ssl_module>\n\tLoadModule ssl_module modules/mod_ssl.so\n</IfModule>\n"
         << "<IfModule !socache_shmcb_module>\n"
         << "\tLoadModule socache_shmcb_module modules/mod_socache_shmcb.so\n</IfModule>\n"
         << "SSLSessionCache " << Quoted("shmcb:" + paths.ApacheFolder() + "/logs/ssl_scache")
         << "\n"
         << "SSLCertificateFile " << Quoted(paths.SiteCertificate()) << "\n"
         << "SSLCertificateKeyFile " << Quoted(paths.SiteCertificateKey()) << "\n";
    return text;
}

} // namespace

SiteList SiteConfig::Sites() const {
    return paths.Settings().GetSitesEnabled() ? SiteList::Scan(paths.WwwFolder()) : SiteList();
}

wxString SiteConfig::Text(const SiteList& sites, bool https) const {
    const AppSettings& settings = paths.Settings();
    wxString text = Header;
    if (!sites.sites.empty())
        text << "\n" << HostsOnPort(settings.GetPort(), paths, sites, false);
    if (https) {
        const int port = settings.GetHttpsPort();
        text << "\n"
             << TlsModules(paths) << ConfigGenerator::ListenText(port, settings.IsOnline(), "https")
             << "\n"
             << HostsOnPort(port, paths, sites, true);
    }
    return text;
}

// Another server on the HTTPS port would keep Apache from starting at all.
wxString SiteConfig::HttpsProblem(const SiteList& sites) const {
    const int port = paths.Settings().GetHttpsPort();
    const int shortWait = 50;
    if (Platform::Get().IsLocalPortTaken(port, shortWait))
        return wxString::Format(GetLangText("HTTPS_PORT_TAKEN"), port);
    std::vector<wxString> hostNames;
    for (const Site& site : sites.sites)
        hostNames.push_back(site.name + ".localhost");
    return LocalCertificate(paths).Ensure(hostNames);
}

// A template edited before sites existed, and kept since, does not include the file.
bool SiteConfig::IsIncluded() const {
    wxString text;
    return !TextFiles::Read(paths.ApacheSourceConfig(), text) || text.Contains("/conf/sites.conf");
}

GenerationReport SiteConfig::Generate() const {
    const SiteList sites = Sites();
    GenerationReport report;
    for (const SkippedFolder& skipped : sites.skipped)
        report.leftOut << skipped.Message() << "\n";
    bool https = paths.Settings().GetHttpsEnabled();
    if (https) {
        const wxString problem = HttpsProblem(sites);
        https = problem.empty();
        if (!https)
            report.leftOut << wxString::Format(GetLangText("HTTPS_LEFT_OUT"), problem) << "\n";
    }
    const wxString file = paths.SitesLiveConfig();
    wxLogNull quiet; // the report says what failed
    if (sites.sites.empty() && !https) {
        if (wxFileExists(file) && !wxRemoveFile(file))
            report.failures << FileErrors::CannotRemove(file) << "\n";
    } else if (!TextFiles::WriteAtomically(file, Text(sites, https))) {
        report.failures << FileErrors::CannotWrite(file) << "\n";
    } else if (!IsIncluded()) {
        report.leftOut << wxString::Format(GetLangText("SITES_NOT_INCLUDED"),
                                           paths.ApacheSourceConfig())
                       << "\n";
    }
    return report;
}
