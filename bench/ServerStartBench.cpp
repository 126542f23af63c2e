// Time from `kovixctl start` to the first HTTP 200 of phpinfo and to the first MySQL greeting,
// and from `kovixctl stop` to no server process left, against the same servers started and
// stopped by hand with the same generated files (the floor). Runs on a temporary tree.
//
//   ServerStartBench [ROUNDS]
#include "support/LoopbackClient.h"
#include "support/TestTree.h"

#include <wx/init.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Starts argv in folder with extra environment entries, its output going to the file output;
// returns its pid.
pid_t Spawn(const std::vector<std::string>& argv, const std::string& folder = "",
            const std::vector<std::string>& environment = {},
            const std::string& output = "/dev/null") {
    pid_t pid = fork();
    if (pid == 0) {
        // The servers' own chatter would mix with the figures.
        const int sink = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(sink, STDOUT_FILENO);
        dup2(sink, STDERR_FILENO);
        if (!folder.empty() && chdir(folder.c_str()) != 0)
            _exit(127);
        for (const std::string& entry : environment)
            putenv(const_cast<char*>(entry.c_str()));
        std::vector<char*> args;
        for (const std::string& arg : argv)
            args.push_back(const_cast<char*>(arg.c_str()));
        args.push_back(nullptr);
        execv(args[0], args.data());
        _exit(127);
    }
    return pid;
}

struct Ready {
    double http = -1;
    double mysql = -1;
};

// Polls phpinfo and the MySQL greeting until both answer (or 30 s pass).
Ready WaitForServers(const TestTree& tree, Clock::time_point start) {
    Ready ready;
    while ((ready.http < 0 || ready.mysql < 0) && SecondsSince(start) < 30) {
        if (ready.http < 0 && HttpGet(tree.ApachePort(), "/kovix/phpinfo.php").status == 200)
            ready.http = SecondsSince(start);
        if (ready.mysql < 0 && MysqlGreets(tree.MysqlPort()))
            ready.mysql = SecondsSince(start);
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    return ready;
}

bool ServersLeft(const TestTree& tree) {
    return !tree.ProcessesNamed("httpd").empty() || !tree.ProcessesNamed("mysqld").empty();
}

double WaitUntilNoServerLeft(const TestTree& tree, Clock::time_point start) {
    while (ServersLeft(tree) && SecondsSince(start) < 30) {
        TestTree::ReapEndedServers();
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    return SecondsSince(start);
}

struct Round {
    Ready start;
    double stop = 0;
};

Round ThroughKovixctl(const TestTree& tree) {
    Round round;
    const std::string root = tree.Root().utf8_string();
    Clock::time_point start = Clock::now();
    const std::string log = root + "/../kovixctl.log";
    pid_t ctl = Spawn({KOVIXCTL_PATH, "--root", root, "start"}, "", {}, log);
    round.start = WaitForServers(tree, start);
    int status = 0;
    waitpid(ctl, &status, 0);
    if (status != 0) {
        std::ifstream in(log);
        std::fprintf(stderr, "kovixctl start failed:\n%s\n",
                     std::string(std::istreambuf_iterator<char>(in), {}).c_str());
    }
    start = Clock::now();
    waitpid(Spawn({KOVIXCTL_PATH, "--root", root, "stop"}), &status, 0);
    round.stop = WaitUntilNoServerLeft(tree, start);
    return round;
}

// The same generated files, the same programs, no panel: exec, then SIGTERM to mysqld (its orderly
// shutdown) and SIGKILL to Apache.
Round ByHand(const TestTree& tree) {
    Round round;
    const std::string apache = tree.File("apache").utf8_string(),
                      mysql = tree.File("mysql").utf8_string();
    std::remove((apache + "/logs/httpd.pid").c_str());
    const std::string path =
        "PATH=" + apache + "/php_8.2:" + (getenv("PATH") ? getenv("PATH") : "");
    Clock::time_point start = Clock::now();
    pid_t httpd = Spawn({apache + "/bin/httpd", "-DFOREGROUND", "-f", apache + "/conf/httpd.conf"},
                        apache, {"PHP_INI_SCAN_DIR=", path});
    pid_t mysqld = Spawn({mysql + "/bin/mysqld", "--defaults-file=" + mysql + "/my.ini"}, mysql);
    round.start = WaitForServers(tree, start);
    start = Clock::now();
    kill(mysqld, SIGTERM);
    for (const TestTree::ProcessState& process : tree.ProcessesNamed("httpd"))
        kill(static_cast<pid_t>(process.pid), SIGKILL);
    waitpid(httpd, nullptr, 0);
    waitpid(mysqld, nullptr, 0);
    round.stop = WaitUntilNoServerLeft(tree, start);
    return round;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

void PrintRow(const char* what, const std::vector<double>& ctl, const std::vector<double>& bare) {
    const double a = Median(ctl), b = Median(bare);
    std::printf("%-28s %9.3f s %9.3f s %7.2fx\n", what, a, b, b > 0 ? a / b : 0.0);
}

} // namespace

int main(int argc, char** argv) {
    wxInitializer initializer(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 7;
    TestTree tree(KOVIX_SOURCE_DIR);
    ThroughKovixctl(tree); // generates the live files; warms the caches

    std::vector<double> ctlHttp, ctlMysql, ctlStop, bareHttp, bareMysql, bareStop;
    for (int i = 0; i < rounds; ++i) {
        // Alternate the order so that neither side always runs on warmer caches.
        Round ctl, bare;
        if (i % 2 == 0) {
            ctl = ThroughKovixctl(tree);
            bare = ByHand(tree);
        } else {
            bare = ByHand(tree);
            ctl = ThroughKovixctl(tree);
        }
        ctlHttp.push_back(ctl.start.http);
        ctlMysql.push_back(ctl.start.mysql);
        ctlStop.push_back(ctl.stop);
        bareHttp.push_back(bare.start.http);
        bareMysql.push_back(bare.start.mysql);
        bareStop.push_back(bare.stop);
    }
    std::printf("median of %d rounds              kovixctl    by hand    ratio\n", rounds);
    PrintRow("start -> phpinfo HTTP 200", ctlHttp, bareHttp);
    PrintRow("start -> MySQL greeting", ctlMysql, bareMysql);
    PrintRow("stop -> no server left", ctlStop, bareStop);
    std::printf("goals: start within 1.2x of by hand, stop-all under 1.5 s\n");
    return 0;
}
