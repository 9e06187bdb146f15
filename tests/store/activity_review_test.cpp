// The activity log, the stale Downloads files and the weekly review.
#include "tests/support/store/store_fixture.h"

#include <ctime>

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::setModified;
using quorrin::testing::StoreFixture;
using std::chrono::seconds;

TEST(Activity, NewestFirstAndTheStatusFollows) {
    StoreFixture f;
    Store& store = f.open();
    store.log("a");
    store.log("b");
    EXPECT_EQ(f.activityTexts(), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(store.status(), "b");
}

class Stale : public ::testing::Test {
protected:
    StoreFixture f;
    const std::int64_t nowSeconds = 1'800'000'000;
    platform::Instant now() const { return platform::Instant(seconds(nowSeconds)); }

    std::vector<std::string> stalePaths() {
        std::vector<std::string> paths;
        for (const auto& entry : f.store->stale(now()))
            paths.push_back(entry.url);
        return paths;
    }
    void scan() {
        f.store->scan({});
        f.settle();
    }
};

TEST_F(Stale, ExactlyWeeksOldIsNotStaleOneSecondMoreIs) {
    const std::int64_t fourWeeks = 4 * 7 * 86400;
    std::string exact = f.home.writeFile("Downloads/exact.zip");
    std::string older = f.home.writeFile("Downloads/older.zip");
    setModified(exact, nowSeconds - fourWeeks);
    setModified(older, nowSeconds - fourWeeks - 1);
    f.open();
    scan();
    EXPECT_EQ(stalePaths(), (std::vector<std::string>{older}));
}

TEST_F(Stale, OnlyAConnectedFolderNamedDownloadsIsReviewed) {
    std::string documents = f.home.writeFile("Documents/ancient.pdf");
    std::string lower = f.home.writeFile("Other/downloads/ancient.pdf");
    setModified(documents, 1'000);
    setModified(lower, 1'000);
    f.writeSettings(R"({"roots":[")" + f.home.path("Documents") + R"(",")" +
                    f.home.path("Other/downloads") + R"("]})");
    f.open();
    scan();
    ASSERT_EQ(f.store->files().size(), 2u);
    EXPECT_TRUE(stalePaths().empty());
}

TEST_F(Stale, AKeptFileIsNeverStale) {
    std::string kept = f.home.writeFile("Downloads/kept.zip");
    std::string other = f.home.writeFile("Downloads/other.zip");
    setModified(kept, 1'000);
    setModified(other, 1'000);
    f.open();
    scan();
    f.store->keep(*f.file(kept));
    EXPECT_EQ(stalePaths(), (std::vector<std::string>{other}));
}

// A download opened only in an app installed as a Flatpak is in that app's own recently-used
// list, not the desktop's: it still counts as used.
TEST_F(Stale, AFileOpenedInASandboxedAppIsNotStale) {
    std::string manual = f.home.writeFile("Downloads/manual.pdf");
    std::string unopened = f.home.writeFile("Downloads/unopened.pdf");
    setModified(manual, 1'000);
    setModified(unopened, 1'000);
    const std::time_t yesterday = std::time(nullptr) - 86'400;
    std::tm parts{};
    ::gmtime_r(&yesterday, &parts);
    char visited[32];
    std::strftime(visited, sizeof visited, "%Y-%m-%dT%H:%M:%SZ", &parts);
    f.home.writeFile(".var/app/org.example.Viewer/data/recently-used.xbel",
                     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xbel version=\"1.0\">\n"
                     "  <bookmark href=\"file://" +
                         manual + "\" visited=\"" + visited + "\"/>\n</xbel>\n");
    f.open();
    f.store->scan({.usageDates = true});
    f.settle();
    std::vector<std::string> stale;
    for (const auto& entry : f.store->stale(platform::Instant(seconds(std::time(nullptr)))))
        stale.push_back(entry.url);
    EXPECT_EQ(stale, (std::vector<std::string>{unopened}));
}

TEST_F(Stale, LastUsedDatesDecideWhenTheyAreRead) {
    std::string opened = f.home.writeFile("Downloads/opened.zip");
    setModified(opened, 1'000);
    f.platform.usageDates = platform::UsageDates{{opened, now() - seconds(60)}};
    f.open();
    f.store->scan({.usageDates = true});
    f.settle();
    EXPECT_TRUE(stalePaths().empty());
    EXPECT_EQ(f.activityTexts().front(), "Usage check complete • 1 files • 0 notes");
}

TEST(Review, DueAtOnceThenAfterSevenDays) {
    StoreFixture f;
    const platform::Instant marked(seconds(1'800'000'000));
    f.platform.fixedNow = marked;
    Store& store = f.open();
    EXPECT_TRUE(store.reviewDue(marked));
    store.markReviewDone();
    EXPECT_EQ(f.activityTexts(), (std::vector<std::string>{"Weekly Downloads review completed"}));
    EXPECT_FALSE(store.reviewDue(marked + seconds(604800)));
    EXPECT_TRUE(store.reviewDue(marked + seconds(604801)));
    // Saved: a relaunch knows the review was done.
    EXPECT_FALSE(f.open().reviewDue(marked + seconds(10)));
}

TEST(Review, ExactlySevenDaysIsNeverDueWhateverTheFraction) {
    for (std::int64_t nanos : {0, 1, 456'789, 999'999, 123'456'789, 999'999'999}) {
        StoreFixture f;
        const platform::Instant marked = platform::instantFrom(1'800'000'000, std::uint32_t(nanos));
        f.platform.fixedNow = marked;
        Store& store = f.open();
        store.markReviewDone();
        EXPECT_FALSE(f.open().reviewDue(marked + seconds(604800))) << nanos;
        EXPECT_TRUE(f.store->reviewDue(marked + seconds(604800) + std::chrono::nanoseconds(1)))
            << nanos;
    }
}

}  // namespace
}  // namespace quorrin::store
