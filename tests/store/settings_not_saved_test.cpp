// A settings write that fails: the change is made in memory and one activity line says so.
#include "tests/support/store/store_fixture.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using quorrin::testing::FaultPlatform;
using quorrin::testing::StoreFixture;
using Strings = std::vector<std::string>;

const std::string noSpace = "Could not save settings: No space left on device";

class SettingsNotSaved : public ::testing::Test {
protected:
    StoreFixture f;
    std::string settingsBefore;

    Store& openFailing() {
        f.writeSettings(R"({"weeks":4})");
        settingsBefore = f.settingsText();
        Store& store = f.open();
        f.platform.fault = FaultPlatform::failing("replaceFile", "settings.json", ENOSPC);
        return store;
    }
    // The failed write left the file as it was.
    void expectFileUnchanged() const { EXPECT_EQ(f.settingsText(), settingsBefore); }
};

TEST_F(SettingsNotSaved, KeepIsMadeInMemoryAndReportedAfterItsLine) {
    Store& store = openFailing();
    const std::string path = f.home.writeFile("Documents/a.txt");
    store.keep(Entry{.url = path});
    EXPECT_TRUE(store.kept().contains(path));
    EXPECT_EQ(f.activityTexts(), (Strings{noSpace, "Kept: a.txt"}));
    EXPECT_EQ(store.status(), noSpace);
    EXPECT_TRUE(store.settingsNotSaved());
    expectFileUnchanged();
}

TEST_F(SettingsNotSaved, UnkeepIsMadeInMemoryAndReported) {
    f.writeSettings(R"({"kept":["/k/a.txt"]})");
    Store& store = f.open();
    settingsBefore = f.settingsText();
    f.platform.fault = FaultPlatform::failing("replaceFile", "settings.json", ENOSPC);
    store.unkeep(Entry{.url = "/k/a.txt"});
    EXPECT_TRUE(store.kept().empty());
    EXPECT_EQ(f.activityTexts(), (Strings{noSpace}));
    EXPECT_TRUE(store.settingsNotSaved());
    expectFileUnchanged();
}

TEST_F(SettingsNotSaved, WeeksAreSetInMemoryAndReported) {
    Store& store = openFailing();
    store.setWeeks(9);
    EXPECT_EQ(store.weeks(), 9);
    EXPECT_EQ(f.activityTexts(), (Strings{noSpace}));
    EXPECT_TRUE(store.settingsNotSaved());
    expectFileUnchanged();
}

TEST_F(SettingsNotSaved, ReviewDoneIsLoggedThenTheFailure) {
    Store& store = openFailing();
    store.markReviewDone();
    EXPECT_EQ(f.activityTexts(), (Strings{noSpace, "Weekly Downloads review completed"}));
    EXPECT_TRUE(store.settingsNotSaved());
    EXPECT_TRUE(store.reviewDue());  // nothing was stored
    expectFileUnchanged();
}

TEST_F(SettingsNotSaved, TheFolderListChangesInMemoryAfterItsOwnLines) {
    Store& store = openFailing();
    const std::string pictures = f.home.makeDir("Pictures");
    const std::string library = f.home.makeDir("Library");  // refused
    f.home.writeFile("Documents/a.txt");
    store.scan({});
    f.settle();
    ASSERT_FALSE(store.files().empty());
    store.addFolders({pictures, library});
    EXPECT_EQ(store.roots().back(), pictures);
    EXPECT_TRUE(store.files().empty());
    const Strings texts = f.activityTexts();
    ASSERT_GE(texts.size(), 2u);
    EXPECT_EQ(texts[0], noSpace);
    EXPECT_EQ(texts[1], "Choose a personal folder outside protected app and project folders.");
    expectFileUnchanged();

    store.removeFolders({pictures});
    EXPECT_EQ(store.roots().size(), 3u);
    EXPECT_EQ(f.activityTexts().front(), noSpace);
    EXPECT_EQ(f.activityTexts().size(), texts.size() + 1);
    expectFileUnchanged();
}

TEST_F(SettingsNotSaved, AWriteThatWorksReportsNothing) {
    f.writeSettings("{}");
    Store& store = f.open();
    const std::string path = f.home.writeFile("Documents/a.txt");
    store.keep(Entry{.url = path});
    store.unkeep(Entry{.url = path});
    store.setWeeks(6);
    store.markReviewDone();
    store.removeFolders({f.home.path("Desktop")});
    EXPECT_EQ(f.activityTexts(), (Strings{"Weekly Downloads review completed", "Kept: a.txt"}));
    EXPECT_FALSE(store.settingsNotSaved());
}

}  // namespace
}  // namespace quorrin::store
