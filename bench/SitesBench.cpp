// The cost of sites: writing the sites' configuration for SITES folders of www/ (500 by default),
// and Apache's start (`kovixctl start apache`) to the first HTTP 200 of phpinfo with those sites
// against the same tree with sites off. Runs on a temporary tree.
//
//   SitesBench [ROUNDS] [SITES]
#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/sites/SiteConfig.h"
#include "support/LoopbackClient.h"
#include "support/TestTree.h"

#include <wx/filefn.h>
#include <wx/init.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void MakeSites(const wxString& root, int count) {
    for (int site = 0; site < count; ++site) {
        const wxString folder = root + wxString::Format("/www/Project %03d", site);
        wxMkdir(folder);
        std::ofstream((folder + "/index.html").utf8_string()) << "site " << site;
    }
}

void SetSites(const TestTree& tree, bool on) {
    std::ofstream(tree.File("kovix.ini").utf8_string(), std::ios::app)
        << "SITES_ENABLED = \"" << (on ? 1 : 0) << "\"\n";
}

double StartToFirstPage(const TestTree& tree) {
    const Clock::time_point start = Clock::now();
    tree.Ctl(KOVIXCTL_PATH, {"start", "apache"});
    while (HttpGet(tree.ApachePort(), "/kovix/phpinfo.php").status != 200 &&
           SecondsSince(start) < 30)
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    const double seconds = SecondsSince(start);
    tree.Ctl(KOVIXCTL_PATH, {"stop", "apache"});
    TestTree::ReapEndedServers();
    return seconds;
}

} // namespace

int main(int argc, char** argv) {
    wxInitializer initializer;
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    TestTree tree(KOVIX_SOURCE_DIR);
    const int siteCount = argc > 2 ? std::max(1, std::atoi(argv[2])) : 500;
    MakeSites(tree.Root(), siteCount);

    AppSettings settings;
    settings.Load(tree.File("kovix.ini"));
    const InstallPaths paths(tree.Root(), settings);
    std::vector<double> generation;
    for (int round = 0; round < rounds; ++round) {
        const Clock::time_point start = Clock::now();
        SiteConfig(paths).Generate();
        generation.push_back(SecondsSince(start));
    }
    std::printf("generation of %d sites: %.1f ms (median of %d)\n", siteCount,
                Median(generation) * 1000, rounds);

    std::vector<double> with, without;
    for (int round = 0; round < rounds; ++round) {
        SetSites(tree, false);
        without.push_back(StartToFirstPage(tree));
        SetSites(tree, true);
        with.push_back(StartToFirstPage(tree));
    }
    const double a = Median(without), b = Median(with);
    std::printf("start to phpinfo 200: no sites %.3f s, %d sites %.3f s (+%.0f %%)\n", a, siteCount,
                b, (b / a - 1) * 100);
    return 0;
}
