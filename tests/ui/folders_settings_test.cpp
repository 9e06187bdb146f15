// Folders & settings: the connected folders with "Remove", the two switches, the weeks stepper and
// "Open Trash".
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/recording_launcher.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/start_gate.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

bool checked(UiFixture& ui, const QString& name) {
    return ui.item(name)->property("checked").toBool();
}

TEST(FoldersSettings, OneRowPerConnectedFolderInOrder) {
    UiFixture ui;
    ui.open();
    ui.pressSidebar("Folders & settings");
    const QStringList names{"Documents", "Downloads", "Desktop"};
    for (int i = 0; i < 3; ++i) {
        QQuickItem* row = ui.item("rootRow:" + QString::number(i));
        EXPECT_EQ(ui.text("rootName", row), names[i]);
        EXPECT_EQ(ui.text("rootPath", row),
                  QString::fromStdString(ui.home.path(names[i].toStdString())));
        EXPECT_EQ(ui.text("removeFolderButton", row), "Remove");
    }
    EXPECT_FALSE(ui.isShown("rootRow:3"));
    EXPECT_EQ(ui.text("addFolderButton"), "Add folder");
    EXPECT_EQ(ui.text("openTrashButton"), "Open Trash");
    EXPECT_EQ(ui.text("autoDuplicatesSwitch"), "Automatically clear exact duplicates on Start");
    EXPECT_EQ(ui.text("inspectSwitch"), "Enable image / PDF checks when I click Check health");
}

TEST(FoldersSettings, TheWeeksStepperStopsAtOneAndFiftyTwo) {
    UiFixture ui;
    ui.writeSettings(R"({"weeks": 2})");
    ui.open();
    ui.pressSidebar("Folders & settings");
    QQuickItem* stepper = ui.item("settingsWeeksStepper");
    EXPECT_EQ(ui.text("label", stepper), "Unused for 2 weeks");
    ui.clickIn(stepper, "decrement");
    ui.clickIn(stepper, "decrement");
    EXPECT_EQ(ui.store().weeks(), 1);
    EXPECT_EQ(ui.text("label", stepper), "Unused for 1 weeks");
    EXPECT_FALSE(ui.isEnabled("decrement", stepper));

    ui.store().setWeeks(51);
    ui.clickIn(stepper, "increment");
    ui.clickIn(stepper, "increment");
    EXPECT_EQ(ui.store().weeks(), 52);
    EXPECT_FALSE(ui.isEnabled("increment", stepper));
    // Saved, so the next launch reads it back.
    ui.open();
    EXPECT_EQ(ui.store().weeks(), 52);
}

TEST(FoldersSettings, TheReviewSubtitleAndListFollowTheWeeksAtOnce) {
    UiFixture ui;
    setModified(ui.home.writeFile("Downloads/three weeks.zip", "z"), daysAgo(21) - 60);
    ui.open();
    ui.pressSidebar("Downloads review");
    ui.runPageAction();
    ASSERT_TRUE(ui.rowNames().isEmpty());
    ui.pressSidebar("Folders & settings");
    QQuickItem* stepper = ui.item("settingsWeeksStepper");
    ui.clickIn(stepper, "decrement");
    ui.clickIn(stepper, "decrement");
    ui.pressSidebar("Downloads review");
    EXPECT_EQ(ui.text("headerSubtitle"),
              "Weekly review • Last used over 2 weeks ago. Modified date is used when usage "
              "history is unavailable.");
    EXPECT_EQ(ui.rowNames(), QStringList{"three weeks.zip"});
}

TEST(FoldersSettings, RemovingAFolderListedTwiceRemovesBoth) {
    UiFixture ui;
    const std::string documents = ui.home.path("Documents");
    ui.writeSettings("{\"roots\": [\"" + documents + "\", \"" + ui.home.path("Downloads") +
                     "\", \"" + documents + "\"]}");
    ui.open();
    ui.pressSidebar("Folders & settings");
    ASSERT_TRUE(ui.isShown("rootRow:2"));
    ui.clickIn(ui.item("rootRow:0"), "removeFolderButton");
    EXPECT_EQ(ui.store().roots(), QStringList{QString::fromStdString(ui.home.path("Downloads"))});
    EXPECT_EQ(ui.text("rootName", ui.item("rootRow:0")), "Downloads");
    EXPECT_FALSE(ui.isShown("rootRow:1"));
}

