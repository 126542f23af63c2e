// The status tick's process cache: what it reads again and what it keeps, against a scripted
// process table, and a real child that executes another program under the same pid.
#include "core/servers/ProcessCache.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <thread>

namespace {

// A process table the test writes; it counts what the cache reads.
class ScriptedTable : public ProcessCache::Source {
public:
    struct Process {
        std::uint64_t token;
        ProcessFacts facts;
        bool inFolder = false;
    };
    std::uint64_t Version() override { return version; }
    std::vector<ProcessListing> List() override {
        ++lists;
        std::vector<ProcessListing> listed;
        for (const auto& [pid, process] : processes)
            listed.push_back({pid, process.token});
        return listed;
    }
    bool ReadFacts(long pid, ProcessFacts& facts) override {
        ++reads[pid];
        const auto found = processes.find(pid);
        if (found == processes.end())
            return false;
        facts = found->second.facts;
        return true;
    }
    bool LivesIn(long pid, const wxString&) override {
        ++folderQuestions[pid];
        return processes.at(pid).inFolder;
    }
    void Add(long pid, std::uint64_t token, const wxString& name, std::uint64_t startTime,
             bool inFolder = true) {
        processes[pid] = {token, {startTime, 60000, name, true}, inFolder};
    }
    std::map<long, Process> processes;
    std::uint64_t version = 0; // 0: list on every lookup
    int lists = 0;
    std::map<long, int> reads;
    std::map<long, int> folderQuestions;
};

int TotalReads(const ScriptedTable& table) {
    int total = 0;
    for (const auto& [pid, count] : table.reads)
        total += count;
    return total;
}

// A table of 100 old idle processes (pids 1000-1099) and an Apache in the folder.
ScriptedTable BusyMachine() {
    ScriptedTable table;
    for (long pid = 1000; pid < 1100; ++pid)
        table.Add(pid, pid, "sleep", 7, false);
    table.Add(42, 42, "HTTPD", 5);
    return table;
}

const std::vector<wxString> NAMES = {"httpd", "mysqld"};

} // namespace

TEST(ProcessCache, ASteadyLookupReadsOnlyTheWantedAndAFewInTurnAndAsksTheFolderOnce) {
    ScriptedTable table = BusyMachine();
    ProcessCache cache(table);
    EXPECT_EQ(cache.FindEach(NAMES, "/tree"), (std::vector<std::vector<long>>{{42}, {}}));
    EXPECT_EQ(TotalReads(table), 101); // the first lookup reads everything once
    table.reads.clear();
    EXPECT_EQ(cache.FindEach(NAMES, "/tree"), (std::vector<std::vector<long>>{{42}, {}}));
    EXPECT_EQ(table.reads[42], 1);
    EXPECT_EQ(TotalReads(table), 1 + static_cast<int>(ProcessCache::RECHECKS_PER_LOOKUP));
    EXPECT_EQ(table.folderQuestions[42], 1);
    cache.FindEach(NAMES, "/other");
    EXPECT_EQ(table.folderQuestions[42], 2); // another folder is another question
    table.processes[42].inFolder = false;
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[0], std::vector<long>{});
}

TEST(ProcessCache, AReusedPidIsAnotherProcessAndAVanishedOneIsForgotten) {
    ScriptedTable table = BusyMachine();
    ProcessCache cache(table);
    cache.FindEach(NAMES, "/tree");
    // The pid of an idle process comes back as MySQL: a new listing token, another start time.
    table.Add(1050, 9999, "mysqld", 900);
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[1], std::vector<long>{1050});
    // Apache's pid is reused by another Apache outside the folder: its folder is asked again.
    table.Add(42, 4242, "httpd", 901, false);
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[0], std::vector<long>{});
    EXPECT_EQ(table.folderQuestions[42], 2);
    // Gone, then back with the old token but a new name: forgotten, so read as new.
    const ScriptedTable::Process idle = table.processes.at(1010);
    table.processes.erase(1010);
    cache.FindEach(NAMES, "/tree");
    table.processes[1010] = idle;
    table.processes[1010].facts.name = "httpd";
    table.processes[1010].inFolder = true;
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[0], std::vector<long>{1010});
}

TEST(ProcessCache, ANewProgramUnderTheSamePidIsSeenYoungAtOnceOldWithinARound) {
    ScriptedTable table = BusyMachine();
    table.Add(7, 7, "kovix", 50);
    table.processes[7].facts.ageMs = 10; // just forked, not yet executed its program
    ProcessCache cache(table);
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[0], std::vector<long>{42});
    table.processes[7].facts.name = "httpd";
    table.processes[7].facts.ageMs = 20;
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[0], (std::vector<long>{7, 42}));

    // An old process that executes another program: same token, same start time.
    table.processes[1099].facts.name = "mysqld";
    table.processes[1099].inFolder = true;
    const std::size_t round = (table.processes.size() + ProcessCache::RECHECKS_PER_LOOKUP - 1) /
                              ProcessCache::RECHECKS_PER_LOOKUP;
    std::size_t lookups = 0;
    while (lookups < round && cache.FindEach(NAMES, "/tree")[1].empty())
        ++lookups;
    EXPECT_LT(lookups, round);
    // A zombie of a wanted name no longer counts, even while its listing is unchanged.
    table.processes[1099].facts.live = false;
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[1], std::vector<long>{});
}

TEST(ProcessCache, ARealChildThatExecutesAnotherProgramIsSeenUnderItsNewName) {
    TempDir dir;
    ChildSpec launch;
    launch.commandLine = "/bin/sh -c \"while [ ! -e go ]; do sleep 0.05; done; exec sleep 30\"";
    launch.workingFolder = dir.Path();
    std::unique_ptr<ChildProcess> child = Platform::Get().StartHidden(launch);
    ASSERT_TRUE(child);
    const long pid = child->Pid();
    ProcessCache cache;
    const auto has = [&cache, &dir, pid](std::size_t index) {
        const std::vector<long> pids = cache.FindEach({"sh", "sleep"}, dir.Path())[index];
        return std::find(pids.begin(), pids.end(), pid) != pids.end();
    };
    const auto eventually = [](const std::function<bool()>& condition) {
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!condition() && std::chrono::steady_clock::now() < giveUp)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return condition();
    };
    EXPECT_TRUE(eventually([&] { return has(0); }));
    WriteBytes(dir.File("go"), "");
    EXPECT_TRUE(eventually([&] { return has(1) && !has(0); }));
    Platform::Get().KillProcess(pid);
    EXPECT_TRUE(eventually([&] { return !child->IsActive(); }));
}

TEST(ProcessCache, ATableWhoseVersionStaysIsNotListedAgainYetItsWantedAreRead) {
    ScriptedTable table = BusyMachine();
    table.version = 5;
    ProcessCache cache(table);
    cache.FindEach(NAMES, "/tree");
    table.Add(8, 8, "httpd", 60); // not possible without a new version: shows it is not listed
    table.processes[42].facts.live = false;
    EXPECT_EQ(cache.FindEach(NAMES, "/tree"), (std::vector<std::vector<long>>{{}, {}}));
    EXPECT_EQ(table.lists, 1);
    table.version = 6;
    EXPECT_EQ(cache.FindEach(NAMES, "/tree")[0], std::vector<long>{8});
    EXPECT_EQ(table.lists, 2);
}
