// The Activity page: the history newest first, updated while it is shown, one row per record.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

// The rows' texts, top to bottom.
QStringList activityRows(UiFixture& ui) {
    QQuickItem* list = ui.item("activityList");
    if (!list || !list->isVisible())
        return {};
    auto* content = qvariant_cast<QQuickItem*>(list->property("contentItem"));
    std::vector<QQuickItem*> rows;
    for (QQuickItem* child : content->childItems())
        if (child->isVisible() && child->objectName() == QLatin1String("activityRow"))
            rows.push_back(child);
    std::sort(rows.begin(), rows.end(),
              [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
    QStringList texts;
    for (QQuickItem* row : rows)
        texts.append(ui.text("activityText", row));
    return texts;
}

TEST(ActivityPage, EmptyAtFirst) {
    UiFixture ui;
    ui.open();
    ui.pressSidebar("Activity");
    EXPECT_TRUE(ui.isShown("activityEmptyText"));
    EXPECT_EQ(ui.text("activityEmptyText"), "Your scan and clean-up history will appear here.");
    EXPECT_TRUE(activityRows(ui).isEmpty());
}

TEST(ActivityPage, ANewLineAppearsWithoutLeavingThePage) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.txt", "a");
    ui.open();
    ui.pressSidebar("Activity");
    ui.runPageAction();  // Quick scan, from the Activity page's header
    EXPECT_FALSE(ui.isShown("activityEmptyText"));
    EXPECT_EQ(activityRows(ui), QStringList{"Quick scan complete • 1 files • 0 notes"});
    ui.store().markReviewDone();
    ui.settle();
    EXPECT_EQ(activityRows(ui), (QStringList{"Weekly Downloads review completed",
                                             "Quick scan complete • 1 files • 0 notes"}));
    QQuickItem* newest = ui.item("activityRow");
    EXPECT_FALSE(ui.text("activityTime", newest).isEmpty());
}

TEST(ActivityPage, TheSameTextTwiceStaysTwoRows) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.txt", "a");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    for (int i = 0; i < 2; ++i) {
        ui.clickIn(ui.row("a.txt"), "rowCheck");
        ui.click("keepSelectedButton");
        ui.settle();
    }
    ui.pressSidebar("Activity");
    const QStringList rows = activityRows(ui);
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows[0], "Kept: a.txt");
    EXPECT_EQ(rows[1], "Kept: a.txt");
}

}  // namespace
}  // namespace quorrin::testing
