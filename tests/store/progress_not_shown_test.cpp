// A Store whose progress no one shows: its scans send no status texts or amounts from their
// threads, and they give the same results as scans whose progress is shown.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

// Every status text and amount of progress the Store took while it was busy.
class Recorder : public StoreObserver {
public:
    explicit Recorder(Store& store) : store_(store) { store_.addObserver(this); }
    ~Recorder() override { store_.removeObserver(this); }
    void changed(Property property) override {
        if (store_.busy() && property == Property::status)
            statuses.push_back(store_.status());
        if (store_.busy() && property == Property::progress && store_.progress().total > 0)
            ++amounts;
    }
    std::vector<std::string> statuses;
    int amounts = 0;

private:
    Store& store_;
};

class StoreProgressNotShown : public ::testing::Test {
protected:
    StoreFixture f;
    void SetUp() override {
        f.writeSettings(R"({"roots":[")" + f.home.path("Downloads") + R"("]})");
        for (int i = 0; i < 600; ++i)
            f.home.writeFile("Downloads/file-" + std::to_string(i) + ".txt",
                             "content " + std::to_string(i % 300));
        f.home.writeFile("Downloads/a.mov", std::string(200'000, 'x'));
        f.home.writeFile("Downloads/b.mov", std::string(200'000, 'x'));
    }

    // The files and their duplicate marks after a check of duplicates and a Start's scan.
    std::vector<std::pair<std::string, std::optional<std::string>>> marks(Store& store) {
        std::vector<std::pair<std::string, std::optional<std::string>>> found;
        for (const Entry& entry : store.files())
            found.emplace_back(entry.url, entry.duplicateOf);
        return found;
    }
};

TEST_F(StoreProgressNotShown, ScansSendNoStatusTextsOrAmounts) {
    Store& store = f.open();
    store.setProgressShown(false);
    Recorder recorder(store);
    store.scan({.duplicates = true});
    f.settle();
    // The Store's own statuses alone: the one it sets as the scan starts, and the line it logs as
    // the scan ends.
    EXPECT_EQ(recorder.statuses,
              (std::vector<std::string>{"Comparing full file content. Large videos take longer…",
                                        "Duplicate check complete • 602 files • 0 notes"}));
    EXPECT_EQ(recorder.amounts, 0);
    EXPECT_FALSE(store.busy());
}

TEST_F(StoreProgressNotShown, ScansFindWhatTheyFindWhenProgressIsShown) {
    Store& store = f.open();
    Recorder shown(store);
    store.scan({.duplicates = true});
    f.settle();
    const auto expected = marks(store);
    EXPECT_GT(shown.statuses.size(), 1u);
    EXPECT_GT(shown.amounts, 0);

    store.setProgressShown(false);
    store.scan({.duplicates = true});
    f.settle();
    EXPECT_EQ(marks(store), expected);
}

}  // namespace
}  // namespace quorrin::store
