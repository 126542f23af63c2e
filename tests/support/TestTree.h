#pragma once

#include "support/CommandRunner.h"
#include "support/ScopedEnv.h"
#include "support/TempDir.h"

#include <wx/string.h>

#include <vector>

// A Kovix tree with the real servers for integration tests: assembled by scripts/assemble-tree.sh
// once for the current content of the assembler and stack/ (kept between test programs in
// kovix-test-trees-<uid> of the system's temporary folder), then copied afresh for each TestTree
// into a temporary folder whose path contains a blank. Apache and MySQL get free loopback ports
// (kovix.ini APACHE_PORT, the port lines of mysql/my_source.ini); the PHP version is the first
// installed one.
//
// While a TestTree lives, KOVIX_PROCESS_SCOPE names its root, so the panel's process lookups (in
// this process and in the kovixctl it runs) see and stop only this tree's servers, and this
// process adopts the servers that a finished kovixctl leaves behind (it reaps them). The
// destructor kills every process living in the tree, by pid, and removes the tree.
// Assembly failures (missing packages) throw std::runtime_error with the assembler's output.
class TestTree {
public:
    // sourceDir: the repository, where scripts/ and stack/ are; name: the tree's path inside the
    // temporary folder (folders on the way are made).
    explicit TestTree(const wxString& sourceDir, const wxString& name = "kovix tree");
    ~TestTree();

    const wxString& Root() const { return root; }
    wxString File(const wxString& relativePath) const { return root + "/" + relativePath; }
    int ApachePort() const { return apachePort; }
    int MysqlPort() const { return mysqlPort; }

    // Runs kovixctl (the built program at kovixctlPath) with --root set to this tree.
    CommandResult Ctl(const wxString& kovixctlPath, std::vector<wxString> arguments) const;

    // Live (non-zombie) processes whose working folder, executable or command line lies in the
    // tree, this process excepted.
    std::vector<long> Processes() const;
    // Processes of the tree with this name (e.g. "httpd"; empty: any), zombies included, with
    // their states.
    struct ProcessState {
        long pid;
        char state;
    };
    std::vector<ProcessState> ProcessesNamed(const wxString& name) const;
    // Reaps server processes this process adopted or started that have ended.
    static void ReapEndedServers();

    // A TCP port nobody uses now, on any local address, outside the automatic port range.
    static int FreePort();

private:
    TempDir folder; // holds the tree
    wxString root;
    ScopedEnv scope;
    int apachePort = 0;
    int mysqlPort = 0;
};
