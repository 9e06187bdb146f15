// A results cache still being read: the walk goes on without it, and the files to sample are
// looked up once the walk is over, with the same marks and no file read that the cache knows.
#include "engine/scanner.h"
#include "tests/support/fault_platform.h"
#include "tests/support/temp_home.h"

#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::TempHome;

// An in-memory cache whose reading can be held back. It numbers every call, so that a test can
// tell whether a look-up came while the cache said it was not ready.
class HeldBackCache : public ResultsCache {
public:
    std::atomic<bool> loaded{true};
    // When not loaded: it becomes ready once asked this many times (never when negative).
    int readyAfterCalls = -1;

    bool ready() const override {
        std::lock_guard lock(mutex_);
        lastReadyCall_ = ++calls_;
        ++readyCalls_;
        return loaded.load() || (readyAfterCalls >= 0 && readyCalls_ > readyAfterCalls);
    }
    std::optional<CachedResults> find(const CacheKey& key) override {
        std::lock_guard lock(mutex_);
        ++calls_;
        if (firstFind_ == 0)
            firstFind_ = calls_;
        ++finds_;
        for (const auto& [kept, results] : rows_)
            if (kept == key)
                return results;
        return std::nullopt;
    }
    void remember(const CacheKey& key, const CachedResults& results) override {
        std::lock_guard lock(mutex_);
        for (auto& [kept, held] : rows_)
            if (kept == key) {
                held = results;
                return;
            }
        rows_.emplace_back(key, results);
    }
    void commit() override {}
    std::optional<std::string> unavailable() const override { return std::nullopt; }

    void forgetCalls() {
        std::lock_guard lock(mutex_);
        calls_ = lastReadyCall_ = readyCalls_ = firstFind_ = finds_ = 0;
    }
    std::size_t rows() const { return rows_.size(); }
    int readyCalls() const { return readyCalls_; }
    int finds() const { return finds_; }
    // Whether every look-up came after the last time the cache was asked whether it was ready.
    bool foundOnlyAfterTheLastReadyCall() const { return firstFind_ > lastReadyCall_; }

private:
    mutable std::mutex mutex_;
    mutable int calls_ = 0, lastReadyCall_ = 0, readyCalls_ = 0;
    int firstFind_ = 0, finds_ = 0;
    std::vector<std::pair<CacheKey, CachedResults>> rows_;
};

// Three sets of copies in two folders, with files of shared sizes that differ, large and small.
std::string writeTree(const TempHome& home) {
    const std::string big(300'000, 'b');
    std::string otherBig = big;
    otherBig.back() = 'c';
    home.writeFile("Documents/a/one.txt", "same words");
    home.writeFile("Documents/b/one copy.txt", "same words");
    home.writeFile("Documents/a/two.txt", "other word");
    home.writeFile("Documents/a/film.bin", big);
    home.writeFile("Documents/b/film copy.bin", big);
    home.writeFile("Documents/b/film edit.bin", otherBig);
    home.writeFile("Documents/b/notes.txt", std::string(5000, 'n'));
    home.writeFile("Documents/a/notes again.txt", std::string(5000, 'n'));
    return home.path("Documents");
}

ScanResult scanWith(const std::string& root, FaultPlatform& platform, ResultsCache* cache) {
    return scan({.roots = {root},
                 .compareDuplicates = true,
                 .rootPolicy = [](const std::string&) { return true; },
                 .cache = cache},
                platform);
}

std::vector<std::pair<std::string, std::optional<std::string>>> marks(const ScanResult& result) {
    std::vector<std::pair<std::string, std::optional<std::string>>> marked;
    for (const Entry& entry : result.files)
        marked.emplace_back(entry.url, entry.duplicateOf);
    return marked;
}

// A tree, its marks without a cache, and a cache that a first scan filled with every file.
class CacheStillLoading : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(marks(scanWith(root, platform, &cache)), marks(uncached));
        ASSERT_EQ(cache.rows(), 8u);  // every file shares its size with another
        cache.forgetCalls();
    }

    TempHome home;
    FaultPlatform platform;
    const std::string root = writeTree(home);
    const ScanResult uncached = scanWith(root, platform, nullptr);
    HeldBackCache cache;
};

TEST_F(CacheStillLoading, TheWalkDoesNotWaitAndNothingKnownIsRead) {
    // Not ready for the whole walk: nothing is looked up until the walk is over, and then
    // everything is known, so no file is opened.
    cache.loaded = false;
    const int opened = platform.calls["openForReading"];
    const ScanResult second = scanWith(root, platform, &cache);
    EXPECT_EQ(marks(second), marks(uncached));
    EXPECT_EQ(platform.calls["openForReading"], opened);
    EXPECT_GT(cache.readyCalls(), 0);
    EXPECT_EQ(cache.finds(), 8);
    EXPECT_TRUE(cache.foundOnlyAfterTheLastReadyCall());
}

TEST_F(CacheStillLoading, WhatWasSetAsideIsLookedUpOnceTheCacheIsReadDuringTheWalk) {
    // Ready from its third question on: the files set aside until then are looked up while the
    // walk still asks, and the rest as they come.
    cache.loaded = false;
    cache.readyAfterCalls = 2;
    const int opened = platform.calls["openForReading"];
    const ScanResult second = scanWith(root, platform, &cache);
    EXPECT_EQ(marks(second), marks(uncached));
    EXPECT_EQ(platform.calls["openForReading"], opened);
    EXPECT_EQ(cache.finds(), 8);
    EXPECT_FALSE(cache.foundOnlyAfterTheLastReadyCall());
}

TEST(CacheStillLoadingOnAFirstRun, WhatWasSetAsideIsSampledAndKept) {
    TempHome home;
    FaultPlatform platform;
    const std::string root = writeTree(home);
    const ScanResult uncached = scanWith(root, platform, nullptr);
    HeldBackCache cache;
    cache.loaded = false;
    const ScanResult result = scanWith(root, platform, &cache);
    EXPECT_EQ(marks(result), marks(uncached));
    EXPECT_EQ(result.notes, uncached.notes);
    // What was read is kept, for the next run.
    EXPECT_EQ(cache.rows(), 8u);
}

}  // namespace
}  // namespace quorrin::Engine
