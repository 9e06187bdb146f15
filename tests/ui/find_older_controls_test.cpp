// The find-older controls: pickers, the age heading and slider with presets and hint, the custom
// day range with its warning; every change re-filters the list without a new search.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QColor>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <QtQuickTest/quicktest.h>
#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class FindOlderControls : public ::testing::Test {
protected:
    void SetUp() override {
        setModified(ui.home.writeFile("Documents/ten days.txt", "x"), daysAgo(10));
        setModified(ui.home.writeFile("Documents/two hundred days.txt", "x"), daysAgo(200));
        setModified(ui.home.writeFile("Desktop/three years.txt", "x"), daysAgo(3 * 365));
        ui.open();
        ui.pressSidebar("FindOlder");
    }
    QString heading() { return ui.text("ageHeading"); }
    double slider() { return ui.item("ageSlider")->property("value").toDouble(); }
    // Moves the slider with the keyboard, a step at a time, as a user can.
    void step(Qt::Key key, int times) {
        QQuickItem* slider = ui.item("ageSlider");
        slider->forceActiveFocus();
        for (int i = 0; i < times; ++i)
            QTest::keyClick(&ui.window(), key);
        ui.settle();
    }
    // Drawn in `accent` (the current preset) rather than grey.
    bool highlighted(const QString& preset) {
        QQuickItem* button = ui.item("preset:" + preset);
        // Away from the buttons, so that none is drawn hovered.
        QTest::mouseMove(&ui.window(), QPoint(4, ui.window().height() - 4));
        QQuickTest::qWaitForPolish(&ui.window());
        auto* background = qvariant_cast<QQuickItem*>(button->property("background"));
        const QColor accent = QColor::fromRgbF(0.67, 0.95, 0.42);
        const QColor fill = background->property("color").value<QColor>();
        const bool accented = qAbs(fill.redF() - accent.redF()) < 0.01 &&
                              qAbs(fill.greenF() - accent.greenF()) < 0.01 &&
                              qAbs(fill.blueF() - accent.blueF()) < 0.01;
        EXPECT_EQ(accented, button->property("prominent").toBool());
        return accented;
    }

    UiFixture ui;
};

TEST_F(FindOlderControls, StartsAtTwoYearsCreatedOlderThan) {
    EXPECT_EQ(ui.item("dateBasisPicker")->property("value").toString(), "Created date");
    EXPECT_EQ(ui.item("olderModePicker")->property("value").toString(), "Older than");
    EXPECT_EQ(ui.item("dateBasisPicker")->property("title").toString(), "File date");
    EXPECT_EQ(ui.item("olderModePicker")->property("title").toString(), "Match");
    EXPECT_EQ(heading(), "Older than 2 years");
    EXPECT_EQ(slider(), 24);
    EXPECT_TRUE(highlighted("2y"));
    EXPECT_EQ(ui.text("ageRangeCaption"), "1 month – 5 years");
    EXPECT_TRUE(ui.text("olderHint").startsWith("Includes files dated on or before "));
    EXPECT_EQ(ui.text("olderNote"),
              "Dates come from the file system's metadata. Copying or restoring a file can change "
              "its Created date; use Last modified date for when you last edited it. Files without "
              "a Created date are excluded in Created mode. Personal project folders are searched; "
              "app/system data and packages are skipped. This view does not move or delete files.");
}

TEST_F(FindOlderControls, HeadingsForTheAge) {
    ui.click("preset:1y");
    EXPECT_EQ(heading(), "Older than 1 year");
    step(Qt::Key_Right, 1);
    EXPECT_EQ(slider(), 13);
    EXPECT_EQ(heading(), "Older than 1 year 1 months");
    ui.click("preset:5y");
    EXPECT_EQ(heading(), "Older than 5 years");
    step(Qt::Key_Right, 3);
    EXPECT_EQ(slider(), 60) << "the slider stops at 60";
    ui.click("preset:2y");
    EXPECT_EQ(heading(), "Older than 2 years");
    ui.choose("olderModePicker", "During that month");
    EXPECT_EQ(heading(), "Created / modified 2 years ago");
    EXPECT_TRUE(ui.text("olderHint").startsWith("Matches only the calendar month "));
}

