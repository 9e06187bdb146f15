// The Overview's shortcuts: the weekly review banner and the folders panel, which change the page
// but keep the search, the filters and the selection.
#include "store/locations.h"
#include "store/settings.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(OverviewShortcuts, ADueReviewSaysSo) {
    UiFixture ui;
    ui.open();
    EXPECT_EQ(ui.text("title", ui.item("reviewShortcut")), "Your weekly review is ready");
    EXPECT_EQ(ui.text("caption", ui.item("reviewShortcut")),
              "Keep what matters. Clear what doesn’t.");
}

TEST(OverviewShortcuts, WhenNotDueTheBannerStillOpensTheReview) {
    UiFixture ui;
    ui.open();
    ASSERT_TRUE(store::Settings(store::settingsPath()).writeLastReview(platform::system().now()));
    ui.open();
    EXPECT_EQ(ui.text("title", ui.item("reviewShortcut")), "Downloads review");
    ui.click("reviewShortcut");
    ui.settle();
    EXPECT_EQ(ui.window().property("page").toString(), "Downloads review");
    EXPECT_EQ(ui.text("headerTitle"), "Downloads review");
}

TEST(OverviewShortcuts, MarkingTheReviewDoneChangesTheBanner) {
    UiFixture ui;
    ui.open();
    ui.click("reviewShortcut");
    ui.settle();
    ui.click("markReviewDoneButton");
    EXPECT_EQ(ui.text("statusText"), "Weekly Downloads review completed");
    ui.pressSidebar("Overview");
    EXPECT_EQ(ui.text("title", ui.item("reviewShortcut")), "Downloads review");
}

TEST(OverviewShortcuts, TheFoldersPanelCountsRootsWithAFixedPlural) {
    UiFixture ui;
    ui.writeSettings("{\"roots\": [\"" + ui.home.path("Documents") + "\"]}");
    ui.open();
    EXPECT_EQ(ui.text("title", ui.item("foldersShortcut")), "1 folders connected");
    EXPECT_EQ(ui.text("caption", ui.item("foldersShortcut")), "Manage your cleaning scope");
    ui.click("foldersShortcut");
    ui.settle();
    EXPECT_EQ(ui.window().property("page").toString(), "Folders & settings");
}

TEST(OverviewShortcuts, NoConnectedFoldersReadsZero) {
    UiFixture ui;
    ui.writeSettings(R"({"roots": []})");
    ui.open();
    EXPECT_EQ(ui.text("title", ui.item("foldersShortcut")), "0 folders connected");
}

TEST(OverviewShortcuts, AJumpKeepsTheSearchFiltersAndSelection) {
    UiFixture ui;
    ui.home.writeFile("Downloads/old.zip", "zip");
    setModified(ui.home.path("Downloads/old.zip"), 1'000'000'000);
    ui.open();
    ui.pressSidebar("Downloads review");
    ui.runPageAction();
    // The Overview is reached through the sidebar, which resets the list state: set it there.
    ui.pressSidebar("Overview");
    ui.fileList().setQuery("old");
    ui.fileList().setFilter("05 Installers and ZIP");
    ui.settle();
    ui.fileList().selectVisible();
    ui.click("reviewShortcut");
    ui.settle();
    EXPECT_EQ(ui.text("searchField"), "old");
    EXPECT_EQ(ui.fileList().filter(), "05 Installers and ZIP");
    EXPECT_EQ(ui.fileList().selectedCount(), 1);
    EXPECT_EQ(ui.rowNames(), QStringList{"old.zip"});
}

}  // namespace
}  // namespace quorrin::testing
