// A duplicate check stopped part-way keeps the digests it computed: the next check reads only the
// files the stopped one had not read.
#include "tests/support/store/cache_checks.h"

#include <memory>
#include <mutex>
#include <set>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::opensPerPathDuring;
using quorrin::testing::StoreFixture;
using quorrin::testing::unavailableLines;

constexpr int fileCount = 120;
constexpr int opensBeforeStop = 10;

// Small files (a sample digest reads them whole) in pairs of one size, so that every file is
// compared; half of the pairs are copies.
std::set<std::string> buildTree(StoreFixture& f) {
    std::set<std::string> paths;
    for (int i = 0; i < fileCount; ++i) {
        const int pair = i / 2;
        std::string content = "pair " + std::to_string(1000 + pair) + (pair % 2 ? " a" : " ");
        if (pair % 2 == 1 && i % 2 == 1)
            content.back() = 'b';  // same size, other content
        content += std::string(static_cast<std::size_t>(pair), '.');
        const char* folder = i % 3 == 0 ? "Documents/" : i % 3 == 1 ? "Downloads/" : "Desktop/";
        paths.insert(
            f.home.writeFile(folder + std::string("file-") + std::to_string(i) + ".txt", content));
    }
    return paths;
}

TEST(ResultsCacheStop, AStoppedCheckKeepsWhatItReadAndTheNextReadsOnlyTheRest) {
    StoreFixture f;
    const std::set<std::string> all = buildTree(f);
    Engine::StopRequest stop = Engine::StopRequest::fresh();
    Store& store = f.open();
    store.useStopRequest(stop);

    // The stop is asked for as the tenth file is opened; the files already being read are read
    // to the end.
    std::map<std::string, int> firstOpens;
    {
        auto mutex = std::make_shared<std::mutex>();
        int opened = 0;
        f.platform.fault = [&, mutex](
                               const std::string& operation,
                               const std::string& argument) -> std::optional<platform::Error> {
            if (operation != "openForReading")
                return std::nullopt;
            std::lock_guard lock(*mutex);
            ++firstOpens[argument];
            if (++opened == opensBeforeStop)
                stop.request();
            return std::nullopt;
        };
        store.scan({.duplicates = true});
        f.settle();
        f.platform.fault = nullptr;
    }
    ASSERT_TRUE(store.stopped());
    ASSERT_GE(firstOpens.size(), static_cast<std::size_t>(opensBeforeStop));
    ASSERT_LT(firstOpens.size(), all.size());

    store.useStopRequest(Engine::StopRequest::fresh());
    std::map<std::string, int> secondOpens = opensPerPathDuring(f, [&] {
        store.scan({.duplicates = true});
        f.settle();
    });
    EXPECT_FALSE(store.stopped());
    EXPECT_TRUE(store.duplicatesChecked());
    // Every file is read exactly once over the two checks.
    for (const std::string& path : all) {
        const int first = firstOpens.contains(path) ? firstOpens.at(path) : 0;
        const int second = secondOpens.contains(path) ? secondOpens.at(path) : 0;
        EXPECT_EQ(first + second, 1) << path << ": " << first << " then " << second;
    }
    EXPECT_EQ(firstOpens.size() + secondOpens.size(), all.size());
    int copies = 0;
    for (const Engine::Entry& entry : store.files())
        copies += entry.duplicateOf.has_value();
    EXPECT_EQ(copies, fileCount / 4);
    EXPECT_EQ(unavailableLines(f), 0);
}

}  // namespace
}  // namespace quorrin::store
