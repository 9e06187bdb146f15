// Every page as a screen reader walks it: the nine page tabs with the selected one marked, every
// control a user acts on named, no icon in the tree, and only the shown page's content showing.
#include "tests/support/ui/accessible_tree.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

const QStringList pages = {"Overview",   "All files",          "FindOlder",
                           "Duplicates", "Downloads review",   "File health",
                           "Kept files", "Folders & settings", "Activity"};

class AccessiblePages : public ::testing::Test {
protected:
    void SetUp() override {
        writeSampleHome(ui.home);
        ui.open();
    }

    // The names of the showing nodes of this role.
    QStringList namesOf(QAccessible::Role role) {
        QStringList names;
        for (const AccessibleNode& node : showingNodes(ui.window()))
            if (node.role == role)
                names.append(node.name);
        return names;
    }

    UiFixture ui;
};

TEST_F(AccessiblePages, TheSidebarIsAListOfNineTabsWithTheSelectedOneMarked) {
    for (const QString& page : pages) {
        ui.pressSidebar(page);
        const auto nodes = showingNodes(ui.window());
        const AccessibleNode* list = findNode(nodes, QAccessible::PageTabList, "Pages");
        ASSERT_NE(list, nullptr);
        QStringList tabs;
        QStringList selected;
        for (const AccessibleNode& node : nodes) {
            if (node.role != QAccessible::PageTab)
                continue;
            EXPECT_EQ(&nodes[node.parent], list) << node.name.toStdString();
            EXPECT_TRUE(node.state.selectable);
            tabs.append(node.name);
            if (node.state.selected)
                selected.append(node.name);
        }
        EXPECT_EQ(tabs, pages);
        EXPECT_EQ(selected, QStringList{page});
    }
}

TEST_F(AccessiblePages, EveryControlOfEveryPageHasAName) {
    for (const QString& page : pages) {
        ui.pressSidebar(page);
        ui.runPageAction();
        int interactive = 0;
        for (const AccessibleNode& node : showingNodes(ui.window())) {
            if (!isInteractive(node.role))
                continue;
            ++interactive;
            EXPECT_FALSE(node.name.trimmed().isEmpty())
                << page.toStdString() << ": a control of role " << node.role << " ("
                << (node.object ? node.object->objectName().toStdString() : "") << ") has no name";
        }
        EXPECT_GT(interactive, 11) << page.toStdString();  // nine tabs and the header buttons
    }
}

TEST_F(AccessiblePages, TheOptionsOfAnOpenPickerAreNamed) {
    ui.pressSidebar("File health");
    ui.click("healthPicker.menu");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("option:Empty files"); }));
    QStringList options;
    for (const AccessibleNode& node : showingNodes(ui.window()))
        if (node.object && node.object->objectName().startsWith("option:"))
            options.append(node.name);
    EXPECT_TRUE(options.contains("All signals")) << options.join(", ").toStdString();
    EXPECT_TRUE(options.contains("Empty files")) << options.join(", ").toStdString();
}

TEST_F(AccessiblePages, IconsAreNotInTheTree) {
    for (const QString& page : pages) {
        ui.pressSidebar(page);
        ui.runPageAction();
        for (const AccessibleNode& node : accessibleTree(ui.window())) {
            EXPECT_NE(node.role, QAccessible::Graphic) << page.toStdString();
            EXPECT_FALSE(node.object && node.object->inherits("QQuickImage"))
                << page.toStdString() << ": an image is in the tree";
        }
    }
}

TEST_F(AccessiblePages, OnlyTheShownPageIsShowing) {
    const QString overviewSwitch = "Send exact duplicates to Trash when I press Start";
    const QString search = "Search by filename or folder…";
    const QString settingsSwitch = "Automatically clear exact duplicates on Start";

    ui.pressSidebar("Overview");
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::CheckBox, overviewSwitch), nullptr);
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::EditableText, search), nullptr);
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::CheckBox, settingsSwitch), nullptr);

    ui.pressSidebar("All files");
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::CheckBox, overviewSwitch), nullptr);
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::EditableText, search), nullptr);
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::Slider, "Older than 2 years"),
              nullptr);

    ui.pressSidebar("FindOlder");
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::Slider, "Older than 2 years"),
              nullptr);
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::Button, "Clear selected…"), nullptr);

    ui.pressSidebar("Folders & settings");
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::CheckBox, settingsSwitch), nullptr);
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::EditableText, search), nullptr);
    EXPECT_EQ(findNode(showingNodes(ui.window()), QAccessible::CheckBox, overviewSwitch), nullptr);
}

TEST_F(AccessiblePages, TheWeeksStepperSliderAndSearchAreNamed) {
    ui.pressSidebar("Downloads review");
    auto nodes = showingNodes(ui.window());
    const AccessibleNode* stepper = findNode(nodes, QAccessible::Grouping, "Unused for 4 weeks");
    ASSERT_NE(stepper, nullptr);
    QStringList buttons;
    for (const AccessibleNode& node : nodes)
        if (node.parent >= 0 && &nodes[node.parent] == stepper)
            buttons.append(node.name);
    EXPECT_EQ(buttons, (QStringList{"Fewer weeks", "More weeks"}));
    EXPECT_NE(findNode(nodes, QAccessible::EditableText, "Search by filename or folder…"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::ComboBox, "Type: All types"), nullptr);

    ui.clickIn(ui.item("reviewWeeksStepper"), "increment");
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::Grouping, "Unused for 5 weeks"),
              nullptr);

    ui.pressSidebar("FindOlder");
    nodes = showingNodes(ui.window());
    EXPECT_NE(findNode(nodes, QAccessible::Slider, "Older than 2 years"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::ComboBox, "File date: Created date"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::ComboBox, "Match: Older than"), nullptr);
    ui.click("preset:6m");
    EXPECT_NE(findNode(showingNodes(ui.window()), QAccessible::Slider, "Older than 6 months"),
              nullptr);

    ui.pressSidebar("Folders & settings");
    nodes = showingNodes(ui.window());
    EXPECT_NE(findNode(nodes, QAccessible::Grouping, "Unused for 5 weeks"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::Button, "Fewer weeks"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::Button, "Remove Documents"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::Heading, "Connected folders"), nullptr);
}

TEST_F(AccessiblePages, TheConfirmationIsANamedDialog) {
    ui.pressSidebar("All files");
    ui.runPageAction();
    ui.clickIn(ui.row("Budget 2025.xlsx"), "rowCheck");
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("moveToTrashButton"); }));
    const auto nodes = showingNodes(ui.window());
    const AccessibleNode* dialog =
        findNode(nodes, QAccessible::Dialog, "Move selected files to Trash?");
    ASSERT_NE(dialog, nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::StaticText,
                       "Kept files are protected. You can restore trashed files from the Trash. "
                       "Duplicate originals are checked again before removal."),
              nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::Button, "Move to Trash"), nullptr);
    EXPECT_NE(findNode(nodes, QAccessible::Button, "Cancel"), nullptr);
}

}  // namespace
}  // namespace quorrin::testing
