// The results cache on a full disk: its writes fail with SQLITE_FULL, or its file cannot be made
// (ENOSPC). The job gives the results of a job without a cache and says so once; the next job
// keeps and finds its results again.
#include "store/locations.h"
#include "tests/support/store/cache_checks.h"
#include "tests/support/store/sqlite_disk_harm.h"

#include <cerrno>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::checkWithCache;
using quorrin::testing::FaultPlatform;
using quorrin::testing::opensDuring;
using quorrin::testing::opensPerPathDuring;
using quorrin::testing::SqliteDiskHarm;
using quorrin::testing::StoreFixture;
using quorrin::testing::unavailableLines;
using quorrin::testing::writeCacheTree;
using Outcome = quorrin::testing::CheckOutcome;

// The newest "Results cache unavailable: " line, or "" when there is none.
std::string newestUnavailableLine(const StoreFixture& f) {
    for (const std::string& text : f.activityTexts())
        if (text.starts_with(resultsCacheUnavailableText))
            return text;
    return "";
}

enum class Stage {
    none,  // no cache yet: SQLite cannot even write the new database's first page
    made,  // no cache yet, and its file cannot be created
    kept,  // a cache full of rows, and a new file whose results cannot be written
};

std::string nameOf(Stage stage) {
    return stage == Stage::none ? "none" : stage == Stage::made ? "made" : "kept";
}

TEST(ResultsCacheFullDisk, AJobGivesTheResultsOfOneWithoutACacheAndTheNextJobWorks) {
    for (Stage stage : {Stage::none, Stage::made, Stage::kept}) {
        const std::string label = nameOf(stage);
        StoreFixture f;
        writeCacheTree(f);
        f.open();
        const std::string path = resultsCachePath(f.platform);
        const std::string added = f.home.path("Documents/small-c.txt");
        if (stage == Stage::kept) {
            checkWithCache(f);
            f.home.writeFile("Documents/small-c.txt", "same small");  // a third copy
        }
        const Outcome expected = checkWithCache(f, false);
        if (stage == Stage::kept) {
            ASSERT_EQ(expected.at(added).first, f.home.path("Documents/small-a.txt"));
        }

        Outcome got;
        if (stage == Stage::made) {
            f.platform.fault = FaultPlatform::failing("createExclusive", "results.sqlite", ENOSPC);
            got = checkWithCache(f);
            f.platform.fault = nullptr;
            EXPECT_EQ(newestUnavailableLine(f),
                      "Results cache unavailable: No space left on device");
        } else {
            SqliteDiskHarm full(f.home.path(".cache/QUORRIN"), SqliteDiskHarm::Kind::full);
            got = checkWithCache(f);
            EXPECT_GT(full.refused(), 0) << label;
            EXPECT_EQ(newestUnavailableLine(f),
                      "Results cache unavailable: database or disk is full")
                << label;
        }
        EXPECT_EQ(got, expected) << label;
        EXPECT_EQ(unavailableLines(f), 1) << label;

        // Space again: the next job works. Rows kept before the disk filled are still there, so
        // only the new file is read; then nothing is.
        std::map<std::string, int> opens = opensPerPathDuring(f, [&] { got = checkWithCache(f); });
        EXPECT_EQ(got, expected) << label;
        if (stage == Stage::kept) {
            EXPECT_EQ(opens, (std::map<std::string, int>{{added, 1}})) << label;
        } else {
            EXPECT_FALSE(opens.empty()) << label;
        }
        EXPECT_EQ(opensDuring(f, [&] { got = checkWithCache(f); }), 0) << label;
        EXPECT_EQ(got, expected) << label;
        EXPECT_EQ(unavailableLines(f), 1) << label;
    }
}

}  // namespace
}  // namespace quorrin::store
