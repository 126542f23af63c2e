// Several kovixctl at once on one tree: saves never interleave, starts never double a server,
// and a stop right after a start still stops what the start began.
#include "ctl/CtlTesting.h"
#include "support/TestTree.h"

#include <atomic>
#include <set>
#include <thread>

namespace {

const char* const phpTemplate = "apache/php_8.2/php_source.ini";

wxString Quoted(const wxString& text) {
    return "'" + text + "'";
}

// A shell loop of count kovixctl runs with the same arguments, in the background.
wxString Loop(const wxString& root, int count, const wxString& arguments) {
    return wxString::Format(
        "(for i in $(seq %d); do %s --root %s %s >/dev/null || exit 1; done) & ", count,
        Quoted(KOVIXCTL_PATH), Quoted(root), arguments);
}

class SharedTree : public testing::Test {
protected:
    TestTree tree{KOVIX_SOURCE_DIR};

    CommandResult Ctl(std::vector<wxString> arguments) {
        return tree.Ctl(KOVIXCTL_PATH, std::move(arguments));
    }
    size_t Count(const wxString& name) { return tree.ProcessesNamed(name).size(); }
};

} // namespace

TEST_F(CtlTest, ParallelSavesLeaveTheOldOrTheNewTemplate) {
    Write(phpTemplate, "[PHP]\nshort_open_tag = Off\n" + std::string(20000, ';') + "\n");
    ASSERT_EQ(Ctl({"php", "set", "short_open_tag", "On"}).exitCode, 0);
    const std::string on = Read(phpTemplate);
    ASSERT_EQ(Ctl({"php", "set", "short_open_tag", "Off"}).exitCode, 0);
    const std::string off = Read(phpTemplate);

    std::atomic<bool> done{false};
    std::set<std::string> seen;
    std::thread reader([&] {
        while (!done)
            seen.insert(Read(phpTemplate));
    });
    const int runs = 200;
    const CommandResult writers =
        RunShell(Loop(tree.Path(), runs, "php set short_open_tag On") +
                 Loop(tree.Path(), runs, "php set short_open_tag Off") +
                 Loop(tree.Path(), runs, "php set short_open_tag On") + "wait");
    done = true;
    reader.join();
    EXPECT_EQ(writers.exitCode, 0) << writers.err;
    seen.insert(Read(phpTemplate));
    for (const std::string& content : seen)
        EXPECT_TRUE(content == on || content == off) << "a mixed file of " << content.size();
}

TEST_F(SharedTree, ParallelStartsRunOneMysqldAndStopsRightAfterAStartEndIt) {
    const wxString start = Quoted(KOVIXCTL_PATH) + " --root " + Quoted(tree.Root()) + " start";
    const CommandResult starts =
        RunShell(start + " & " + start + " & " + start + " & " + start + " & " + start + "; wait");
    EXPECT_EQ(starts.exitCode, 0) << starts.err;
    EXPECT_EQ(Count("mysqld"), 1u);
    ASSERT_EQ(Ctl({"stop"}).exitCode, 0);
    TestTree::ReapEndedServers();

    // The delays count from the moment the start holds the tree's lock: a stop that came first
    // would find nothing to stop, rightly.
    const wxString startHoldsTheLock = "for i in $(seq 2000); do flock -n " +
                                       Quoted(tree.File("kovix.lock")) +
                                       " true || break; sleep 0.001; done; ";
    for (const char* delay : {"0", "0.02", "0.05"}) {
        const CommandResult both =
            RunShell(start + " mysql & " + startHoldsTheLock + "sleep " + delay + "; " +
                     Quoted(KOVIXCTL_PATH) + " --root " + Quoted(tree.Root()) +
                     " stop; code=$?; wait; exit $code");
        EXPECT_EQ(both.exitCode, 0) << delay << " s: " << both.err;
        TestTree::ReapEndedServers();
        EXPECT_EQ(Count("mysqld") + Count("mysqladmin"), 0u) << delay << " s";
    }
}
