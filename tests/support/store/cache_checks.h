// Checks run through a StoreFixture for the results-cache tests, with what they read and said.
#pragma once

#include "tests/support/store/store_fixture.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace quorrin::testing {

// What a check gave: per path, the copy it duplicates and its health finding.
using CheckOutcome =
    std::map<std::string, std::pair<std::optional<std::string>, std::optional<std::string>>>;

CheckOutcome outcomeOf(const store::Store& store);

// The tree the cache tests check: two large copies (read whole), two small copies (their sample
// is their full digest), a file of its own, a broken image and an empty file.
void writeCacheTree(StoreFixture& f);

// Checks duplicates and health at once, with the results cache or without it, and waits for the
// job to end.
CheckOutcome checkWithCache(StoreFixture& f, bool cache = true);

// Per path, how often files were opened for reading while `run` ran (through f.platform's hook,
// which must be free).
std::map<std::string, int> opensPerPathDuring(StoreFixture& f, const std::function<void()>& run);
// The same, summed over all paths.
int opensDuring(StoreFixture& f, const std::function<void()>& run);

// How many "Results cache unavailable: " lines the activity holds.
long unavailableLines(const StoreFixture& f);

}  // namespace quorrin::testing
