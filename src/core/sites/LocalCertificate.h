#pragma once

#include "core/InstallPaths.h"

#include <wx/string.h>

#include <vector>

// The tree's local certificate authority and the one certificate Apache serves for HTTPS, both
// made by mkcert. The authority lives in the tree (mkcert's CAROOT, given in the child's
// environment only) and is created on first use; the certificate names localhost, 127.0.0.1, ::1
// and every name it is asked for, and is made again only when that set of names changes or a file
// is missing. Every failure is a message in the current language; nothing half-made is kept.
class LocalCertificate {
public:
    // mkcertProgram: the program to run; by default KOVIX_MKCERT when set, else the tree's own
    // (utils/mkcert) when it has one, else "mkcert".
    explicit LocalCertificate(const InstallPaths& paths,
                              const wxString& mkcertProgram = wxString());

    // Makes sure the certificate covers exactly the local names and hostNames. "" when it does,
    // else why not.
    wxString Ensure(const std::vector<wxString>& hostNames) const;
    // Installs the authority (created first if needed) into this user's browser databases
    // (NSS: Firefox, Chromium). "" when done, else why not.
    wxString TrustForBrowsers() const;
    // The command an administrator runs to make the whole system trust the authority.
    wxString SystemTrustCommand() const;
    wxString AuthorityCertificate() const;

private:
    // The certificate's names, one a line, as written beside it.
    wxString NamesFile() const;
    wxString PrepareAuthorityFolder() const;
    // Runs mkcert with the arguments, waits for it and answers its output; false when it cannot
    // be started (*output then says why).
    bool RunMkcert(const wxString& arguments,
                   const std::vector<std::pair<wxString, wxString>>& extra, wxString& output) const;
    bool IsCurrent(const wxString& names) const;

    InstallPaths paths;
    wxString program;
};
