// The find-older pickers' choices: raw values, their order, lookup by text, and the basis's date.
#include "engine/file_date_basis.h"
#include "engine/older_match.h"

#include <chrono>
#include <string>
#include <unordered_set>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

TEST(FileDateBasis, RawValuesInPickerOrder) {
    ASSERT_EQ(allFileDateBases.size(), 2u);
    EXPECT_EQ(allFileDateBases[0], FileDateBasis::created);
    EXPECT_EQ(allFileDateBases[1], FileDateBasis::modified);
    EXPECT_EQ(rawValue(FileDateBasis::created), "Created date");
    EXPECT_EQ(rawValue(FileDateBasis::modified), "Last modified date");
}

TEST(FileDateBasis, RoundTripsThroughItsRawValue) {
    std::unordered_set<FileDateBasis> seen;
    for (FileDateBasis basis : allFileDateBases) {
        EXPECT_EQ(fileDateBasisFrom(rawValue(basis)), basis);
        seen.insert(basis);
    }
    EXPECT_EQ(seen.size(), allFileDateBases.size());
}

TEST(FileDateBasis, UnknownTextGivesNone) {
    EXPECT_FALSE(fileDateBasisFrom("").has_value());
    EXPECT_FALSE(fileDateBasisFrom("created date").has_value());
    EXPECT_FALSE(fileDateBasisFrom("Created date ").has_value());
    EXPECT_FALSE(fileDateBasisFrom("Modified date").has_value());
    EXPECT_FALSE(fileDateBasisFrom("Older than").has_value());
}

TEST(FileDateBasis, DateOfAnEntry) {
    Instant modified = Instant(std::chrono::seconds(1'700'000'000) + std::chrono::nanoseconds(7));
    Instant created = Instant(std::chrono::seconds(1'600'000'000));
    Entry entry{.url = "/home/u/Documents/a.txt",
                .size = 1,
                .modified = modified,
                .lastUsed = modified,
                .category = "04 Documents",
                .root = "/home/u/Documents"};
    EXPECT_FALSE(date(FileDateBasis::created, entry).has_value());
    EXPECT_EQ(date(FileDateBasis::modified, entry), modified);
    entry.created = created;
    EXPECT_EQ(date(FileDateBasis::created, entry), created);
    EXPECT_EQ(date(FileDateBasis::modified, entry), modified);
}

TEST(OlderMatch, RawValuesInPickerOrder) {
    ASSERT_EQ(allOlderMatches.size(), 3u);
    EXPECT_EQ(allOlderMatches[0], OlderMatch::older);
    EXPECT_EQ(allOlderMatches[1], OlderMatch::around);
    EXPECT_EQ(allOlderMatches[2], OlderMatch::custom);
    EXPECT_EQ(rawValue(OlderMatch::older), "Older than");
    EXPECT_EQ(rawValue(OlderMatch::around), "During that month");
    EXPECT_EQ(rawValue(OlderMatch::custom), "Custom dates");
}

TEST(OlderMatch, RoundTripsThroughItsRawValue) {
    std::unordered_set<OlderMatch> seen;
    for (OlderMatch match : allOlderMatches) {
        EXPECT_EQ(olderMatchFrom(rawValue(match)), match);
        seen.insert(match);
    }
    EXPECT_EQ(seen.size(), allOlderMatches.size());
}

TEST(OlderMatch, UnknownTextGivesNone) {
    EXPECT_FALSE(olderMatchFrom("").has_value());
    EXPECT_FALSE(olderMatchFrom("older than").has_value());
    EXPECT_FALSE(olderMatchFrom("During that month.").has_value());
    EXPECT_FALSE(olderMatchFrom("Custom").has_value());
    EXPECT_FALSE(olderMatchFrom("Created date").has_value());
}

}  // namespace
}  // namespace quorrin::Engine
