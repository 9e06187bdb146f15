// The Downloads review page: its stepper, "Mark weekly review done", and the stale list.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(DownloadsReviewPage, TheListFollowsTheWeeksAtOnce) {
    UiFixture ui;
    setModified(ui.home.writeFile("Downloads/three weeks.zip", "z"), daysAgo(21) - 60);
    setModified(ui.home.writeFile("Downloads/ten weeks.zip", "z"), daysAgo(70) - 60);
    setModified(ui.home.writeFile("Documents/old letter.txt", "z"), daysAgo(400));
    ui.open();
    ui.pressSidebar("Downloads review");
    ui.runPageAction();
    EXPECT_EQ(ui.rowNames(), QStringList{"ten weeks.zip"});
    QQuickItem* stepper = ui.item("reviewWeeksStepper");
    EXPECT_EQ(ui.text("label", stepper), "Unused for 4 weeks");
    ui.clickIn(stepper, "decrement");
    ui.clickIn(stepper, "decrement");
    ui.settle();
    EXPECT_EQ(ui.text("label", stepper), "Unused for 2 weeks");
    EXPECT_EQ(ui.rowNames(), (QStringList{"ten weeks.zip", "three weeks.zip"}));
}

TEST(DownloadsReviewPage, MarkingTheReviewDoneIsLogged) {
    UiFixture ui;
    ui.open();
    ui.pressSidebar("Downloads review");
    EXPECT_EQ(ui.text("markReviewDoneButton"), "Mark weekly review done");
    ui.click("markReviewDoneButton");
    EXPECT_EQ(ui.text("statusText"), "Weekly Downloads review completed");
    EXPECT_FALSE(ui.store().reviewDue());
}

}  // namespace
}  // namespace quorrin::testing