TEST(FoldersSettings, WhileAScanRunsFoldersAreLockedButSwitchesWork) {
    UiFixture ui;
    ui.home.writeFile("Documents/report.pdf", "report");
    ui.home.writeFile("Desktop/receipt.jpg", "not a picture");
    ui.open();
    ui.pressSidebar("Folders & settings");
    StartGate gate(ui);
    ui.click("startButton");
    ASSERT_TRUE(gate.waitUntilHeld());
    EXPECT_FALSE(ui.isEnabled("addFolderButton"));
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(ui.isEnabled("removeFolderButton", ui.item("rootRow:" + QString::number(i))));
    ui.clickIn(ui.item("rootRow:0"), "removeFolderButton");
    EXPECT_EQ(ui.store().roots().size(), 3);

    EXPECT_TRUE(ui.isEnabled("inspectSwitch"));
    ui.click("inspectSwitch");
    EXPECT_FALSE(checked(ui, "inspectSwitch"));
    EXPECT_FALSE(ui.store().inspect());
    gate.release();
    ui.settle();
    EXPECT_TRUE(ui.isEnabled("addFolderButton"));

    // The next health check runs without the image and PDF inspection.
    ui.pressSidebar("File health");
    ui.runPageAction();
    EXPECT_FALSE(ui.store().healthChecked());
    EXPECT_EQ(ui.text("emptyStateText"),
              "Click Check health. Quick scan does not decode images or PDFs.");
}

TEST(FoldersSettings, AfterRemoveEveryListPageIsEmptyUntilTheNextScan) {
    UiFixture ui;
    writeSampleHome(ui.home);
    ui.open();
    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    ui.pressSidebar("FindOlder");
    ui.runPageAction();
    ui.fileList().setAgeMonths(1);
    ui.pressSidebar("All files");
    ASSERT_FALSE(ui.rowNames().isEmpty());

    ui.pressSidebar("Folders & settings");
    ui.clickIn(ui.item("rootRow:2"), "removeFolderButton");  // Desktop
    for (const QString page : {"All files", "FindOlder", "Duplicates", "Downloads review",
                               "File health", "Kept files"}) {
        ui.pressSidebar(page);
        EXPECT_TRUE(ui.rowNames().isEmpty()) << page.toStdString();
        EXPECT_EQ(ui.text("selectionCaption"), "0 files • Zero KB") << page.toStdString();
    }
    ui.pressSidebar("All files");
    ui.runPageAction();
    EXPECT_FALSE(ui.rowNames().isEmpty());
}

TEST(FoldersSettings, BothSwitchesAreOnAgainAfterRelaunch) {
    UiFixture ui;
    ui.open();
    ui.pressSidebar("Folders & settings");
    ui.click("autoDuplicatesSwitch");
    ui.click("inspectSwitch");
    ASSERT_FALSE(checked(ui, "autoDuplicatesSwitch"));
    ASSERT_FALSE(checked(ui, "inspectSwitch"));
    ui.open();
    ui.pressSidebar("Folders & settings");
    EXPECT_TRUE(checked(ui, "autoDuplicatesSwitch"));
    EXPECT_TRUE(checked(ui, "inspectSwitch"));
}

TEST(FoldersSettings, ForgetCachedResultsEmptiesTheCache) {
    UiFixture ui;
    const std::string cache = ui.home.writeFile(".cache/QUORRIN/results.sqlite", "rows");
    ui.open();
    ui.pressSidebar("Folders & settings");
    EXPECT_EQ(ui.text("forgetCacheButton"), "Forget cached results");
    ui.click("forgetCacheButton");
    ui.settle();
    EXPECT_FALSE(std::filesystem::exists(cache));
}

TEST(FoldersSettings, OpenTrashOpensTheTrash) {
    RecordingLauncher desktop;
    UiFixture ui;
    ui.open();
    ui.pressSidebar("Folders & settings");
    ui.click("openTrashButton");
    ASSERT_FALSE(desktop.opened.isEmpty());
    EXPECT_EQ(desktop.opened.front(), QUrl(QStringLiteral("trash:///")));
}

}  // namespace
}  // namespace quorrin::testing
