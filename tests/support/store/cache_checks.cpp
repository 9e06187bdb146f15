// Runs the checks of the results-cache tests and counts what they opened and reported.
#include "tests/support/store/cache_checks.h"

#include <algorithm>

namespace quorrin::testing {

CheckOutcome outcomeOf(const store::Store& store) {
    CheckOutcome outcome;
    for (const Engine::Entry& entry : store.files())
        outcome[entry.url] = {entry.duplicateOf, entry.issue};
    return outcome;
}

void writeCacheTree(StoreFixture& f) {
    const std::string large(200'000, 'L');
    f.home.writeFile("Documents/large-a.bin", large);
    f.home.writeFile("Documents/large-b.bin", large);
    f.home.writeFile("Documents/small-a.txt", "same small");
    f.home.writeFile("Downloads/small-b.txt", "same small");
    f.home.writeFile("Documents/other.txt", "different!");
    f.home.writeFile("Desktop/broken.jpg", "not a picture at all");
    f.home.writeFile("Documents/empty.txt", "");
}

CheckOutcome checkWithCache(StoreFixture& f, bool cache) {
    store::Store& store = *f.store;
    store.setUseResultsCache(cache);
    store.scan({.duplicates = true, .health = true});
    f.settle();
    return outcomeOf(store);
}

std::map<std::string, int> opensPerPathDuring(StoreFixture& f, const std::function<void()>& run) {
    std::map<std::string, int> opens;
    // The digests are read on several threads; the platform calls its hook under its own lock.
    f.platform.fault = [&opens](const std::string& operation,
                                const std::string& argument) -> std::optional<platform::Error> {
        if (operation == "openForReading")
            ++opens[argument];
        return std::nullopt;
    };
    run();
    f.platform.fault = nullptr;
    return opens;
}

int opensDuring(StoreFixture& f, const std::function<void()>& run) {
    int total = 0;
    for (const auto& [path, count] : opensPerPathDuring(f, run))
        total += count;
    return total;
}

long unavailableLines(const StoreFixture& f) {
    auto texts = f.activityTexts();
    return std::count_if(texts.begin(), texts.end(), [](const std::string& text) {
        return text.starts_with(store::resultsCacheUnavailableText);
    });
}

}  // namespace quorrin::testing
