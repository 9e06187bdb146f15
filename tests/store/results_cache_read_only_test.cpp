// A results cache that cannot be written: on a read-only mount (which stops root too) or by its
// modes. The job gives the results of a job without a cache and says so once; once writable
// again, the next job keeps and finds its results.
#include "store/locations.h"
#include "tests/support/store/cache_checks.h"
#include "tests/support/store/sqlite_disk_harm.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::checkWithCache;
using quorrin::testing::opensDuring;
using quorrin::testing::SqliteDiskHarm;
using quorrin::testing::StoreFixture;
using quorrin::testing::unavailableLines;
using quorrin::testing::writeCacheTree;
using Outcome = quorrin::testing::CheckOutcome;

// A cache filled by one job, then a new copy that the next job has results of to keep.
Outcome fillThenAddAFile(StoreFixture& f) {
    checkWithCache(f);
    f.home.writeFile("Documents/small-c.txt", "same small");
    return checkWithCache(f, false);
}

// After the harmed job: the next job keeps its results, and the one after reads nothing.
void expectTheNextJobsWork(StoreFixture& f, const Outcome& expected, const std::string& label) {
    Outcome got = checkWithCache(f);
    EXPECT_EQ(got, expected) << label;
    EXPECT_EQ(opensDuring(f, [&] { got = checkWithCache(f); }), 0) << label;
    EXPECT_EQ(got, expected) << label;
    EXPECT_EQ(unavailableLines(f), 1) << label;
}

TEST(ResultsCacheReadOnly, OnAReadOnlyMountAJobGivesTheResultsOfOneWithoutACache) {
    for (bool kept : {false, true}) {
        const std::string label = kept ? "a kept cache" : "no cache yet";
        StoreFixture f;
        writeCacheTree(f);
        f.open();
        const Outcome expected = kept ? fillThenAddAFile(f) : checkWithCache(f, false);
        Outcome got;
        {
            SqliteDiskHarm readOnly(f.home.path(".cache/QUORRIN"), SqliteDiskHarm::Kind::readOnly);
            got = checkWithCache(f);
            EXPECT_GT(readOnly.refused(), 0) << label;
        }
        EXPECT_EQ(got, expected) << label;
        EXPECT_EQ(unavailableLines(f), 1) << label;
        expectTheNextJobsWork(f, expected, label);
    }
}

// Modes do not stop root, so this runs only for another user; the case above stops everyone.
TEST(ResultsCacheReadOnly, ByItsModesAJobGivesTheResultsOfOneWithoutACache) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "root writes whatever the modes say";
    for (bool folderToo : {false, true}) {
        const std::string label = folderToo ? "file 0400 in folder 0500" : "file 0400";
        StoreFixture f;
        writeCacheTree(f);
        f.open();
        const Outcome expected = fillThenAddAFile(f);
        const std::string path = resultsCachePath(f.platform);
        const std::string folder = f.home.path(".cache/QUORRIN");
        ASSERT_EQ(::chmod(path.c_str(), 0400), 0);
        if (folderToo) {
            ASSERT_EQ(::chmod(folder.c_str(), 0500), 0);
        }
        const Outcome got = checkWithCache(f);
        ASSERT_EQ(::chmod(folder.c_str(), 0700), 0);
        ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
        EXPECT_EQ(got, expected) << label;
        EXPECT_EQ(unavailableLines(f), 1) << label;
        expectTheNextJobsWork(f, expected, label);
    }
}

}  // namespace
}  // namespace quorrin::store
