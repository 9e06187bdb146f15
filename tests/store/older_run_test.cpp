// scanOlder(): reads every file's dates into olderFiles, projects included, changing nothing.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorrin::store {
namespace {

using quorrin::testing::StoreFixture;

TEST(OlderRun, ListsEveryFileIncludingProjectsAndChangesNothing) {
    StoreFixture f;
    f.home.writeFile("Documents/a.txt");
    f.home.writeFile("Documents/app/package.json");
    Store& store = f.open();
    store.scanOlder();
    EXPECT_EQ(store.status(), "Reading file dates in connected folders…");
    f.settle();
    EXPECT_EQ(store.olderFiles().size(), 2u);
    EXPECT_TRUE(store.olderScanned());
    EXPECT_TRUE(store.files().empty());
    EXPECT_EQ(f.activityTexts().front(),
              "FindOlder • 2 files checked • 0 access notes. No files changed.");
}

TEST(OlderRun, AnEmptyRunStillCounts) {
    StoreFixture f;
    f.writeSettings(R"({"roots":[]})");
    Store& store = f.open();
    store.scanOlder();
    f.settle();
    EXPECT_TRUE(store.olderScanned());
    EXPECT_EQ(f.activityTexts(),
              (std::vector<std::string>{
                  "FindOlder • 0 files checked • 0 access notes. No files changed."}));
}

TEST(OlderRun, WhileBusyNothingHappens) {
    StoreFixture f;
    Store& store = f.open();
    store.scan({});
    const std::string status = store.status();
    store.scanOlder();
    EXPECT_EQ(store.status(), status);
    EXPECT_EQ(f.executor.pendingBackground(), 1u);
}

TEST(OlderRun, ASecondRunReplacesTheList) {
    StoreFixture f;
    std::string doomed = f.home.writeFile("Documents/doomed.txt");
    f.home.writeFile("Documents/stays.txt");
    Store& store = f.open();
    store.scanOlder();
    f.settle();
    ASSERT_EQ(store.olderFiles().size(), 2u);
    ASSERT_EQ(::unlink(doomed.c_str()), 0);
    store.scanOlder();
    f.settle();
    ASSERT_EQ(store.olderFiles().size(), 1u);
    EXPECT_EQ(store.olderFiles()[0].url, f.home.path("Documents/stays.txt"));
}

TEST(OlderRun, NotesAreLoggedBeforeTheSummary) {
    StoreFixture f;
    std::string missing = f.home.path("Documents/Gone");
    f.writeSettings(R"({"roots":[")" + missing + R"("]})");
    Store& store = f.open();
    store.scanOlder();
    f.settle();
    EXPECT_EQ(
        f.activityTexts(),
        (std::vector<std::string>{"FindOlder • 0 files checked • 1 access notes. No files changed.",
                                  "Cannot access " + missing}));
    EXPECT_FALSE(store.busy());
}

}  // namespace
}  // namespace quorrin::store
