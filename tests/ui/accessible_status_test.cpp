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
    QStringList statuses;
    QObject::connect(&ui.store(), &ui::StoreFacade::statusChanged,
                     [&] { statuses.append(ui.store().status()); });
    ui.pressSidebar("Downloads review");
    ui.click("markReviewDoneButton");
    ui.runPageAction();
    const QStringList names = events.namesOf(bar);
    // Every status the Store showed reached the reader, in order: the log line, the progress
    // texts (reports made while the window was busy are folded into the newest), the result.
    EXPECT_EQ(names, statuses);
    ASSERT_GE(names.size(), 3);
    EXPECT_EQ(names.first(), "Weekly Downloads review completed");
    EXPECT_TRUE(names.contains("Reading Documents…") || names.contains("Reading Downloads…") ||
                names.contains("Reading Desktop…"))
        << names.join(" | ").toStdString();
    EXPECT_EQ(names.last(), "Usage check complete • 1 files • 0 notes");
}

}  // namespace
}  // namespace quorrin::testing
