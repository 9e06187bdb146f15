// The results cache in SQLite: where it lives, hits and misses by identity, and damaged, locked
// or foreign databases that are rebuilt or bypassed without failing anything.
#include "store/results_database.h"

#include "store/locations.h"
#include "tests/support/status_change.h"
#include "tests/support/temp_home.h"

#include <fstream>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

namespace quorrin::store {
namespace {

using Engine::CachedResults;
using Engine::CacheKey;
using quorrin::testing::TempHome;

std::uint32_t modeOf(const std::string& path) {
    struct stat info {};
    EXPECT_EQ(::stat(path.c_str(), &info), 0) << path;
    return info.st_mode & 07777;
}

CacheKey keyOf(const std::string& path) {
    auto info = platform::system().stat(path, false);
    EXPECT_TRUE(info.ok()) << path;
    return info ? Engine::cacheKeyOf(*info) : CacheKey{};
}

Engine::ContentDigest digestOf(std::uint8_t byte) {
    Engine::ContentDigest digest;
    digest.bytes.fill(byte);
    return digest;
}

const CachedResults someResults{.sampleDigest = digestOf(0xaa),
                                .fullDigest = digestOf(0x01),
                                .healthChecked = true,
                                .healthFinding = "Image could not be decoded",
                                .decoderVersion = "vips 8.14.1 • poppler 22.12.0"};

TEST(ResultsDatabase, ARememberedFileIsFoundByAnotherJob) {
    TempHome home;
    const std::string file = home.writeFile("Pictures/a.jpg", "content");
    const std::string path = resultsCachePath();
    EXPECT_EQ(path, home.path(".cache/QUORRIN/results.sqlite"));
    {
        ResultsDatabase cache(path);
        EXPECT_FALSE(cache.find(keyOf(file)).has_value());
        cache.remember(keyOf(file), someResults);
    }  // committed when the job's cache goes
    EXPECT_EQ(modeOf(home.path(".cache/QUORRIN")), 0700u);
    EXPECT_EQ(modeOf(path), 0600u);
    ResultsDatabase again(path);
    EXPECT_EQ(again.find(keyOf(file)), someResults);
    EXPECT_FALSE(again.unavailable().has_value());
}

TEST(ResultsDatabase, FollowsXdgCacheHome) {
    TempHome home;
    ::setenv("XDG_CACHE_HOME", home.path("elsewhere").c_str(), 1);
    EXPECT_EQ(resultsCachePath(), home.path("elsewhere/QUORRIN/results.sqlite"));
}

TEST(ResultsDatabase, AnyDifferentIdentityFieldIsAMiss) {
    TempHome home;
    const CacheKey key{.device = 5, .inode = 7, .size = 9, .modifiedNs = 11, .changedNs = 13};
    {
        ResultsDatabase cache(resultsCachePath());
        cache.remember(key, someResults);
        cache.commit();
    }
    ResultsDatabase cache(resultsCachePath());
    EXPECT_TRUE(cache.find(key).has_value());
    for (int field = 0; field < 5; ++field) {
        CacheKey other = key;
        switch (field) {
            case 0:
                ++other.device;
                break;
            case 1:
                ++other.inode;
                break;
            case 2:
                ++other.size;
                break;
            case 3:
                ++other.modifiedNs;
                break;
            default:
                ++other.changedNs;
                break;
        }
        EXPECT_FALSE(cache.find(other).has_value()) << field;
    }
}

// Content rewritten under the same size with its old modification time set back is another
// file: its status-change time has moved.
TEST(ResultsDatabase, AFileRewrittenAndRedatedIsAMiss) {
    TempHome home;
    const std::string file = home.writeFile("Documents/report.txt", "first");
    struct stat before {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    const CacheKey old = keyOf(file);
    {
        ResultsDatabase cache(resultsCachePath());
        cache.remember(old, someResults);
    }
    quorrin::testing::writeFileAt(file, "other");
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    // Done within one tick of the clock, the rewrite may have left the old status-change time.
    ASSERT_TRUE(quorrin::testing::moveStatusChangeTime(file, before.st_ctim));
    const CacheKey now = keyOf(file);
    EXPECT_EQ(now.size, old.size);
    EXPECT_EQ(now.modifiedNs, old.modifiedNs);
    ResultsDatabase cache(resultsCachePath());
    EXPECT_FALSE(cache.find(now).has_value());
}

// Writes `bytes` over the file at `offset`, or truncates it there when `bytes` is empty.
void damage(const std::string& path, std::size_t offset, const std::string& bytes) {
    if (bytes.empty()) {
        ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(offset)), 0);
        return;
    }
    std::fstream out(path, std::ios::in | std::ios::out | std::ios::binary);
    out.seekp(static_cast<std::streamoff>(offset));
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// A cache with many rows, so that damage lands in the table's pages.
void fill(const std::string& path) {
    ResultsDatabase cache(path);
    for (std::uint64_t i = 0; i < 400; ++i)
        cache.remember({.device = 1, .inode = i, .size = 10}, someResults);
    cache.commit();
}

// Damaged files are rebuilt empty and then work; nothing is thrown and nothing wrong is found.
TEST(ResultsDatabase, ADamagedDatabaseIsRebuilt) {
    TempHome home;
    const std::string path = resultsCachePath();
    struct Case {
        std::size_t offset;
        std::string bytes;
    };
    for (const Case& harm : {Case{0, "garbage!garbage!"}, Case{5000, std::string(3000, '\x5a')},
                             Case{4096, ""}, Case{100, ""}}) {
        fill(path);
        {
            // The write-ahead log is folded in when the last connection closes.
            sqlite3* db = nullptr;
            ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
            sqlite3_exec(db, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
            sqlite3_close(db);
        }
        damage(path, harm.offset, harm.bytes);
        ResultsDatabase cache(path);
        for (std::uint64_t i = 0; i < 400; ++i) {
            auto found = cache.find({.device = 1, .inode = i, .size = 10});
            EXPECT_TRUE(!found || *found == someResults);
        }
        cache.remember({.device = 2, .inode = 1, .size = 3}, someResults);
        cache.commit();
        EXPECT_FALSE(cache.unavailable().has_value()) << harm.offset;
        ResultsDatabase after(path);
        EXPECT_EQ(after.find({.device = 2, .inode = 1, .size = 3}), someResults) << harm.offset;
    }
}

// Runs `sql` on the database at `path` through a connection of its own, as another program (or
// an older Quorrin) would have; called through ASSERT_NO_FATAL_FAILURE.
void runSql(const std::string& path, const char* sql) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
}

TEST(ResultsDatabase, ADatabaseOfAnotherLayoutIsRebuilt) {
    TempHome home;
    const std::string path = resultsCachePath();
    ASSERT_TRUE(ensureFolder(home.path(".cache/QUORRIN")).ok());
    ASSERT_NO_FATAL_FAILURE(runSql(path,
                                   "CREATE TABLE results(path TEXT, digest TEXT);"
                                   "INSERT INTO results VALUES('/x', 'y'); PRAGMA user_version=0"));
    {
        ResultsDatabase cache(path);
        EXPECT_FALSE(cache.unavailable().has_value()) << *cache.unavailable();
        cache.remember({.device = 1, .inode = 2}, someResults);
    }
    ResultsDatabase cache(path);
    EXPECT_EQ(cache.find({.device = 1, .inode = 2}), someResults);
}

int userVersionOf(const std::string& path) {
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* version = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, "PRAGMA user_version", -1, &version, nullptr), SQLITE_OK);
    const int found = sqlite3_step(version) == SQLITE_ROW ? sqlite3_column_int(version, 0) : -1;
    sqlite3_finalize(version);
    sqlite3_close(db);
    return found;
}

