// Controls pressed through the accessibility interface, as a screen reader or a test robot does:
// the page tabs open their pages and the buttons do what a click does, once.
#include "tests/support/ui/accessible_tree.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

// Runs the node's press action; false when it has none.
bool press(UiFixture& ui, QAccessible::Role role, const QString& name) {
    const auto nodes = showingNodes(ui.window());
    const AccessibleNode* node = findNode(nodes, role, name);
    if (!node || !node->object)
        return false;
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(node->object);
    QAccessibleActionInterface* actions = interface ? interface->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(QAccessibleActionInterface::pressAction()))
        return false;
    actions->doAction(QAccessibleActionInterface::pressAction());
    ui.settle();
    return true;
}

TEST(AccessibleActions, ATabOpensItsPage) {
    UiFixture ui;
    ui.open();
    ASSERT_TRUE(press(ui, QAccessible::PageTab, "All files"));
    EXPECT_EQ(ui.window().property("page").toString(), "All files");
    EXPECT_EQ(ui.text("headerTitle"), "All files");
}

TEST(AccessibleActions, TheQuickScanButtonScansOnce) {
    UiFixture ui;
    ui.home.writeFile("Documents/Report.pdf", "report");
    ui.open();
    ASSERT_TRUE(press(ui, QAccessible::Button, "Quick scan"));
    EXPECT_EQ(ui.store().status(), "Quick scan complete • 1 files • 0 notes");
    EXPECT_EQ(ui.store().activity()->rowCount(), 1) << "one scan, not two";
}

TEST(AccessibleActions, TheOverviewShortcutsAndTheRowButtonsPress) {
    UiFixture ui;
    ui.home.writeFile("Documents/Report.pdf", "report");
    ui.open();
    ASSERT_TRUE(press(ui, QAccessible::Button, "3 folders connected"));
    EXPECT_EQ(ui.window().property("page").toString(), "Folders & settings");
    ASSERT_TRUE(press(ui, QAccessible::PageTab, "All files"));
    ui.runPageAction();
    ASSERT_TRUE(press(ui, QAccessible::Button, "Keep Report.pdf"));
    EXPECT_EQ(ui.store().keptCount(), 1);
    ASSERT_TRUE(press(ui, QAccessible::CheckBox, "Select Report.pdf"));
    EXPECT_EQ(ui.fileList().selectedCount(), 1);
    ASSERT_TRUE(press(ui, QAccessible::PageTab, "Overview"));
    ASSERT_TRUE(
        press(ui, QAccessible::CheckBox, "Send exact duplicates to Trash when I press Start"));
    EXPECT_FALSE(ui.store().autoDuplicates());
}

}  // namespace
}  // namespace quorrin::testing
