// The file list from the keyboard: Up and Down walk the rows and keep the focused one in view,
// Space selects, Enter opens, the Menu key or Shift+F10 opens the row's menu.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/recording_launcher.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QTest>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class KeyboardFileList : public ::testing::Test {
protected:
    void SetUp() override {
        for (int i = 10; i < 50; ++i)
            ui.home.writeFile("Documents/file" + std::to_string(i) + ".txt", "x");
        ui.open();
        ui.pressSidebar("All files");
        ui.runPageAction();
        // Into the list: Ctrl+F then Tab Tab Tab (type menu, "Select visible", the list).
        key(Qt::Key_F, Qt::ControlModifier);
        for (int i = 0; i < 3; ++i)
            key(Qt::Key_Tab);
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&ui.window(), Qt::Key(key), modifiers);
        ui.settle();
    }
    QString focused() const {
        QQuickItem* item = ui.window().activeFocusItem();
        return item ? item->objectName() : QString();
    }
    // Whether the whole item lies within the list's visible area.
    bool inView(QQuickItem* item) {
        QQuickItem* view = ui.item("fileListView");
        const QRectF rect = item->mapRectToItem(view, item->boundingRect());
        return rect.top() >= -0.5 && rect.bottom() <= view->height() + 0.5;
    }

    RecordingLauncher desktop;
    UiFixture ui;
};

TEST_F(KeyboardFileList, UpAndDownWalkTheRowsAndKeepTheFocusedOneInView) {
    ASSERT_EQ(focused(), "fileRow:file10.txt");
    for (int i = 0; i < 30; ++i)
        key(Qt::Key_Down);
    EXPECT_EQ(focused(), "fileRow:file40.txt");
    EXPECT_TRUE(inView(ui.window().activeFocusItem()));
    EXPECT_FALSE(ui.rowNames().contains("file10.txt")) << "the list scrolled";
    for (int i = 0; i < 30; ++i)
        key(Qt::Key_Up);
    EXPECT_EQ(focused(), "fileRow:file10.txt");
    EXPECT_TRUE(inView(ui.window().activeFocusItem()));
}

TEST_F(KeyboardFileList, SpaceTogglesTheRowsSelection) {
    key(Qt::Key_Down);
    key(Qt::Key_Space);
    EXPECT_EQ(ui.fileList().selectedCount(), 1);
    EXPECT_TRUE(ui.item("rowCheck", ui.row("file11.txt"))->property("checked").toBool());
    key(Qt::Key_Space);
    EXPECT_EQ(ui.fileList().selectedCount(), 0);
}

TEST_F(KeyboardFileList, EnterOpensTheFile) {
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(desktop.opened, QList<QUrl>{QUrl::fromLocalFile(
                                  QString::fromStdString(ui.home.path("Documents/file11.txt")))});
}

TEST_F(KeyboardFileList, TheMenuKeyAndShiftF10OpenTheRowsMenu) {
    key(Qt::Key_Menu);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("menuCopyPath"); }));
    key(Qt::Key_Escape);
    ASSERT_TRUE(ui.waitFor([&] { return !ui.isShown("menuCopyPath"); }));

    key(Qt::Key_Down);
    key(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("menuCopyPath"); }));
    // The menu is walked with the keys too: "Open", "Show in Folder", "Copy path".
    for (int i = 0; i < 3; ++i)
        key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(desktop.clipboard,
              QStringList{QString::fromStdString(ui.home.path("Documents/file11.txt"))});
}

}  // namespace
}  // namespace quorrin::testing