// The earlier layout kept every field in a column of its own: its rows are dropped once, and the
// rows written after that are kept.
TEST(ResultsDatabase, TheLayoutOfOneColumnPerFieldIsRebuiltOnce) {
    TempHome home;
    const std::string path = resultsCachePath();
    ASSERT_TRUE(ensureFolder(home.path(".cache/QUORRIN")).ok());
    ASSERT_NO_FATAL_FAILURE(
        runSql(path,
               "PRAGMA journal_mode=WAL;"
               "CREATE TABLE results(device INTEGER NOT NULL, inode INTEGER NOT NULL,"
               " size INTEGER NOT NULL, modified INTEGER NOT NULL,"
               " changed INTEGER NOT NULL, sample BLOB, full BLOB,"
               " checked INTEGER NOT NULL, finding TEXT, decoders TEXT,"
               " seen INTEGER NOT NULL, PRIMARY KEY(device, inode)) WITHOUT ROWID;"
               "INSERT INTO results VALUES(1, 2, 3, 4, 5, zeroblob(32), NULL, 0, NULL,"
               " NULL, strftime('%s', 'now'));"
               "PRAGMA user_version=1"));
    const CacheKey old{.device = 1, .inode = 2, .size = 3, .modifiedNs = 4, .changedNs = 5};
    const CacheKey kept{.device = 1, .inode = 7, .size = 3, .modifiedNs = 4, .changedNs = 5};
    {
        ResultsDatabase cache(path);
        EXPECT_FALSE(cache.find(old).has_value());
        EXPECT_FALSE(cache.unavailable().has_value()) << *cache.unavailable();
        cache.remember(kept, someResults);
    }
    EXPECT_EQ(userVersionOf(path), 2);
    for (int job = 0; job < 2; ++job) {
        ResultsDatabase cache(path);
        EXPECT_FALSE(cache.find(old).has_value()) << job;
        EXPECT_EQ(cache.find(kept), someResults) << job;
        EXPECT_FALSE(cache.unavailable().has_value()) << job;
    }
}

