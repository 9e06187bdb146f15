// The window on first open: the Overview, its title and subtitle, "Quick scan" and "Start", the
// status and the sidebar's brand and footer.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(ShellFirstOpen, OverviewWithItsTitleSubtitleAndQuickScan) {
    UiFixture ui;
    QQuickWindow& window = ui.open();
    EXPECT_EQ(window.width(), 1180);
    EXPECT_EQ(window.height(), 800);
    EXPECT_EQ(window.property("page").toString(), "Overview");
    EXPECT_EQ(ui.text("headerTitle"), "Make room for what matters.");
    EXPECT_EQ(ui.text("headerSubtitle"), "A calmer computer begins with a cleaner space.");
    EXPECT_EQ(ui.text("pageActionButton"), "Quick scan");
    EXPECT_EQ(ui.text("startButton"), "Start");
    EXPECT_TRUE(ui.isShown("overviewPage"));
    // Documents, Downloads and Desktop are connected at first launch: both buttons work.
    EXPECT_TRUE(ui.isEnabled("pageActionButton"));
    EXPECT_TRUE(ui.isEnabled("startButton"));
    EXPECT_EQ(ui.text("statusText"), "Your space. In order.");
    EXPECT_EQ(ui.item("statusIcon")->property("name").toString(), "checkmark.circle");
    EXPECT_FALSE(ui.isShown("busyBar"));
    EXPECT_FALSE(ui.isShown("undoButton"));
}

TEST(ShellFirstOpen, WithNoFolderConnectedBothButtonsAreDisabled) {
    UiFixture ui;
    ui.writeSettings(R"({"roots": []})");
    ui.open();
    EXPECT_EQ(ui.text("pageActionButton"), "Quick scan");
    EXPECT_FALSE(ui.isEnabled("pageActionButton"));
    EXPECT_FALSE(ui.isEnabled("startButton"));
    ui.click("pageActionButton");
    EXPECT_EQ(ui.text("statusText"), "Your space. In order.");
    EXPECT_TRUE(ui.store().store().activity().empty());
}

TEST(ShellFirstOpen, BrandAndFooter) {
    UiFixture ui;
    ui.open();
    EXPECT_EQ(ui.text("brandName"), "QUORRIN");
    QQuickItem* tagline = ui.item("brandTagline");
    EXPECT_EQ(tagline->property("text").toString(), "LESS CLUTTER. MORE CLARITY.");
    EXPECT_EQ(tagline->property("font").value<QFont>().pixelSize(), 9);
    EXPECT_NEAR(tagline->property("font").value<QFont>().letterSpacing(), 1.8, 0.01);
    EXPECT_EQ(ui.text("footerTitle"), "LOCAL • PRIVATE");
    EXPECT_EQ(ui.text("footerNote"), "Files stay on this computer.");
}

TEST(ShellFirstOpen, TheSidebarListsTheNinePagesInOrder) {
    UiFixture ui;
    ui.open();
    const QStringList pages{"Overview",   "All files",          "FindOlder",
                            "Duplicates", "Downloads review",   "File health",
                            "Kept files", "Folders & settings", "Activity"};
    double lastY = -1;
    for (const QString& page : pages) {
        QQuickItem* button = ui.item("sidebar:" + page);
        ASSERT_NE(button, nullptr);
        const double y = button->mapToScene(QPointF(0, 0)).y();
        EXPECT_GT(y, lastY) << page.toStdString();
        lastY = y;
    }
}

}  // namespace
}  // namespace quorrin::testing
