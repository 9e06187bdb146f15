// Rows of the results cache whose file has not been seen for 90 days are dropped, by the clock the
// platform gives; a row found again is seen again, so a file checked regularly is never dropped.
#include "store/locations.h"
#include "store/results_database.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <set>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace quorrin::store {
namespace {

using Engine::CachedResults;
using Engine::CacheKey;
using quorrin::testing::FaultPlatform;
using quorrin::testing::TempHome;

Engine::ContentDigest digestOf(std::uint8_t byte) {
    Engine::ContentDigest digest;
    digest.bytes.fill(byte);
    return digest;
}

const CachedResults someResults{.sampleDigest = digestOf(0xaa), .fullDigest = digestOf(0xbb)};

CacheKey keyOf(std::uint64_t inode) {
    return {.device = 1, .inode = inode, .size = 10, .modifiedNs = 20, .changedNs = 30};
}

constexpr platform::Instant start{std::chrono::seconds(1'700'000'000)};

platform::Instant daysAfterStart(int days, int hours = 0) {
    return start + std::chrono::hours(24 * days + hours);
}

// The inodes of the rows in the database, read without the cache's own code.
std::set<std::uint64_t> rowsIn(const std::string& path) {
    std::set<std::uint64_t> inodes;
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* select = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, "SELECT inode FROM results", -1, &select, nullptr), SQLITE_OK);
    while (sqlite3_step(select) == SQLITE_ROW)
        inodes.insert(static_cast<std::uint64_t>(sqlite3_column_int64(select, 0)));
    sqlite3_finalize(select);
    sqlite3_close(db);
    return inodes;
}

// One job at `when` that finds the rows of `found` (each must be there) and writes nothing else.
void jobFinding(FaultPlatform& platform, platform::Instant when,
                const std::set<std::uint64_t>& found) {
    platform.fixedNow = when;
    ResultsDatabase cache(resultsCachePath(platform), platform);
    for (std::uint64_t inode : found)
        EXPECT_EQ(cache.find(keyOf(inode)), someResults) << inode;
    cache.commit();
    EXPECT_FALSE(cache.unavailable().has_value());
}

TEST(ResultsDatabaseExpiry, ARowUnseenForMoreThanNinetyDaysIsDroppedAndOthersAreKept) {
    TempHome home;
    FaultPlatform platform;
    const std::string path = resultsCachePath(platform);
    platform.fixedNow = start;
    {
        ResultsDatabase cache(path, platform);
        for (std::uint64_t inode : {1, 2, 3})
            cache.remember(keyOf(inode), someResults);
    }
    // Row 2 is seen again 5 days later, row 3 on day 40.
    jobFinding(platform, daysAfterStart(5), {2});
    jobFinding(platform, daysAfterStart(40), {3});
    EXPECT_EQ(rowsIn(path), (std::set<std::uint64_t>{1, 2, 3}));

    // Day 89 and 23 hours: nothing is older than 90 days, nothing goes.
    jobFinding(platform, daysAfterStart(89, 23), {});
    EXPECT_EQ(rowsIn(path), (std::set<std::uint64_t>{1, 2, 3}));
    // Day 91: row 1, unseen since day 0, goes; row 2 (day 5) is still within 90 days.
    jobFinding(platform, daysAfterStart(91), {});
    EXPECT_EQ(rowsIn(path), (std::set<std::uint64_t>{2, 3}));
    // Day 96: row 2 goes too; row 3 was seen on day 40.
    jobFinding(platform, daysAfterStart(96), {});
    EXPECT_EQ(rowsIn(path), (std::set<std::uint64_t>{3}));
    // A job that finds no row and keeps nothing still drops rows once they are too old.
    jobFinding(platform, daysAfterStart(131), {});
    EXPECT_TRUE(rowsIn(path).empty());
}

TEST(ResultsDatabaseExpiry, AFileSeenRegularlyIsNeverDropped) {
    TempHome home;
    FaultPlatform platform;
    const std::string path = resultsCachePath(platform);
    platform.fixedNow = start;
    {
        ResultsDatabase cache(path, platform);
        cache.remember(keyOf(1), someResults);
        cache.remember(keyOf(2), someResults);
    }
    // Row 1 is found every 60 days for three years; row 2 never again.
    for (int day = 60; day <= 3 * 365; day += 60) {
        jobFinding(platform, daysAfterStart(day), {1});
        const std::set<std::uint64_t> kept =
            day <= 90 ? std::set<std::uint64_t>{1, 2} : std::set<std::uint64_t>{1};
        EXPECT_EQ(rowsIn(path), kept) << "day " << day;
    }
    // Then no more: 90 days after it was last found, it goes as well.
    const int lastFound = 60 * (3 * 365 / 60);
    jobFinding(platform, daysAfterStart(lastFound + 89), {});
    EXPECT_EQ(rowsIn(path), std::set<std::uint64_t>{1});
    jobFinding(platform, daysAfterStart(lastFound + 91), {});
    EXPECT_TRUE(rowsIn(path).empty());
}

}  // namespace
}  // namespace quorrin::store
