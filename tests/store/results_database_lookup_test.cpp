// Look-ups in the results cache: every kept row is found whatever the order of the questions,
// and no identity that was not kept is.
#include "store/locations.h"
#include "store/results_database.h"
#include "tests/support/temp_home.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using Engine::CachedResults;
using Engine::CacheKey;
using Engine::ContentDigest;
using quorrin::testing::TempHome;

CacheKey keyOf(std::uint64_t device, std::uint64_t inode) {
    return {.device = device, .inode = inode, .size = 5, .modifiedNs = 6, .changedNs = 7};
}

// A digest that names its identity, so that a row found for the wrong file shows.
CachedResults resultsOf(const CacheKey& key) {
    ContentDigest digest;
    for (std::size_t i = 0; i < 8; ++i) {
        digest.bytes[i] = static_cast<std::uint8_t>(key.inode >> (8 * i));
        digest.bytes[8 + i] = static_cast<std::uint8_t>(key.device >> (8 * i));
    }
    return {.sampleDigest = digest};
}

TEST(ResultsDatabaseLookup, EveryRowIsFoundInAnyOrderAndNoOtherIs) {
    TempHome home;
    std::mt19937_64 random(11);
    // Inodes in runs, as a folder's files have them, with gaps between the runs, on two devices
    // (the second numbered past 2^63, where a signed order would differ).
    std::vector<CacheKey> kept, missing;
    for (std::uint64_t device : {std::uint64_t{3}, (std::uint64_t{1} << 63) + 5}) {
        std::uint64_t inode = 2;
        for (int run = 0; run < 40; ++run) {
            missing.push_back(keyOf(device, inode - 1));
            for (std::uint64_t length = 1 + random() % 30; length > 0; --length)
                kept.push_back(keyOf(device, inode++));
            missing.push_back(keyOf(device, inode));
            inode += 2 + random() % 1000;
        }
        missing.push_back(keyOf(device, inode + 100));
    }
    missing.push_back(keyOf(4, 10));
    {
        ResultsDatabase cache(resultsCachePath());
        for (const CacheKey& key : kept)
            cache.remember(key, resultsOf(key));
    }

    std::vector<CacheKey> descending(kept.rbegin(), kept.rend());
    std::vector<CacheKey> shuffled = kept;
    std::shuffle(shuffled.begin(), shuffled.end(), random);
    // Hits and misses in turn, in an order that jumps both ways.
    std::vector<CacheKey> mixed = kept;
    mixed.insert(mixed.end(), missing.begin(), missing.end());
    std::shuffle(mixed.begin(), mixed.end(), random);
    for (const auto& order : {kept, descending, shuffled, mixed}) {
        ResultsDatabase cache(resultsCachePath());
        for (const CacheKey& key : order) {
            const bool isKept = std::find(kept.begin(), kept.end(), key) != kept.end();
            auto found = cache.find(key);
            if (isKept)
                EXPECT_EQ(found, resultsOf(key)) << key.device << " " << key.inode;
            else
                EXPECT_FALSE(found.has_value()) << key.device << " " << key.inode;
        }
    }
}

}  // namespace
}  // namespace quorrin::store
