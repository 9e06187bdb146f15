// The header's "Stop" button: shown next to the busy bar while a long job runs, it stops Start
// between two files and the summary says so.
#include "tests/support/ui/accessible_tree.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/start_gate.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(ShellStop, StopIsShownWhileStartRunsAndStopsItBeforeAnyFileMoves) {
    UiFixture ui;
    const std::string report = ui.home.writeFile("Downloads/report.pdf", "report");
    ui.open();
    EXPECT_FALSE(ui.isShown("stopButton"));
    StartGate gate(ui);
    ui.click("startButton");
    ASSERT_TRUE(gate.waitUntilHeld());

    EXPECT_TRUE(ui.isShown("stopButton"));
    EXPECT_TRUE(ui.isEnabled("stopButton"));
    EXPECT_TRUE(ui.isShown("busyBar"));
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::Button, "Stop"), nullptr);

    ui.click("stopButton");
    gate.release();
    ui.settle();
    EXPECT_FALSE(ui.store().busy());
    EXPECT_FALSE(ui.isShown("stopButton"));
    EXPECT_EQ(ui.text("statusText"), "Stopped • 0 files arranged • 0 duplicates sent to Trash");
    EXPECT_TRUE(existsNoFollow(report)) << "nothing moved after the stop";
}

TEST(ShellStop, WithoutStopStartRunsToItsEnd) {
    UiFixture ui;
    const std::string report = ui.home.writeFile("Downloads/report.pdf", "report");
    ui.open();
    StartGate gate(ui);
    ui.click("startButton");
    ASSERT_TRUE(gate.waitUntilHeld());
    gate.release();
    ui.settle();
    EXPECT_FALSE(ui.isShown("stopButton"));
    EXPECT_TRUE(ui.text("statusText").startsWith("Done • 1 files arranged"));
    EXPECT_FALSE(existsNoFollow(report));
}

}  // namespace
}  // namespace quorrin::testing
