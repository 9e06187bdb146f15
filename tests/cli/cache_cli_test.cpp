// quorrin-cli cache --clear, and --no-cache on scan and start.
#include "tests/cli/cli_fixture.h"
#include "tests/support/trash_inspection.h"

#include <gtest/gtest.h>

namespace quorrin::cli {
namespace {

using quorrin::testing::existsNoFollow;

class CacheCli : public CliTest {
protected:
    std::string cacheFile() const { return home.path(".cache/QUORRIN/results.sqlite"); }
};

TEST_F(CacheCli, ScanKeepsResultsUnlessToldNotTo) {
    connectDownloads();
    home.writeFile("Downloads/a.txt", "same");
    home.writeFile("Downloads/b.txt", "same");
    auto uncached = run({"scan", "--duplicates", "--no-cache"});
    EXPECT_EQ(uncached.status, 0);
    EXPECT_EQ(uncached.out, "Duplicate check complete • 2 files • 0 notes\n");
    EXPECT_FALSE(existsNoFollow(cacheFile()));
    auto started = run({"start", "--keep-duplicates", "--no-cache"});
    EXPECT_EQ(started.status, 0);
    EXPECT_FALSE(existsNoFollow(cacheFile()));
    auto cached = run({"scan", "--duplicates"});
    EXPECT_EQ(cached.status, 0);
    EXPECT_TRUE(existsNoFollow(cacheFile()));
}

TEST_F(CacheCli, ClearForgetsTheCache) {
    connectDownloads();
    home.writeFile("Downloads/a.txt", "same");
    home.writeFile("Downloads/b.txt", "same");
    ASSERT_EQ(run({"scan", "--health"}).status, 0);
    ASSERT_TRUE(existsNoFollow(cacheFile()));
    auto cleared = run({"cache", "--clear"});
    EXPECT_EQ(cleared.status, 0);
    EXPECT_EQ(cleared.out, "Cached results forgotten\n");
    EXPECT_FALSE(existsNoFollow(cacheFile()));
    // Nothing to forget is no failure either.
    EXPECT_EQ(run({"cache", "--clear"}).status, 0);
}

TEST_F(CacheCli, CacheWithoutClearIsAUsageError) {
    auto result = run({"cache"});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("Usage: quorrin-cli"), std::string::npos);
    EXPECT_NE(run({"--help"}).out.find("cache --clear"), std::string::npos);
}

}  // namespace
}  // namespace quorrin::cli
