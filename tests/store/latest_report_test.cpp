// LatestReport: reports made while a post waits are folded into it, and the newest is shown.
#include "store/latest_report.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

TEST(LatestReport, OnePostCarriesTheNewestOfManyReports) {
    LatestReport<std::string> latest;
    EXPECT_TRUE(latest.keep("Comparing content • a.bin"));  // post one
    EXPECT_FALSE(latest.keep("Comparing content • b.bin"));
    EXPECT_FALSE(latest.keep("Comparing content • c.bin"));
    EXPECT_EQ(latest.take(), "Comparing content • c.bin");
    // Once the post has run, the next report needs a post of its own.
    EXPECT_TRUE(latest.keep("Comparing content • d.bin"));
    EXPECT_EQ(latest.take(), "Comparing content • d.bin");
}

// A reporting thread and a taking thread: every post shows a report no older than the one before,
// and the last post shows the last report.
TEST(LatestReport, ThePostsShowTheReportsInOrderAndEndWithTheLast) {
    LatestReport<int> latest;
    std::mutex mutex;
    std::vector<int> posts;  // how many posts are due, as the reporting thread found
    int due = 0;
    std::thread reporter([&] {
        for (int i = 1; i <= 20'000; ++i)
            if (latest.keep(i)) {
                std::lock_guard lock(mutex);
                ++due;
            }
    });
    std::vector<int> shown;
    for (;;) {
        bool run = false;
        {
            std::lock_guard lock(mutex);
            if (due > 0) {
                --due;
                run = true;
            }
        }
        if (run) {
            shown.push_back(latest.take());
            if (shown.back() == 20'000)
                break;
        } else {
            std::this_thread::yield();
        }
    }
    reporter.join();
    for (std::size_t i = 1; i < shown.size(); ++i)
        EXPECT_LE(shown[i - 1], shown[i]);
    EXPECT_EQ(shown.back(), 20'000);
    std::lock_guard lock(mutex);
    EXPECT_EQ(due, 0);  // no post is left over once the last report is shown
}

}  // namespace
}  // namespace quorrin::store
