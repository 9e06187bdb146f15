// Tab and Shift+Tab walk the window in reading order: the sidebar's selected page, the header's
// buttons, then the page; a focus ring shows on what the keyboard reached and never after a click.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class KeyboardTabOrder : public ::testing::Test {
protected:
    // The objectName of the item holding the keyboard focus (its nearest named ancestor).
    QString focused() {
        for (QQuickItem* item = ui.window().activeFocusItem(); item; item = item->parentItem())
            if (!item->objectName().isEmpty())
                return item->objectName();
        return {};
    }
    // Presses the key `count` times and lists where the focus went after each press.
    QStringList walk(int count, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QStringList stops;
        for (int i = 0; i < count; ++i) {
            QTest::keyClick(&ui.window(), Qt::Key_Tab, modifiers);
            ui.settle();
            stops.append(focused());
        }
        return stops;
    }
    // The focus rings drawn now.
    int ringsShown() {
        int shown = 0;
        std::function<void(QQuickItem*)> visit = [&](QQuickItem* item) {
            if (item->objectName() == "focusRing" && item->isVisible())
                ++shown;
            for (QQuickItem* child : item->childItems())
                visit(child);
        };
        visit(ui.window().contentItem());
        return shown;
    }

    UiFixture ui;
};

TEST_F(KeyboardTabOrder, TheOverviewFromSidebarToHeaderToPage) {
    ui.open();
    const QStringList order = {"sidebar:Overview",         "pageActionButton",   "startButton",
                               "overviewDuplicatesSwitch", "previewStartButton", "reviewShortcut",
                               "foldersShortcut",          "sidebar:Overview"};
    EXPECT_EQ(walk(order.size()), order);
    QStringList back = order;
    std::reverse(back.begin(), back.end());
    back.removeFirst();
    back.append("foldersShortcut");
    EXPECT_EQ(walk(back.size(), Qt::ShiftModifier), back);
}

TEST_F(KeyboardTabOrder, APageScrollsToTheControlTheKeyboardReaches) {
    ui.open();
    ui.window().resize(ui.window().minimumSize());
    ui.settle();
    QQuickItem* page = ui.item("pageFlickable", ui.item("overviewPage"));
    auto inView = [&](const QString& name) {
        QQuickItem* item = ui.item(name);
        const QRectF rect = item->mapRectToItem(page, item->boundingRect());
        return rect.top() >= 0 && rect.bottom() <= page->height();
    };
    ASSERT_FALSE(inView("foldersShortcut")) << "the window shows the whole Overview";
    walk(7);
    EXPECT_EQ(focused(), "foldersShortcut");
    EXPECT_TRUE(inView("foldersShortcut"));
    walk(3, Qt::ShiftModifier);
    EXPECT_EQ(focused(), "overviewDuplicatesSwitch");
    EXPECT_TRUE(inView("overviewDuplicatesSwitch"));
}

TEST_F(KeyboardTabOrder, AListPageWalksTheToolbarTheListAndTheFocusedRow) {
    ui.home.writeFile("Documents/a.txt", "a");
    ui.home.writeFile("Documents/b.txt", "b");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    const QStringList order = {"sidebar:All files", "pageActionButton", "startButton",
                               "searchField",       "typePicker.menu",  "selectVisibleButton",
                               "fileRow:a.txt",     "rowCheck",         "rowKeepButton",
                               "rowRevealButton",   "sidebar:All files"};
    EXPECT_EQ(walk(order.size()), order);
    // Backwards the list is entered at its current row.
    EXPECT_EQ(walk(3, Qt::ShiftModifier),
              (QStringList{"fileRow:a.txt", "selectVisibleButton", "typePicker.menu"}));
}

TEST_F(KeyboardTabOrder, TheRingShowsForTheKeyboardOnly) {
    ui.home.writeFile("Documents/a.txt", "a");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    EXPECT_EQ(ringsShown(), 0);

    walk(1);
    EXPECT_EQ(focused(), "sidebar:All files");
    EXPECT_EQ(ringsShown(), 1);
    walk(1);
    EXPECT_EQ(focused(), "pageActionButton");
    EXPECT_EQ(ringsShown(), 1);
    walk(5);
    EXPECT_EQ(focused(), "fileRow:a.txt");
    EXPECT_EQ(ringsShown(), 1);
}

TEST_F(KeyboardTabOrder, ASidebarClickTakesTheKeyboardBackToTheStart) {
    ui.open();
    walk(1);
    ASSERT_EQ(focused(), "sidebar:Overview");
    ui.pressSidebar("All files");
    EXPECT_EQ(ringsShown(), 0);
    EXPECT_FALSE(ui.item("sidebar:Overview")->activeFocusOnTab());
    EXPECT_EQ(walk(2), (QStringList{"sidebar:All files", "pageActionButton"}));

    ui.typeInto("searchField", "x");
    ASSERT_EQ(focused(), "searchField");
    ui.pressSidebar("Duplicates");
    EXPECT_NE(focused(), "searchField");
    EXPECT_EQ(walk(1), QStringList{"sidebar:Duplicates"});
}

TEST_F(KeyboardTabOrder, AClickShowsNoRing) {
    ui.home.writeFile("Documents/a.txt", "a");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    ui.click("selectVisibleButton");
    ui.clickIn(ui.row("a.txt"), "rowCheck");
    EXPECT_TRUE(ui.item("rowCheck", ui.row("a.txt"))->hasActiveFocus());
    ui.clickIn(ui.row("a.txt"), "rowKeepButton");
    ui.click("typePicker.menu");
    QTest::keyClick(&ui.window(), Qt::Key_Escape);
    ui.pressSidebar("Overview");
    ui.click("overviewDuplicatesSwitch");
    ui.click("reviewShortcut");
    EXPECT_EQ(ui.window().property("page").toString(), "Downloads review");
    EXPECT_EQ(ringsShown(), 0);
    // The next Tab is the keyboard's: a ring shows.
    walk(1);
    EXPECT_EQ(ringsShown(), 1);
}

}  // namespace
}  // namespace quorrin::testing