TEST_F(FindOlderControls, ThePresetMovesSliderHeadingAndHighlight) {
    ui.click("preset:6m");
    EXPECT_EQ(slider(), 6);
    EXPECT_EQ(heading(), "Older than 6 months");
    EXPECT_TRUE(highlighted("6m"));
    for (const QString other : {"1m", "1y", "2y", "3y", "4y", "5y"})
        EXPECT_FALSE(highlighted(other)) << other.toStdString();
    QStringList labels;
    for (const QString preset : {"1m", "6m", "1y", "2y", "3y", "4y", "5y"})
        labels.append(ui.text("preset:" + preset));
    EXPECT_EQ(labels, (QStringList{"1m", "6m", "1y", "2y", "3y", "4y", "5y"}));
}

TEST_F(FindOlderControls, AFractionalAgeIsTruncatedForLabelHighlightAndQuery) {
    ui.choose("dateBasisPicker", "Last modified date");
    ui.runPageAction();
    ui.fileList().setAgeMonths(6.7);
    ui.settle();
    EXPECT_EQ(heading(), "Older than 6 months");
    EXPECT_TRUE(highlighted("6m"));
    // 200 days is older than 6 months but not than 7.
    EXPECT_EQ(ui.rowNames(), (QStringList{"three years.txt", "two hundred days.txt"}));
}

TEST_F(FindOlderControls, ChangingAControlRefiltersWithoutANewSearch) {
    ui.choose("dateBasisPicker", "Last modified date");
    ui.runPageAction();
    const std::size_t lines = ui.store().store().activity().size();
    EXPECT_EQ(ui.rowNames(), QStringList{"three years.txt"});
    ui.click("preset:6m");
    EXPECT_EQ(ui.rowNames(), (QStringList{"three years.txt", "two hundred days.txt"}));
    QQuickItem* row = ui.row("two hundred days.txt");
    EXPECT_TRUE(ui.item("rowDate", row)->isVisible());
    EXPECT_EQ(ui.text("rowBasis", row), "Last modified date");
    ui.click("preset:5y");
    EXPECT_TRUE(ui.rowNames().isEmpty());
    EXPECT_EQ(ui.store().store().activity().size(), lines) << "no new search ran";
}

TEST_F(FindOlderControls, CustomDatesFromAfterThroughWarnsAndMatchesNothing) {
    ui.choose("dateBasisPicker", "Last modified date");
    ui.runPageAction();
    ui.choose("olderModePicker", "Custom dates");
    EXPECT_FALSE(ui.isShown("ageSlider"));
    EXPECT_TRUE(ui.isShown("fromDateField"));
    EXPECT_TRUE(ui.isShown("throughDateField"));
    EXPECT_FALSE(ui.isShown("dateRangeWarning"));
    EXPECT_EQ(ui.rowNames(), (QStringList{"ten days.txt", "two hundred days.txt"}));

    // Through: back 30 months, the 15th.
    QQuickItem* through = ui.item("throughDateField");
    ui.clickIn(through, "button");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("popup.previous", through); }));
    for (int i = 0; i < 30; ++i)
        ui.clickIn(through, "popup.previous");
    ui.clickIn(through, "day:15");
    ui.settle();
    EXPECT_TRUE(ui.fileList().fromDate() > ui.fileList().throughDate());

    EXPECT_TRUE(ui.isShown("dateRangeWarning"));
    EXPECT_EQ(ui.text("dateRangeWarning"), "From date must be before or equal to Through date.");
    EXPECT_TRUE(ui.isEnabled("pageActionButton"));
    EXPECT_TRUE(ui.rowNames().isEmpty());
    EXPECT_EQ(ui.text("emptyStateText"),
              "No files match these dates. Try Last modified date or a different range.");
}

TEST_F(FindOlderControls, TheInputsSurviveSidebarNavigation) {
    ui.click("preset:6m");
    ui.choose("olderModePicker", "During that month");
    ui.pressSidebar("Overview");
    ui.pressSidebar("FindOlder");
    EXPECT_EQ(slider(), 6);
    EXPECT_EQ(ui.item("olderModePicker")->property("value").toString(), "During that month");
}

}  // namespace
}  // namespace quorrin::testing
