// The Overview's three cards before and after scans.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

QString card(UiFixture& ui, const QString& title, const QString& part = "value") {
    return ui.text(part, ui.item("card:" + title));
}

TEST(OverviewCards, BeforeAnyScan) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.txt", "a");
    ui.open();
    EXPECT_EQ(card(ui, "FILES INDEXED"), "0");
    EXPECT_EQ(card(ui, "DUPLICATE SPACE"), "Not checked");
    EXPECT_EQ(card(ui, "DOWNLOADS TO REVIEW"), "0");
    EXPECT_EQ(card(ui, "FILES INDEXED", "title"), "FILES INDEXED");
    EXPECT_EQ(card(ui, "DUPLICATE SPACE", "title"), "DUPLICATE SPACE");
    EXPECT_EQ(card(ui, "DOWNLOADS TO REVIEW", "title"), "DOWNLOADS TO REVIEW");
    EXPECT_EQ(ui.text("heroText"), "Everything has its place.");
}

TEST(OverviewCards, ACheckWithoutDuplicatesShowsZeroBytesNotNotChecked) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.txt", "a");
    ui.home.writeFile("Documents/b.txt", "b");
    ui.open();
    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    ui.pressSidebar("Overview");
    EXPECT_EQ(card(ui, "DUPLICATE SPACE"), "Zero KB");
    EXPECT_EQ(card(ui, "FILES INDEXED"), "2");
}

TEST(OverviewCards, CountsAndDuplicateSpaceFollowTheScan) {
    UiFixture ui;
    const std::string content(1500, 'x');
    ui.home.writeFile("Documents/a.bin", content);
    ui.home.writeFile("Desktop/b.bin", content);
    ui.home.writeFile("Downloads/c.bin", content);
    const std::string old = ui.home.writeFile("Downloads/old.zip", "zip");
    setModified(old, 1'000'000'000);
    ui.open();
    ui.click("pageActionButton");  // Quick scan: no content compared
    ui.settle();
    EXPECT_EQ(card(ui, "FILES INDEXED"), "4");
    EXPECT_EQ(card(ui, "DUPLICATE SPACE"), "Not checked");
    EXPECT_EQ(card(ui, "DOWNLOADS TO REVIEW"), "1");

    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    ui.pressSidebar("Overview");
    // Two copies of 1500 bytes beside the original.
    EXPECT_EQ(card(ui, "DUPLICATE SPACE"), "3 KB");
}

}  // namespace
}  // namespace quorrin::testing
