// The status line of the long operations: each one's first text, and progress only while busy.
#include "tests/support/store/store_fixture.h"

#include <deque>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

TEST(ScanStatus, EachKindOfScanShowsItsFirstText) {
    const std::pair<ScanChoice, std::string> cases[] = {
        {{.organize = true}, "Scanning before organizing…"},
        {{.duplicates = true}, "Comparing full file content. Large videos take longer…"},
        {{.health = true}, "Checking image / PDF readability…"},
        {{.usageDates = true}, "Reading last-used history…"},
        {{}, "Quick scan • reading filenames and dates…"},
    };
    for (const auto& [choice, text] : cases) {
        StoreFixture f;
        Store& store = f.open();
        store.scan(choice);
        EXPECT_TRUE(store.busy());
        EXPECT_EQ(store.status(), text);
        EXPECT_TRUE(store.activity().empty());  // a status, not an activity line
        f.settle();
    }
    StoreFixture f;
    Store& store = f.open();
    store.scanOlder();
    EXPECT_EQ(store.status(), "Reading file dates in connected folders…");
}

TEST(ScanStatus, StartShowsOrganizingOnceTheScanIsPublished) {
    StoreFixture f;
    f.home.writeFile("Downloads/a.txt");
    Store& store = f.open();
    store.scan({.organize = true});
    ASSERT_TRUE(f.executor.runOneBackground());  // the scan
    while (f.executor.runOneMain()) {
    }
    EXPECT_EQ(store.status(), "Organizing your files…");
    EXPECT_TRUE(store.busy());
    EXPECT_NE(f.file(f.home.path("Downloads/a.txt")), nullptr);  // not moved yet
    f.settle();
    EXPECT_FALSE(store.busy());
}

TEST(ScanStatus, ClearingLeavesTheStatusAsItWasWhenItStarts) {
    StoreFixture f;
    f.home.writeFile("Documents/a.txt");
    Store& store = f.open();
    store.scan({});
    f.settle();
    store.log("before");
    store.clear(store.files());
    EXPECT_TRUE(store.busy());
    EXPECT_EQ(store.status(), "before");
    f.settle();
    EXPECT_EQ(store.status(), "1 files moved to Trash");
}

// Runs posted main-thread tasks newest first, so that progress posted during a scan arrives
// after the scan's result.
class NewestFirstExecutor : public Executor {
public:
    void postToMain(Task task) override { main_.push_back(std::move(task)); }
    void runInBackground(Task task) override { background_.push_back(std::move(task)); }
    void runBackground() {
        while (!background_.empty()) {
            Task task = std::move(background_.front());
            background_.pop_front();
            task();
        }
    }
    std::size_t runMainNewestFirst() {
        std::size_t ran = 0;
        while (!main_.empty()) {
            Task task = std::move(main_.back());
            main_.pop_back();
            task();
            ++ran;
        }
        return ran;
    }

private:
    std::deque<Task> main_;
    std::deque<Task> background_;
};

TEST(ScanStatus, ProgressArrivingAfterTheEndIsDropped) {
    quorrin::testing::TempHome home;
    home.makeDir("Documents");
    home.writeFile(".config/QUORRIN/settings.json",
                   R"({"roots":[")" + home.path("Documents") + R"("]})");
    // Enough files for the scanner to report progress on the way.
    for (int i = 0; i < 600; ++i)
        home.writeFile("Documents/f" + std::to_string(i) + ".txt");
    quorrin::testing::FaultPlatform platform;
    NewestFirstExecutor executor;
    Store store(executor, platform);
    store.scan({});
    executor.runBackground();
    // The result first, then the progress texts posted before it.
    EXPECT_GT(executor.runMainNewestFirst(), 1u);
    EXPECT_FALSE(store.busy());
    EXPECT_EQ(store.status(), "Quick scan complete • 600 files • 0 notes");
}

}  // namespace
}  // namespace quorrin::store
