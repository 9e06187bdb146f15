// The empty-state texts of the list pages, the first rule that applies.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

QString emptyText(UiFixture& ui, const QString& page) {
    ui.pressSidebar(page);
    EXPECT_TRUE(ui.rowNames().isEmpty()) << page.toStdString();
    EXPECT_TRUE(ui.isShown("emptyStateText")) << page.toStdString();
    return ui.text("emptyStateText");
}

TEST(ListEmptyState, BeforeAnyScan) {
    UiFixture ui;
    ui.open();
    EXPECT_EQ(emptyText(ui, "All files"), "Scan your folders to get started.");
    EXPECT_EQ(emptyText(ui, "Duplicates"),
              "Click Check duplicates. Quick scan does not compare file content.");
    EXPECT_EQ(emptyText(ui, "File health"),
              "Click Check health. Quick scan does not decode images or PDFs.");
    EXPECT_EQ(emptyText(ui, "FindOlder"), "Choose a timeline, then click Find files.");
    EXPECT_EQ(emptyText(ui, "Downloads review"), "Scan your folders to get started.");
    EXPECT_EQ(emptyText(ui, "Kept files"), "Scan your folders to get started.");
}

TEST(ListEmptyState, AfterScansThatFoundNothingToShow) {
    UiFixture ui;
    ui.home.writeFile("Documents/letter.txt", "dear");
    ui.open();
    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    EXPECT_EQ(emptyText(ui, "Duplicates"), "Nothing here needs your attention.");
    EXPECT_EQ(emptyText(ui, "Kept files"), "Nothing here needs your attention.");
    EXPECT_EQ(emptyText(ui, "Downloads review"), "Nothing here needs your attention.");
    // The last scan did not check health.
    EXPECT_EQ(emptyText(ui, "File health"),
              "Click Check health. Quick scan does not decode images or PDFs.");
    ui.runPageAction();
    EXPECT_EQ(emptyText(ui, "File health"), "Nothing here needs your attention.");

    ui.pressSidebar("FindOlder");
    ui.click("preset:5y");
    ui.runPageAction();
    EXPECT_EQ(emptyText(ui, "FindOlder"),
              "No files match these dates. Try Last modified date or a different range.");
}

}  // namespace
}  // namespace quorrin::testing
