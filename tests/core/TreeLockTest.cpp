#include "core/TreeLock.h"

#include "support/CommandRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

// Whether another process could take the tree's lock now (flock(1) from util-linux).
bool FreeForOthers(const TempDir& tree) {
    return RunCommand({"flock", "--nonblock", TreeLock::LockFilePath(tree.Path()), "true"})
               .exitCode == 0;
}

} // namespace

TEST(TreeLock, KeepsOtherProcessesAndThreadsOutAndNestsInItsOwnThread) {
    TempDir tree;
    std::atomic<bool> threadHeld{false};
    std::thread other;
    {
        const TreeLock outer(tree.Path());
        {
            const TreeLock inner(tree.Path()); // a save inside a start: no deadlock
        }
        EXPECT_FALSE(FreeForOthers(tree)) << "the inner lock's end keeps the outer one";
        other = std::thread([&] {
            const TreeLock lock(tree.Path());
            threadHeld = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(threadHeld);
    }
    other.join();
    EXPECT_TRUE(threadHeld);
    EXPECT_TRUE(FreeForOthers(tree));
}
