#include "core/SharedRegex.h"

#include <gtest/gtest.h>

#include <thread>

// One compiled pattern matched by several threads at once: each must read the groups of its own
// match, which a bare wxRegEx (keeping its last match inside) would mix up.
TEST(SharedRegex, ThreadsReadTheGroupsOfTheirOwnMatch) {
    static const SharedRegex pattern("^([a-z]+)=([0-9]+)$");
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([thread] {
            const wxString key(wxUniChar('a' + thread), 5 + thread);
            const wxString line = key + "=" + wxString::Format("%d", thread * 1000);
            std::vector<wxString> groups;
            for (int round = 0; round < 2000; ++round) {
                ASSERT_TRUE(pattern.Match(line, groups));
                ASSERT_EQ(groups.size(), 3u);
                ASSERT_EQ(groups[1], key);
                ASSERT_EQ(pattern.Group(line, 2), wxString::Format("%d", thread * 1000));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(pattern.Group("no match", 1), "");
}
