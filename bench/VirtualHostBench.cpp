// Times reading and writing the virtual hosts of an Apache template of 10,000 hosts (each with an
// alias and a directory) against Apache's own check of the same file (httpd -t), and prints both
// with their ratio. The template holds a minimal server configuration and real paths, so Apache
// parses exactly the blocks the model reads.
// usage: VirtualHostBench [HTTPD [MODULES_FOLDER]]
#include "core/TextFiles.h"
#include "core/apache/VirtualHostFile.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/init.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace {

const int hostCount = 10000;

// The best of the runs: other work on the machine only ever adds time.
double BestMilliseconds(int runs, const std::function<void()>& job) {
    double best = 1e300;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        job();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        best = std::min(best, took.count());
    }
    return best;
}

wxString ServerConfiguration(const wxString& folder, const wxString& modules) {
    wxString text;
    text << "ServerRoot \"" << folder << "\"\n"
         << "DefaultRuntimeDir \"" << folder << "\"\n"
         << "PidFile \"" << folder << "/httpd.pid\"\n"
         << "ErrorLog \"" << folder << "/error.log\"\n"
         << "LoadModule mpm_prefork_module \"" << modules << "/mod_mpm_prefork.so\"\n"
         << "LoadModule authz_core_module \"" << modules << "/mod_authz_core.so\"\n"
         << "LoadModule alias_module \"" << modules << "/mod_alias.so\"\n"
         << "Listen 127.0.0.1:8999\n"
         << "ServerName localhost\n"
         << "DocumentRoot \"" << folder << "/www\"\n";
    return text;
}

VirtualHostRecord Host(const wxString& www, int number) {
    const wxString site = wxString::Format("site%d", number);
    VirtualHostRecord host;
    host.address = "*:8999";
    host.ServerName = site + ".local";
    host.ServerAlias = "www." + site + ".local";
    host.DocumentRoot = www + "/" + site;
    host.aliases.push_back({"/img", www + "/" + site + "/img"});
    DirectoryRecord directory;
    directory.path = host.DocumentRoot;
    directory.AllowOverride = true;
    directory.FollowSymLinks = true;
    directory.Indexes = true;
    directory.others.push_back("Require all granted");
    host.directories.push_back(directory);
    return host;
}

// The template: the server configuration followed by the hosts, whose folders exist.
bool MakeTemplate(const wxString& folder, const wxString& modules, const wxString& path) {
    const wxString www = folder + "/www";
    VirtualHostFile file;
    file.path = path;
    for (int number = 0; number < hostCount; ++number) {
        file.hosts.push_back(Host(www, number));
        if (!wxFileName::Mkdir(file.hosts.back().DocumentRoot, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL))
            return false;
    }
    return TextFiles::WriteAtomically(path, ServerConfiguration(folder, modules)) &&
           WriteVirtualHosts(file);
}

// Runs the command through the shell; true when it exits with 0. Its output goes to output.
bool RunCommand(const std::string& command, std::string& output) {
    output.clear();
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return false;
    char buffer[4096];
    while (size_t got = std::fread(buffer, 1, sizeof buffer, pipe))
        output.append(buffer, got);
    return pclose(pipe) == 0;
}

int Run(const wxString& folder, const std::string& httpd, const wxString& modules) {
    const wxString path = folder + "/httpd_source.conf";
    if (!MakeTemplate(folder, modules, path)) {
        std::fprintf(stderr, "cannot write the template in %s\n", folder.utf8_str().data());
        return 1;
    }
    const std::string check = "'" + httpd + "' -t -f '" + path.utf8_string() + "'";
    std::string output;
    if (!RunCommand(check, output)) {
        std::fprintf(stderr, "Apache refuses the template:\n%.2000s\n", output.c_str());
        return 1;
    }

    size_t hostsRead = 0;
    const double read = BestMilliseconds(5, [&] {
        VirtualHostFile file;
        file.path = path;
        ReadVirtualHosts(file);
        hostsRead = file.hosts.size();
    });
    VirtualHostFile file;
    file.path = path;
    ReadVirtualHosts(file);
    const double write = BestMilliseconds(5, [&] { WriteVirtualHosts(file); });
    const double apache = BestMilliseconds(3, [&] { RunCommand(check, output); });

    std::printf("virtual hosts: %zu (%d expected), template %.1f MB\n", hostsRead, hostCount,
                wxFileName::GetSize(path).ToDouble() / 1e6);
    std::printf("read  %9.1f ms\nwrite %9.1f ms\nread+write %9.1f ms\n", read, write, read + write);
    std::printf("%s -t %9.1f ms\n", httpd.c_str(), apache);
    std::printf("ratio (Apache check / our read+write): %.2f\n", apache / (read + write));
    return hostsRead == static_cast<size_t>(hostCount) ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    wxInitializer initializer(argc, argv);
    if (!initializer.IsOk())
        return 1;
    TextFiles::InitEncoding();
    const std::string httpd = argc > 1 ? argv[1] : "/usr/sbin/apache2";
    const wxString modules = argc > 2 ? wxString(argv[2]) : wxString("/usr/lib/apache2/modules");

    std::string pattern = (wxFileName::GetTempDir() + "/kovix-bench-XXXXXX").utf8_string();
    if (!mkdtemp(pattern.data()))
        return 1;
    const wxString folder = wxString::FromUTF8(pattern);
    const int result = Run(folder, httpd, modules);
    wxFileName::Rmdir(folder, wxPATH_RMDIR_RECURSIVE);
    return result;
}