// A row whose blob this program did not pack (another program's, or one damaged inside SQLite's
// own checks) is found by no look-up and fails nothing; the file's next results replace it.
TEST(ResultsDatabase, ARowThatDoesNotUnpackIsAMissAndIsReplaced) {
    TempHome home;
    const std::string path = resultsCachePath();
    const CacheKey key{.device = 1, .inode = 2, .size = 3, .modifiedNs = 4, .changedNs = 5};
    const CacheKey other{.device = 1, .inode = 3, .size = 3, .modifiedNs = 4, .changedNs = 5};
    {
        ResultsDatabase cache(path);
        cache.remember(other, someResults);
    }
    ASSERT_NO_FATAL_FAILURE(
        runSql(path, "INSERT INTO results VALUES(1, 2, strftime('%s', 'now'), x'ff0102')"));
    {
        ResultsDatabase cache(path);
        EXPECT_FALSE(cache.find(key).has_value());
        EXPECT_EQ(cache.find(other), someResults);
        cache.remember(key, someResults);
        cache.commit();
        EXPECT_FALSE(cache.unavailable().has_value());
    }
    ResultsDatabase cache(path);
    EXPECT_EQ(cache.find(key), someResults);
    EXPECT_EQ(cache.find(other), someResults);
}

// Another Quorrin about to write to a database that is not yet in WAL mode (as when it turns a
// new database to WAL mode itself) keeps this job from turning it to WAL mode; SQLite says so at
// once, without waiting, and the job asks again until the other is done.
TEST(ResultsDatabase, TurningToWalModeWaitsForAnotherWriter) {
    TempHome home;
    const std::string path = resultsCachePath();
    ASSERT_TRUE(ensureFolder(home.path(".cache/QUORRIN")).ok());
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "CREATE TABLE unrelated(x); BEGIN IMMEDIATE", nullptr, nullptr,
                           nullptr),
              SQLITE_OK);
    // Its commit waits for the job's own attempts, which read the database as they go.
    sqlite3_busy_timeout(other, 10'000);
    std::thread writer([other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_EQ(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    });
    {
        ResultsDatabase cache(path);
        cache.remember({.device = 1, .inode = 2}, someResults);
        cache.commit();
        EXPECT_FALSE(cache.unavailable().has_value()) << *cache.unavailable();
    }
    writer.join();
    sqlite3_close(other);
    ResultsDatabase cache(path);
    EXPECT_EQ(cache.find({.device = 1, .inode = 2}), someResults);
}

TEST(ResultsDatabase, AFolderInItsPlaceIsBypassed) {
    TempHome home;
    home.makeDir(".cache/QUORRIN/results.sqlite");
    ResultsDatabase cache(resultsCachePath());
    EXPECT_FALSE(cache.find({.device = 1}).has_value());
    cache.remember({.device = 1}, someResults);
    cache.commit();
    ASSERT_TRUE(cache.unavailable().has_value());
    EXPECT_FALSE(cache.unavailable()->empty());
}

// Another Quorrin holding the write lock: this job still reads, and goes on without writing.
TEST(ResultsDatabase, ALockedDatabaseIsBypassedForWriting) {
    TempHome home;
    const std::string path = resultsCachePath();
    fill(path);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    {
        ResultsDatabase cache(path);
        EXPECT_EQ(cache.find({.device = 1, .inode = 3, .size = 10}), someResults);
        cache.remember({.device = 9, .inode = 9}, someResults);
        cache.commit();
        EXPECT_EQ(cache.unavailable(), "database is locked");
    }
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    ResultsDatabase cache(path);
    EXPECT_FALSE(cache.find({.device = 9, .inode = 9}).has_value());
}

TEST(ResultsDatabase, ClearEmptiesIt) {
    TempHome home;
    fill(resultsCachePath());
    ASSERT_TRUE(ResultsDatabase::clear(resultsCachePath()).ok());
    ResultsDatabase cache(resultsCachePath());
    EXPECT_FALSE(cache.find({.device = 1, .inode = 3, .size = 10}).has_value());
    EXPECT_TRUE(ResultsDatabase::clear(home.path("nothing/here.sqlite")).ok());
}

}  // namespace
}  // namespace quorrin::store
