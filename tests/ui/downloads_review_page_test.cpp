// The Downloads review page: its stepper, "Mark weekly review done", and the stale list.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QDateTime>
#include <QQuickItem>
#include <QTimeZone>

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

TEST(DownloadsReviewPage, CheckUsageReadsTheRecentlyUsedList) {
    UiFixture ui;
    const std::string opened = ui.home.writeFile("Downloads/opened.zip", "z");
    setModified(opened, daysAgo(70));
    setModified(ui.home.writeFile("Downloads/untouched.zip", "z"), daysAgo(70));
    // The desktop's recently-used list says opened.zip was opened yesterday.
    const std::string yesterday = QDateTime::fromSecsSinceEpoch(daysAgo(1), QTimeZone::utc())
                                      .toString(Qt::ISODate)
                                      .toStdString();
    ui.home.writeFile(".local/share/recently-used.xbel",
                      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<xbel version=\"1.0\">\n  <bookmark href=\"file://" +
                          opened + "\" added=\"" + yesterday + "\" modified=\"" + yesterday +
                          "\" visited=\"" + yesterday + "\"/>\n</xbel>\n");
    ui.open();
    ui.pressSidebar("Downloads review");
    ui.runPageAction();  // "Check usage"
    // A plain scan would judge both by their modification date and list both.
    EXPECT_EQ(ui.rowNames(), QStringList{"untouched.zip"});
    EXPECT_EQ(ui.text("statusText"), "Usage check complete • 2 files • 0 notes");
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
