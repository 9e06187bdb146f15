// The window's keys: Up and Down in the sidebar, Ctrl+F, F5, Ctrl+A, Delete, and Escape on the
// confirmation and the folder chooser.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class KeyboardShortcuts : public ::testing::Test {
protected:
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&ui.window(), Qt::Key(key), modifiers);
        ui.settle();
    }
    QString page() const { return ui.window().property("page").toString(); }
    QString focused() const {
        QQuickItem* item = ui.window().activeFocusItem();
        return item ? item->objectName() : QString();
    }
    void openAllFiles() {
        ui.home.writeFile("Documents/a.txt", "a");
        ui.home.writeFile("Documents/b.txt", "b");
        ui.open();
        ui.pressSidebar("All files");
        ui.runPageAction();
    }

    UiFixture ui;
};

TEST_F(KeyboardShortcuts, UpAndDownOpenThePagesOfTheSidebar) {
    ui.open();
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "sidebar:Overview");
    key(Qt::Key_Up);
    EXPECT_EQ(page(), "Overview") << "nothing above the first page";
    key(Qt::Key_Down);
    EXPECT_EQ(page(), "All files");
    EXPECT_EQ(focused(), "sidebar:All files");
    for (int i = 0; i < 10; ++i)
        key(Qt::Key_Down);
    EXPECT_EQ(page(), "Activity");
    EXPECT_EQ(focused(), "sidebar:Activity");
    key(Qt::Key_Up);
    EXPECT_EQ(page(), "Folders & settings");
    EXPECT_EQ(focused(), "sidebar:Folders & settings");
}

TEST_F(KeyboardShortcuts, SpaceOnTheSidebarResetsTheListLikeAClick) {
    openAllFiles();
    ui.typeInto("searchField", "a.txt");
    ui.click("selectVisibleButton");
    ASSERT_EQ(ui.fileList().selectedCount(), 1);
    ui.item("sidebar:All files")->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    EXPECT_EQ(page(), "All files");
    EXPECT_EQ(ui.fileList().query(), "");
    EXPECT_EQ(ui.fileList().selectedCount(), 0);
}

TEST_F(KeyboardShortcuts, CtrlFFocusesTheSearchField) {
    openAllFiles();
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(focused(), "searchField");
    // "b." matches no folder of the temporary home, whatever its random name.
    key(Qt::Key_B);
    key(Qt::Key_Period);
    EXPECT_EQ(ui.fileList().query(), "b.");
    EXPECT_EQ(ui.rowNames(), QStringList{"b.txt"});
}

TEST_F(KeyboardShortcuts, F5RunsThePageAction) {
    ui.home.writeFile("Documents/a.txt", "same");
    ui.home.writeFile("Downloads/b.txt", "same");
    ui.open();
    ui.pressSidebar("Duplicates");
    ASSERT_FALSE(ui.store().duplicatesChecked());
    key(Qt::Key_F5);
    EXPECT_TRUE(ui.store().duplicatesChecked());
    EXPECT_EQ(ui.rowNames(), QStringList{"b.txt"});

    ui.pressSidebar("Overview");
    key(Qt::Key_F5);
    EXPECT_TRUE(ui.store().status().startsWith("Quick scan complete"))
        << ui.store().status().toStdString();
}

TEST_F(KeyboardShortcuts, CtrlASelectsTheVisibleFilesButSelectsTextInTheSearchField) {
    openAllFiles();
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(ui.fileList().selectedCount(), 2);

    ui.click("sidebar:All files");
    ui.typeInto("searchField", "txt");
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(ui.fileList().selectedCount(), 0);
    EXPECT_EQ(ui.item("searchField")->property("selectedText").toString(), "txt");
}

TEST_F(KeyboardShortcuts, DeleteAsksToClearTheSelectionAndEscapeCloses) {
    openAllFiles();
    key(Qt::Key_Delete);
    EXPECT_FALSE(ui.isShown("moveToTrashButton")) << "nothing selected";
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("moveToTrashButton"); }));
    key(Qt::Key_Escape);
    EXPECT_TRUE(ui.waitFor([&] { return !ui.isShown("moveToTrashButton"); }));
    EXPECT_EQ(ui.store().fileCount(), 2) << "Escape sends nothing to the Trash";
    EXPECT_EQ(ui.fileList().selectedCount(), 2);
}

TEST_F(KeyboardShortcuts, DeleteDoesNothingOnFindOlder) {
    openAllFiles();
    ui.pressSidebar("FindOlder");
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    EXPECT_FALSE(ui.isShown("moveToTrashButton"));
}

TEST_F(KeyboardShortcuts, EscapeClosesTheFolderChooser) {
    ui.open();
    ui.pressSidebar("Folders & settings");
    ui.click("addFolderButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserConfirmButton"); }));
    key(Qt::Key_Escape);
    EXPECT_TRUE(ui.waitFor([&] { return !ui.isShown("chooserConfirmButton"); }));
    EXPECT_EQ(ui.store().roots().size(), 3);
}

TEST_F(KeyboardShortcuts, TheArrowsPickADayInTheDateGrid) {
    ui.open();
    ui.pressSidebar("FindOlder");
    ui.choose("olderModePicker", "Custom dates");
    const QDateTime from = ui.fileList().fromDate();
    QQuickItem* button = ui.item("button", ui.item("fromDateField"));
    button->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("grid"); }));
    EXPECT_EQ(focused(), QString("day:%1").arg(from.date().day()));
    // A week and a day on, then a month back and forth.
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    key(Qt::Key_PageUp);
    key(Qt::Key_PageDown);
    EXPECT_EQ(focused(), QString("day:%1").arg(from.date().addDays(8).day()));
    key(Qt::Key_Return);
    EXPECT_TRUE(ui.waitFor([&] { return !ui.isShown("grid"); }));
    EXPECT_EQ(ui.fileList().fromDate().date(), from.date().addDays(8));

    // Escape closes the grid without picking.
    button->forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("grid"); }));
    key(Qt::Key_Left);
    key(Qt::Key_Escape);
    EXPECT_TRUE(ui.waitFor([&] { return !ui.isShown("grid"); }));
    EXPECT_EQ(ui.fileList().fromDate().date(), from.date().addDays(8));
}

}  // namespace
}  // namespace quorrin::testing
