// The Start switch on the Overview is the settings page's "Automatically clear exact duplicates on
// Start": one setting, not saved, on again at every launch.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

bool checked(UiFixture& ui, const QString& name) {
    return ui.item(name)->property("checked").toBool();
}

TEST(OverviewSwitch, OffHereIsOffOnTheSettingsPageAndOnAgainAfterRelaunch) {
    UiFixture ui;
    ui.open();
    EXPECT_EQ(ui.text("overviewDuplicatesSwitch"),
              "Send exact duplicates to Trash when I press Start");
    ASSERT_TRUE(checked(ui, "overviewDuplicatesSwitch"));
    ui.click("overviewDuplicatesSwitch");
    EXPECT_FALSE(checked(ui, "overviewDuplicatesSwitch"));
    EXPECT_FALSE(ui.store().autoDuplicates());
    ui.pressSidebar("Folders & settings");
    EXPECT_FALSE(checked(ui, "autoDuplicatesSwitch"));

    // Back on: the Overview follows the settings page too.
    ui.click("autoDuplicatesSwitch");
    ui.pressSidebar("Overview");
    EXPECT_TRUE(checked(ui, "overviewDuplicatesSwitch"));
    ui.click("overviewDuplicatesSwitch");
    ASSERT_FALSE(ui.store().autoDuplicates());

    ui.open();
    EXPECT_TRUE(checked(ui, "overviewDuplicatesSwitch"));
    EXPECT_TRUE(ui.store().autoDuplicates());
}

TEST(OverviewSwitch, OffMeansStartLeavesDuplicatesAlone) {
    UiFixture ui;
    ui.home.writeFile("Desktop/a.txt", "same");
    ui.home.writeFile("Documents/b.txt", "same");
    ui.open();
    ui.click("overviewDuplicatesSwitch");
    ui.pressStart();
    EXPECT_EQ(ui.text("statusText"), "Done • 2 files arranged • 0 duplicates sent to Trash");
}

}  // namespace
}  // namespace quorrin::testing
