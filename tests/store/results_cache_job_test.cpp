// The results cache in the Store's jobs: a second check reads nothing unchanged, a changed file is
// read again, an unusable cache changes no result, and clearing duplicates never trusts it.
#include "store/locations.h"
#include "store/results_database.h"
#include "tests/support/status_change.h"
#include "tests/support/store/cache_checks.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::checkWithCache;
using quorrin::testing::opensDuring;
using quorrin::testing::StoreFixture;
using quorrin::testing::unavailableLines;
using quorrin::testing::writeCacheTree;
using Outcome = quorrin::testing::CheckOutcome;

TEST(ResultsCacheJob, TheSecondCheckReadsNoUnchangedFile) {
    StoreFixture f;
    writeCacheTree(f);
    f.open();
    const Outcome first = checkWithCache(f);
    EXPECT_EQ(first.at(f.home.path("Documents/large-b.bin")).first,
              f.home.path("Documents/large-a.bin"));
    EXPECT_EQ(first.at(f.home.path("Downloads/small-b.txt")).first,
              f.home.path("Documents/small-a.txt"));
    Outcome second;
    EXPECT_EQ(opensDuring(f, [&] { second = checkWithCache(f); }), 0);
    EXPECT_EQ(second, first);
    EXPECT_EQ(unavailableLines(f), 0);
    // Without the cache everything is read again, with the same results.
    Outcome uncached;
    EXPECT_GT(opensDuring(f, [&] { uncached = checkWithCache(f, false); }), 0);
    EXPECT_EQ(uncached, first);
}

TEST(ResultsCacheJob, AFileRewrittenWithItsOldDateIsReadAgain) {
    StoreFixture f;
    writeCacheTree(f);
    f.open();
    const std::string b = f.home.path("Documents/large-b.bin");
    ASSERT_TRUE(checkWithCache(f).at(b).first.has_value());
    struct stat before {};
    ASSERT_EQ(::stat(b.c_str(), &before), 0);
    quorrin::testing::writeFileAt(b, std::string(200'000, 'M'));
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, b.c_str(), times, 0), 0);
    // Done within one tick of the clock, the rewrite may have left the old status-change time.
    ASSERT_TRUE(quorrin::testing::moveStatusChangeTime(b, before.st_ctim));
    EXPECT_FALSE(checkWithCache(f).at(b).first.has_value());
}

void checkpoint(const std::string& path) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    sqlite3_exec(db, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
    sqlite3_close(db);
}

// Each way a cache can be unusable: the job completes with the results of a job without one,
// and says so in at most one line.
TEST(ResultsCacheJob, AnUnusableCacheChangesNoResult) {
    const std::vector<std::string> harms = {"corrupt", "truncated", "folder", "locked", "layout"};
    for (const std::string& harm : harms) {
        StoreFixture f;
        writeCacheTree(f);
        f.open();
        const Outcome expected = checkWithCache(f, false);
        const std::string path = resultsCachePath(f.platform);
        checkWithCache(f);  // fills the cache
        checkpoint(path);
        sqlite3* holder = nullptr;
        if (harm == "corrupt") {
            std::string bytes = quorrin::testing::readFile(path);
            for (std::size_t i = 100; i < bytes.size(); i += 7)
                bytes[i] = static_cast<char>(bytes[i] ^ 0xA5);
            quorrin::testing::writeFileAt(path, bytes);
        } else if (harm == "truncated") {
            ASSERT_EQ(::truncate(path.c_str(), 1000), 0);
        } else if (harm == "folder") {
            ASSERT_TRUE(ResultsDatabase::clear(path).ok());
            f.home.makeDir(".cache/QUORRIN/results.sqlite");
        } else if (harm == "locked") {
            ASSERT_EQ(sqlite3_open(path.c_str(), &holder), SQLITE_OK);
            ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr),
                      SQLITE_OK);
            // A changed file, so that this job has something to write.
            f.home.writeFile("Documents/new.txt", "new");
        } else {
            sqlite3* db = nullptr;
            ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
            sqlite3_exec(db,
                         "DROP TABLE results; CREATE TABLE results(path TEXT PRIMARY KEY);"
                         "PRAGMA user_version=7",
                         nullptr, nullptr, nullptr);
            sqlite3_close(db);
        }
        Outcome got = checkWithCache(f);
        if (harm == "locked") {
            sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr);
            sqlite3_close(holder);
            got.erase(f.home.path("Documents/new.txt"));
        }
        EXPECT_EQ(got, expected) << harm;
        EXPECT_LE(unavailableLines(f), 1) << harm;
        if (harm == "folder" || harm == "locked") {
            EXPECT_EQ(unavailableLines(f), 1) << harm;
        }
        // And the next job again gives the same.
        if (harm != "locked") {
            EXPECT_EQ(checkWithCache(f), expected) << harm;
        }
    }
}

// Clearing a verified copy reads both files in full, even when the cache holds both digests.
TEST(ResultsCacheJob, ClearingDuplicatesReadsBothFilesEvenWhenCached) {
    StoreFixture f;
    writeCacheTree(f);
    Store& store = f.open();
    checkWithCache(f);
    checkWithCache(f);  // every digest is now in the cache
    const std::string a = f.home.path("Documents/large-a.bin");
    const std::string b = f.home.path("Documents/large-b.bin");
    std::vector<Engine::Entry> copies;
    for (const Engine::Entry& entry : store.files())
        if (entry.url == b)
            copies.push_back(entry);
    ASSERT_EQ(copies.size(), 1u);
    ASSERT_EQ(copies[0].duplicateOf, a);
    std::map<std::string, int> opens;
    f.platform.fault = [&](const std::string& operation,
                           const std::string& argument) -> std::optional<platform::Error> {
        if (operation == "openForReading")
            ++opens[argument];
        return std::nullopt;
    };
    const int readsBefore = f.platform.calls["read"];
    store.clear(copies, true);
    f.settle();
    f.platform.fault = nullptr;
    EXPECT_EQ(opens[a], 1);
    EXPECT_EQ(opens[b], 1);
    // 200,000 bytes each in 1 MiB reads: the data and the end of each file.
    EXPECT_GE(f.platform.calls["read"] - readsBefore, 4);
    EXPECT_FALSE(std::filesystem::exists(b));
}

}  // namespace
}  // namespace quorrin::store
