// While the Store is busy neither "Start" nor the page action can be pressed again; the busy bar,
// the hourglass and the footer show the work.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/start_gate.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(ShellBusyButtons, NeitherButtonPressesTwiceWhileBusy) {
    UiFixture ui;
    ui.home.writeFile("Documents/report.pdf", "report");
    ui.open();
    StartGate gate(ui);
    ui.click("startButton");
    ASSERT_TRUE(gate.waitUntilHeld());

    EXPECT_TRUE(ui.store().busy());
    EXPECT_FALSE(ui.isEnabled("startButton"));
    EXPECT_FALSE(ui.isEnabled("pageActionButton"));
    EXPECT_TRUE(ui.isShown("busyBar"));
    EXPECT_EQ(ui.item("statusIcon")->property("name").toString(), "hourglass");
    EXPECT_EQ(ui.text("footerTitle"), "Working safely");

    const QString status = ui.text("statusText");
    const std::size_t lines = ui.store().store().activity().size();
    ui.click("startButton");
    ui.click("pageActionButton");
    EXPECT_EQ(ui.text("statusText"), status);
    EXPECT_EQ(ui.store().store().activity().size(), lines);

    gate.release();
    ui.settle();
    EXPECT_TRUE(ui.isEnabled("startButton"));
    EXPECT_TRUE(ui.isEnabled("pageActionButton"));
    EXPECT_FALSE(ui.isShown("busyBar"));
    EXPECT_EQ(ui.item("statusIcon")->property("name").toString(), "checkmark.circle");
    EXPECT_EQ(ui.text("footerTitle"), "LOCAL • PRIVATE");
    EXPECT_TRUE(ui.text("statusText").startsWith("Done • 1 files arranged"));
}

TEST(ShellBusyButtons, WithNoConnectedFolderBothAreDisabledOnEveryPage) {
    UiFixture ui;
    ui.writeSettings(R"({"roots": []})");
    ui.open();
    for (const QString page :
         {"Overview", "All files", "FindOlder", "Duplicates", "Downloads review", "File health",
          "Kept files", "Folders & settings", "Activity"}) {
        ui.pressSidebar(page);
        EXPECT_FALSE(ui.isEnabled("pageActionButton")) << page.toStdString();
        if (page != "FindOlder") {
            EXPECT_FALSE(ui.isEnabled("startButton")) << page.toStdString();
        }
    }
}

}  // namespace
}  // namespace quorrin::testing
