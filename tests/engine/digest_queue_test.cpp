// The digest queue hands out what its workers computed, by position, however the jobs were batched:
// samples queued while the workers sleep are taken up when they are waited for (a missing wake-up
// would hang this test until the test runner's time limit).
#include "engine/digest_queue.h"

#include "engine/digest.h"
#include "tests/support/temp_home.h"

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::TempHome;

TEST(DigestQueue, SamplesQueuedWhileTheWorkerSleepsAreTakenUpWhenWaitedFor) {
    TempHome home;
    std::vector<std::string> paths;
    for (int i = 0; i < 6; ++i)
        paths.push_back(home.writeFile("f" + std::to_string(i), "content " + std::to_string(i)));
    DigestQueue queue(1, platform::system());
    const std::size_t first = queue.add({.path = paths[0], .size = 9});
    ASSERT_TRUE(queue.wait(first).ok());
    // Fewer samples than wake a sleeping worker by themselves.
    std::vector<std::size_t> jobs;
    for (std::size_t i = 1; i < paths.size(); ++i)
        jobs.push_back(queue.add({.path = paths[i], .size = 9}));
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        const auto& digest = queue.wait(jobs[i]);
        ASSERT_TRUE(digest.ok());
        EXPECT_EQ(*digest, *sampleDigest(paths[i + 1], 9));
    }
}

}  // namespace
}  // namespace quorrin::Engine
