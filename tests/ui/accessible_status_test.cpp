// The status line is a status bar whose every change (each progress text and each result line)
// reaches a screen reader as a change of its name.
#include "tests/support/ui/accessible_tree.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(AccessibleStatus, EveryStatusOfAScanIsAnnounced) {
    UiFixture ui;
    ui.home.writeFile("Documents/Report.pdf", "report");
    ui.open();
    QQuickItem* bar = ui.item("statusBar");
    ASSERT_NE(bar, nullptr);
    const auto nodes = showingNodes(ui.window());
    const AccessibleNode* node = nodeOf(nodes, bar);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->role, QAccessible::StatusBar);

    AccessibleEvents events;
    ui.pressSidebar("Downloads review");
    ui.click("markReviewDoneButton");
    ui.runPageAction();
    const QStringList names = events.namesOf(bar);
    ASSERT_FALSE(names.isEmpty());
    EXPECT_EQ(names.first(), "Weekly Downloads review completed");
    EXPECT_EQ(names.last(), ui.store().status());
    EXPECT_TRUE(names.last().startsWith("Usage check complete") || names.last().contains("files"))
        << names.last().toStdString();
    EXPECT_GE(names.size(), 3) << "the scan's first status text and its result";
}

}  // namespace
}  // namespace quorrin::testing
