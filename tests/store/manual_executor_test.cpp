// ManualExecutor runs queued work only when asked, in order.
#include "store/manual_executor.h"

#include <string>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

TEST(ManualExecutor, RunsNothingUntilAskedThenEverythingInOrder) {
    ManualExecutor executor;
    std::string trace;
    executor.runInBackground([&] {
        trace += "b1 ";
        executor.postToMain([&] { trace += "m2 "; });
    });
    executor.postToMain([&] { trace += "m1 "; });
    EXPECT_EQ(trace, "");
    EXPECT_EQ(executor.pendingBackground(), 1u);
    EXPECT_EQ(executor.pendingMain(), 1u);
    executor.runUntilIdle();
    EXPECT_EQ(trace, "b1 m1 m2 ");
    EXPECT_FALSE(executor.runOneMain());
    EXPECT_FALSE(executor.runOneBackground());
}

}  // namespace
}  // namespace quorrin::store
