// The window at its default size: no stray keyboard focus after a sidebar press, a scroll bar on
// the file list whenever it holds more rows than fit, and the settings page shown whole.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

// ScrollBar.AlwaysOff and ScrollBar.AlwaysOn.
constexpr int alwaysOff = 1;
constexpr int alwaysOn = 2;

class ShellFocusAndScroll : public ::testing::Test {
protected:
    UiFixture ui;
};

TEST_F(ShellFocusAndScroll, ASidebarPressTakesTheFocusFromTheSearchField) {
    writeSampleHome(ui.home);
    ui.open();
    ui.pressSidebar(QStringLiteral("All files"));
    ui.typeInto(QStringLiteral("searchField"), QStringLiteral("tax"));
    ASSERT_TRUE(ui.item(QStringLiteral("searchField"))->hasActiveFocus());
    for (const char* page : {"Kept files", "Kept files", "Duplicates"}) {
        ui.pressSidebar(QString::fromLatin1(page));
        QQuickItem* field = ui.item(QStringLiteral("searchField"));
        EXPECT_FALSE(field->hasActiveFocus()) << page;
        EXPECT_FALSE(field->property("cursorVisible").toBool()) << page;
    }
}

TEST_F(ShellFocusAndScroll, TheFileListShowsItsScrollBarWhenRowsDoNotFit) {
    writeSampleHome(ui.home);
    ui.open();
    ui.pressSidebar(QStringLiteral("All files"));
    ui.runPageAction();
    QQuickItem* bar = ui.item(QStringLiteral("fileListScrollBar"));
    EXPECT_EQ(bar->property("policy").toInt(), alwaysOn);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_LT(bar->property("size").toDouble(), 1.0);

    // A search that leaves a few rows: nothing to scroll, no bar.
    ui.typeInto(QStringLiteral("searchField"), QStringLiteral("Invoice 2024-03"));
    EXPECT_EQ(bar->property("policy").toInt(), alwaysOff);
}

TEST_F(ShellFocusAndScroll, TheSettingsPageFitsTheDefaultWindow) {
    QQuickWindow& window = ui.open();
    ASSERT_EQ(window.width(), 1180);
    ASSERT_EQ(window.height(), 800);
    ui.pressSidebar(QStringLiteral("Folders & settings"));
    ui.settle();
    QQuickItem* flick = ui.item(QStringLiteral("pageFlickable"));
    EXPECT_LE(flick->property("contentHeight").toDouble(), flick->height());
    // The last controls lie inside the window, whole.
    for (const char* name : {"settingsWeeksStepper", "openTrashButton", "inspectSwitch"}) {
        QQuickItem* item = ui.item(QString::fromLatin1(name));
        const QPointF bottom = item->mapToItem(flick, QPointF(0, item->height()));
        EXPECT_LE(bottom.y(), flick->height()) << name;
        EXPECT_GE(item->mapToItem(flick, QPointF(0, 0)).y(), 0.0) << name;
    }
}

}  // namespace
}  // namespace quorrin::testing
