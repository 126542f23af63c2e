#include "core/sites/LocalCertificate.h"

#include "core/TextFiles.h"
#include "core/lang/LangTable.h"
#include "platform/Platform.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/utils.h>

#include <chrono>
#include <thread>

namespace {

const char* const LocalNames[] = {"localhost", "127.0.0.1", "::1"};

wxString Quoted(const wxString& path) {
    return "\"" + path + "\"";
}

} // namespace

LocalCertificate::LocalCertificate(const InstallPaths& paths, const wxString& mkcertProgram)
    : paths(paths), program(mkcertProgram) {
    if (program.empty() && !wxGetEnv("KOVIX_MKCERT", &program))
        program = wxFileExists(paths.BundledMkcert()) ? paths.BundledMkcert() : "mkcert";
}

wxString LocalCertificate::AuthorityCertificate() const {
    return paths.CertificateAuthorityFolder() + "/rootCA.pem";
}

wxString LocalCertificate::NamesFile() const {
    return paths.SslFolder() + "/localhost.names";
}

wxString LocalCertificate::SystemTrustCommand() const {
    return "sudo cp " + Quoted(AuthorityCertificate()) +
           " /usr/local/share/ca-certificates/kovix-local-authority.crt && sudo "
           "update-ca-certificates";
}

// The folder must be one this user can write: mkcert writes the authority's key there.
wxString LocalCertificate::PrepareAuthorityFolder() const {
    const wxString folder = paths.CertificateAuthorityFolder();
    const wxLogNull quiet; // the message below says it, not a log window
    if ((wxDirExists(folder) || wxFileName::Mkdir(folder, 0700, wxPATH_MKDIR_FULL)) &&
        wxFileName::IsDirWritable(folder))
        return wxString();
    return wxString::Format(GetLangText("HTTPS_AUTHORITY_UNWRITABLE"), folder);
}

bool LocalCertificate::RunMkcert(const wxString& arguments,
                                 const std::vector<std::pair<wxString, wxString>>& extra,
                                 wxString& output) const {
    ChildSpec launch;
    launch.commandLine = Quoted(program) + " " + arguments;
    launch.workingFolder = paths.SslFolder();
    launch.environment = extra;
    launch.environment.emplace_back("CAROOT", paths.CertificateAuthorityFolder());
    std::unique_ptr<ChildProcess> child = Platform::Get().StartHidden(launch);
    if (!child) {
        output = wxString::Format(GetLangText("HTTPS_NO_MKCERT"), program);
        return false;
    }
    output.clear();
    while (child->IsActive()) {
        output += child->ReadOutput();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    output += child->ReadOutput();
    return true;
}

bool LocalCertificate::IsCurrent(const wxString& names) const {
    wxString written;
    return wxFileExists(AuthorityCertificate()) && wxFileExists(paths.SiteCertificate()) &&
           wxFileExists(paths.SiteCertificateKey()) && TextFiles::Read(NamesFile(), written) &&
           written == names;
}

wxString LocalCertificate::Ensure(const std::vector<wxString>& hostNames) const {
    wxString names, arguments;
    for (const char* name : LocalNames)
        names << name << "\n";
    for (const wxString& name : hostNames)
        names << name << "\n";
    if (IsCurrent(names))
        return wxString();
    const wxString problem = PrepareAuthorityFolder();
    if (!problem.empty())
        return problem;
    // A certificate that no longer matches its names is never served.
    for (const wxString& file : {NamesFile(), paths.SiteCertificate(), paths.SiteCertificateKey()})
        if (wxFileExists(file))
            wxRemoveFile(file);
    arguments << "-cert-file " << Quoted(paths.SiteCertificate()) << " -key-file "
              << Quoted(paths.SiteCertificateKey()) << " " << wxString(names).Trim();
    arguments.Replace("\n", " ");
    wxString output;
    if (!RunMkcert(arguments, {}, output))
        return output;
    if (!wxFileExists(paths.SiteCertificate()) || !wxFileExists(paths.SiteCertificateKey()))
        return wxString::Format(GetLangText("HTTPS_NO_CERTIFICATE"), output.Trim());
    TextFiles::WriteAtomically(NamesFile(), names);
    return wxString();
}

wxString LocalCertificate::TrustForBrowsers() const {
    const wxString problem = PrepareAuthorityFolder();
    if (!problem.empty())
        return problem;
    wxString output;
    if (!RunMkcert("-install", {{"TRUST_STORES", "nss"}}, output))
        return output;
    // mkcert says nothing of a user without any browser database, and warns without certutil.
    if (output.Contains("installed in the Firefox"))
        return wxString();
    return wxString::Format(GetLangText("HTTPS_TRUST_FAILED"), output.Trim());
}
