// The Store's measure of progress: none while the walk runs, bytes read out of bytes to read while
// contents are compared, none again once the operation ends or moves on to arranging.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

struct Seen {
    Property property;
    std::string status;
    ProgressAmount progress;
    bool busy;
};

class Recorder : public StoreObserver {
public:
    explicit Recorder(Store& store) : store_(store) { store_.addObserver(this); }
    ~Recorder() override { store_.removeObserver(this); }
    void changed(Property property) override {
        if (property == Property::status || property == Property::progress)
            seen.push_back({property, store_.status(), store_.progress(), store_.busy()});
    }
    std::vector<Seen> seen;

private:
    Store& store_;
};

class StoreComparisonProgress : public ::testing::Test {
protected:
    StoreFixture f;
    void SetUp() override {
        const std::string d = f.home.path("Downloads");
        f.writeSettings(R"({"roots":[")" + d + R"("]})");
        f.home.writeFile("Downloads/a.mov", std::string(200'000, 'x'));
        f.home.writeFile("Downloads/b.mov", std::string(200'000, 'x'));
    }
    // 2 samples of 128 KiB and 2 full digests.
    static constexpr std::int64_t total = 2 * 131'072 + 2 * 200'000;

    void expectMeasuredComparison(const std::vector<Seen>& seen) {
        bool measured = false, finished = false;
        for (const Seen& s : seen) {
            // When the walk shows a text, nothing is measured yet.
            if (s.property == Property::status &&
                (s.status.starts_with("Reading ") || s.status.starts_with("Indexed "))) {
                EXPECT_EQ(s.progress.total, 0) << s.status;
            }
            if (s.progress.total > 0) {
                measured = true;
                EXPECT_EQ(s.progress.total, total);
                finished = finished || s.progress.done == total;
            }
        }
        EXPECT_TRUE(measured);
        EXPECT_TRUE(finished);
    }
};

TEST_F(StoreComparisonProgress, CheckDuplicatesMeasuresTheComparisonOnly) {
    Store& store = f.open();
    Recorder recorder(store);
    store.scan({.duplicates = true});
    f.settle();
    expectMeasuredComparison(recorder.seen);
    EXPECT_EQ(store.progress(), ProgressAmount{});
    EXPECT_FALSE(recorder.seen.back().busy);
}

TEST_F(StoreComparisonProgress, StartMeasuresTheComparisonThenArrangesWithoutAMeasure) {
    Store& store = f.open();
    Recorder recorder(store);
    store.scan({.organize = true});
    f.settle();
    expectMeasuredComparison(recorder.seen);
    bool organizing = false;
    for (const Seen& s : recorder.seen) {
        if (s.status == "Organizing your files…") {
            organizing = true;
            EXPECT_EQ(s.progress.total, 0);
        }
    }
    EXPECT_TRUE(organizing);
    EXPECT_EQ(store.progress(), ProgressAmount{});
}

TEST_F(StoreComparisonProgress, CheckHealthMeasuresFilesCheckedOutOfFilesToCheck) {
    Store& store = f.open();
    Recorder recorder(store);
    store.scan({.health = true});
    f.settle();
    ASSERT_FALSE(recorder.seen.empty());
    std::vector<ProgressAmount> measured;
    for (const Seen& s : recorder.seen)
        if (s.property == Property::progress && s.progress.total > 0)
            measured.push_back(s.progress);
    // Reports faster than the UI thread takes them are folded into the latest: the measure only
    // grows, always out of the two files to check, and reaches both.
    ASSERT_FALSE(measured.empty());
    for (std::size_t i = 0; i < measured.size(); ++i) {
        EXPECT_EQ(measured[i].total, 2);
        EXPECT_TRUE(i == 0 || measured[i - 1].done < measured[i].done);
    }
    EXPECT_EQ(measured.back(), (ProgressAmount{2, 2}));
    EXPECT_EQ(store.progress(), ProgressAmount{});
}

TEST_F(StoreComparisonProgress, AQuickScanHasNoMeasure) {
    Store& store = f.open();
    Recorder recorder(store);
    store.scan({});
    f.settle();
    for (const Seen& s : recorder.seen) {
        EXPECT_EQ(s.progress.total, 0) << s.status;
    }
}

}  // namespace
}  // namespace quorrin::store
