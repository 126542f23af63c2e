#pragma once

#include "core/ConfigGenerator.h"
#include "core/InstallPaths.h"
#include "core/sites/SiteList.h"

#include <wx/string.h>

// Writes conf/sites.conf, which httpd.conf includes: a name-based virtual host for every site on
// Apache's port, and with HTTPS on, mod_ssl, the HTTPS port and the same hosts over TLS with the
// tree's certificate. The main site answers every other name on both ports, so it stays as it
// was. With sites and HTTPS off, or nothing to serve, the file is removed.
//
// A part that cannot be made is left out and said: a skipped folder leaves its site out, a
// certificate that cannot be made or an HTTPS port held by another program leaves HTTPS out;
// Apache still starts with the rest. A file that cannot be written or removed is a failure:
// Apache would read the stale one.
class SiteConfig {
public:
    explicit SiteConfig(const InstallPaths& paths) : paths(paths) {}

    // The sites of www/ when sites are on, else none.
    SiteList Sites() const;
    // Writes (or removes) the file; answers what was left out and what failed, one a line.
    GenerationReport Generate() const;
    // The text of the file for these sites; without a certificate, no HTTPS part.
    wxString Text(const SiteList& sites, bool https) const;

private:
    // Why HTTPS cannot be served now (its port taken, no certificate); "" when it can.
    wxString HttpsProblem(const SiteList& sites) const;
    bool IsIncluded() const;

    InstallPaths paths;
};
