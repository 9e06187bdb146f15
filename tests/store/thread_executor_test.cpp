// The Store on real threads: ThreadExecutor's queues, progress from a background thread, a Store
// closed while its background work still runs, and two Stores arranging one folder at once.
// These tests are also run under ThreadSanitizer.
#include "store/thread_executor.h"

#include "platform/linux_platform.h"
#include "store/store.h"
#include "tests/support/inventory.h"
#include "tests/support/temp_home.h"

#include <atomic>
#include <future>
#include <thread>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::describe;
using quorrin::testing::existsNoFollow;
using quorrin::testing::Inventory;
using quorrin::testing::Placement;
using quorrin::testing::TempHome;

class ThreadedStore : public ::testing::Test {
protected:
    TempHome home{TempHome::Backing::memory};
    std::string downloads = home.makeDir("Downloads");
    platform::LinuxPlatform platform;

    void SetUp() override {
        home.writeFile(".config/QUORRIN/settings.json", R"({"roots":[")" + downloads + R"("]})");
    }
    std::string historyPath() const {
        return home.path(".local/share/QUORRIN/last-organization.json");
    }
};

// Records every status the Store shows, on the main thread.
class StatusLog : public StoreObserver {
public:
    explicit StatusLog(Store& store) : store_(store) { store_.addObserver(this); }
    ~StatusLog() override { store_.removeObserver(this); }
    void changed(Property property) override {
        if (property == Property::status)
            statuses.push_back(store_.status());
    }
    std::vector<std::string> statuses;

private:
    Store& store_;
};

TEST(ThreadExecutor, RunsBackgroundWorkElsewhereAndMainWorkInOrderOnTheCaller) {
    ThreadExecutor executor;
    const auto caller = std::this_thread::get_id();
    std::vector<std::string> trace;  // main thread only
    std::atomic<bool> elsewhere{false};
    for (int i = 0; i < 3; ++i) {
        executor.runInBackground([&executor, &trace, &elsewhere, caller, i] {
            elsewhere = elsewhere || std::this_thread::get_id() != caller;
            for (int j = 0; j < 100; ++j)
                executor.postToMain([&trace, i, j] {
                    trace.push_back(std::to_string(i) + ":" + std::to_string(j));
                });
        });
    }
    executor.runUntil([&] { return trace.size() == 300; });
    EXPECT_TRUE(elsewhere);
    // Each thread's posts arrive in the order posted.
    for (int i = 0; i < 3; ++i) {
        int next = 0;
        for (const std::string& item : trace) {
            if (item.starts_with(std::to_string(i) + ":")) {
                EXPECT_EQ(item, std::to_string(i) + ":" + std::to_string(next++));
            }
        }
        EXPECT_EQ(next, 100);
    }
}

TEST_F(ThreadedStore, StartRunsInTheBackgroundAndShowsItsProgress) {
    for (int i = 0; i < 300; ++i)
        home.writeFile("Downloads/file " + std::to_string(i) + ".txt", std::to_string(i));
    ThreadExecutor executor;
    Store store(executor, platform);
    StatusLog log(store);
    store.scan({.organize = true});
    EXPECT_TRUE(store.busy());
    executor.runUntil([&] { return !store.busy(); });
    EXPECT_EQ(store.activity().front().text(),
              "Done • 300 files arranged • 0 duplicates sent to Trash");
    EXPECT_EQ(store.moves().size(), 300u);
    EXPECT_NE(std::find(log.statuses.begin(), log.statuses.end(), "Indexed 250 files…"),
              log.statuses.end());
    EXPECT_NE(std::find(log.statuses.begin(), log.statuses.end(), "Organizing your files…"),
              log.statuses.end());
}

TEST_F(ThreadedStore, AStoreClosedDuringStartLeavesTheWorkDoneAndRecorded) {
    home.writeFile("Downloads/a.txt", "a");
    home.writeFile("Downloads/b.mp3", "b");
    Inventory inventory = Inventory::take(home.home(), {downloads});
    std::promise<void> entered;
    std::promise<void> closed;
    std::shared_future<void> release = closed.get_future().share();
    {
        ThreadExecutor executor;
        auto store = std::make_unique<Store>(executor, platform);
        store->setTestHooks({.beforeArrangement = [&entered, release] {
            entered.set_value();
            release.wait();
        }});
        store->scan({.organize = true});
        executor.runUntil([&] { return store->status() == "Organizing your files…"; });
        entered.get_future().wait();
        store.reset();  // the window closes while the arrangement waits to begin
        closed.set_value();
        // The executor's end waits for the arrangement; its result finds no Store and is dropped.
    }
    EXPECT_TRUE(existsNoFollow(downloads + "/04 Documents/a.txt"));
    auto problems = inventory.check(historyPath());
    EXPECT_TRUE(problems.empty()) << describe(problems);
    for (const auto& [path, placement] : inventory.placements(historyPath())) {
        EXPECT_EQ(placement, Placement::moved) << path;
    }
}

TEST_F(ThreadedStore, TwoStoresStartingOnOneFolderAtOnceMoveEachFileOnce) {
    for (int i = 0; i < 100; ++i)
        home.writeFile("Downloads/file " + std::to_string(i) + ".jpg", std::to_string(i % 80));
    Inventory inventory = Inventory::take(home.home(), {downloads});
    std::vector<std::string> summaries(2);
    std::vector<std::thread> windows;
    for (int w = 0; w < 2; ++w) {
        windows.emplace_back([&, w] {
            ThreadExecutor executor;
            Store store(executor, platform);
            store.scan({.organize = true});
            executor.runUntil([&] { return !store.busy(); });
            summaries[w] = store.activity().front().text();
        });
    }
    for (std::thread& window : windows)
        window.join();
    auto problems = inventory.check(historyPath());
    EXPECT_TRUE(problems.empty()) << describe(problems) << "\n"
                                  << summaries[0] << "\n"
                                  << summaries[1];
    for (const auto& [path, placement] : inventory.placements(historyPath())) {
        EXPECT_NE(placement, Placement::original) << path;
    }
}

}  // namespace
}  // namespace quorrin::store
