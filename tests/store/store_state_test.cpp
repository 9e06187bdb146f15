// Store construction: defaults, restored settings and history, the published-property observer.
#include "tests/support/store/store_fixture.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

TEST(StoreState, FirstLaunchUsesTheDefaults) {
    StoreFixture f;
    Store& store = f.open();
    EXPECT_EQ(store.roots(),
              (std::vector<std::string>{f.home.path("Documents"), f.home.path("Downloads"),
                                        f.home.path("Desktop")}));
    EXPECT_EQ(store.weeks(), 4);
    EXPECT_TRUE(store.kept().empty());
    EXPECT_EQ(store.status(), "Your space. In order.");
    EXPECT_TRUE(store.autoDuplicates());
    EXPECT_TRUE(store.inspect());
    EXPECT_FALSE(store.busy());
    EXPECT_TRUE(store.files().empty());
    EXPECT_TRUE(store.activity().empty());
    EXPECT_TRUE(store.moves().empty());
    // The history folder is made at construction.
    EXPECT_TRUE(quorrin::testing::existsNoFollow(f.home.path(".local/share/QUORRIN")));
}

TEST(StoreState, WeeksAreRestoredAndClamped) {
    const std::pair<int, int> cases[] = {{0, 4}, {-3, 1}, {1, 1}, {9, 9}};
    for (auto [stored, expected] : cases) {
        StoreFixture f;
        f.writeSettings(R"({"weeks":)" + std::to_string(stored) + "}");
        EXPECT_EQ(f.open().weeks(), expected) << stored;
    }
}

TEST(StoreState, HandEditedWeeksAreHeldToTheStepperRange) {
    const std::pair<std::string, int> cases[] = {{"53", 52},
                                                 {"100000", 52},
                                                 {"9223372036854775807", 52},
                                                 {"18446744073709551615", 52},
                                                 {"-9223372036854775808", 1},
                                                 {"-1", 1},
                                                 {"0", 4},
                                                 {"52", 52}};
    for (const auto& [stored, expected] : cases) {
        StoreFixture f;
        f.writeSettings(R"({"weeks":)" + stored + R"(,"roots":[")" + f.home.path("Downloads") +
                        R"("]})");
        // A file changed an hour ago is not stale, whatever the file says.
        const std::int64_t nowSeconds = 1'800'000'000;
        quorrin::testing::setModified(f.home.writeFile("Downloads/fresh.txt"), nowSeconds - 3600);
        const platform::Instant now{std::chrono::seconds(nowSeconds)};
        Store& store = f.open();
        EXPECT_EQ(store.weeks(), expected) << stored;
        store.scan({});
        f.settle();
        ASSERT_EQ(store.files().size(), 1u);
        EXPECT_TRUE(store.stale(now).empty()) << stored;
    }
}

TEST(StoreState, AnEmptyRootsArrayMeansNoRoots) {
    StoreFixture f;
    f.writeSettings(R"({"roots":[],"kept":["/k/a.txt"]})");
    Store& store = f.open();
    EXPECT_TRUE(store.roots().empty());
    EXPECT_EQ(store.kept(), (std::set<std::string>{"/k/a.txt"}));
}

TEST(StoreState, SettingsThatCannotBeReadConnectNothingAndSaySo) {
    StoreFixture f;
    std::string kept = f.home.writeFile("Downloads/kept.txt", "kept");
    f.home.writeFile("Documents/report.pdf", "report");
    f.writeSettings(R"({"roots":[")" + f.home.path("Downloads") + R"("],"kept":[")" + kept +
                    R"("]})");
    const std::string saved = f.settingsText();
    f.platform.fault = quorrin::testing::FaultPlatform::failing("readFile", "settings.json", EIO);
    Store& store = f.open();
    EXPECT_TRUE(store.roots().empty());
    EXPECT_EQ(f.activityTexts(),
              (std::vector<std::string>{"Could not read settings: Input/output error"}));
    // Nothing the user did not choose is arranged, and the kept file stays.
    store.scan({.organize = true});
    f.settle();
    EXPECT_EQ(quorrin::testing::readFile(kept), "kept");
    EXPECT_TRUE(quorrin::testing::existsNoFollow(f.home.path("Documents/report.pdf")));
    EXPECT_FALSE(quorrin::testing::existsNoFollow(f.home.path("Documents/04 Documents")));
    // Nor is the unread file replaced by a later change.
    store.setWeeks(7);
    EXPECT_EQ(f.settingsText(), saved);
}

TEST(StoreState, AMissingSettingsFileIsAFirstLaunchNotAFailure) {
    StoreFixture f;
    Store& store = f.open();
    EXPECT_EQ(store.roots().size(), 3u);
    EXPECT_TRUE(store.activity().empty());
}

TEST(StoreState, ACorruptOrEmptyHistoryLeavesMovesEmpty) {
    for (const char* content : {"", "{not json", R"([{"from":"/a"}])", "[1,2]"}) {
        StoreFixture f;
        std::filesystem::create_directories(f.home.path(".local/share/QUORRIN"));
        quorrin::testing::writeFileAt(f.historyPath(), content);
        EXPECT_TRUE(f.open().moves().empty()) << content;
    }
}

TEST(StoreState, TheHistoryIsRestored) {
    StoreFixture f;
    std::filesystem::create_directories(f.home.path(".local/share/QUORRIN"));
    quorrin::testing::writeFileAt(f.historyPath(), R"([{"to":"/h/b","from":"/h/a"}])");
    Store& store = f.open();
    ASSERT_EQ(store.moves().size(), 1u);
    EXPECT_EQ(store.moves()[0], (MoveRecord{"/h/a", "/h/b"}));
}

TEST(StoreState, SwitchesStartOnAtEveryLaunch) {
    StoreFixture f;
    Store& first = f.open();
    first.setAutoDuplicates(false);
    first.setInspect(false);
    Store& second = f.open();
    EXPECT_TRUE(second.autoDuplicates());
    EXPECT_TRUE(second.inspect());
}

TEST(StoreState, WeeksAreSavedWhenSet) {
    StoreFixture f;
    f.open().setWeeks(8);
    EXPECT_EQ(f.open().weeks(), 8);
    f.store->setWeeks(0);
    EXPECT_EQ(f.store->weeks(), 1);
    f.store->setWeeks(99);
    EXPECT_EQ(f.store->weeks(), 52);
}

struct Recorder : StoreObserver {
    std::vector<Property> seen;
    void changed(Property property) override { seen.push_back(property); }
};

TEST(StoreState, ObserversHearEveryChange) {
    StoreFixture f;
    Store& store = f.open();
    Recorder recorder;
    store.addObserver(&recorder);
    store.log("hello");
    store.setWeeks(6);
    EXPECT_EQ(recorder.seen,
              (std::vector<Property>{Property::activity, Property::status, Property::weeks}));
    store.removeObserver(&recorder);
    store.log("again");
    EXPECT_EQ(recorder.seen.size(), 3u);
}

TEST(StoreState, LateProgressNeverTouchesAClosedStore) {
    StoreFixture f;
    // Enough files for the scan to post progress texts as well as its result.
    for (int i = 0; i < 600; ++i)
        f.home.writeFile("Documents/f" + std::to_string(i) + ".txt");
    Store& store = f.open();
    Recorder recorder;
    store.addObserver(&recorder);
    store.scan({});
    f.executor.runOneBackground();  // the scan runs and posts its progress and its result
    ASSERT_GT(f.executor.pendingMain(), 1u);
    recorder.seen.clear();
    f.store.reset();  // the window closes before the main thread gets to them
    f.settle();       // the posted work finds the Store gone and changes nothing
    EXPECT_TRUE(recorder.seen.empty());
    EXPECT_EQ(f.executor.pendingMain(), 0u);
}

}  // namespace
}  // namespace quorrin::store
