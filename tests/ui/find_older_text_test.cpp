// The find-older texts: the age label, the heading, the preset labels and the hint.
#include "ui/find_older_text.h"

#include "tests/support/ui/qt_printing.h"
#include "ui/date_text.h"

#include <QTimeZone>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using Engine::OlderMatch;

TEST(AgeLabel, MonthsUpToEleven) {
    EXPECT_EQ(ageLabel(0), "0 months");
    EXPECT_EQ(ageLabel(1), "1 month");
    EXPECT_EQ(ageLabel(6), "6 months");
    EXPECT_EQ(ageLabel(11), "11 months");
}

TEST(AgeLabel, YearsWithTheRemainderAlwaysInMonths) {
    EXPECT_EQ(ageLabel(12), "1 year");
    EXPECT_EQ(ageLabel(13), "1 year 1 months");
    EXPECT_EQ(ageLabel(23), "1 year 11 months");
    EXPECT_EQ(ageLabel(24), "2 years");
    EXPECT_EQ(ageLabel(25), "2 years 1 months");
    EXPECT_EQ(ageLabel(60), "5 years");
}

TEST(AgeLabel, FractionsAreTruncatedTowardZero) {
    EXPECT_EQ(wholeMonths(6.99), 6);
    EXPECT_EQ(wholeMonths(-0.5), 0);
    EXPECT_EQ(ageLabel(1.9), "1 month");
    EXPECT_EQ(ageLabel(12.7), "1 year");
}

TEST(AgeHeading, ByMatch) {
    EXPECT_EQ(ageHeading(OlderMatch::older, 24), "Older than 2 years");
    EXPECT_EQ(ageHeading(OlderMatch::around, 13), "Created / modified 1 year 1 months ago");
    EXPECT_EQ(ageHeading(OlderMatch::custom, 24), "");
}

TEST(PresetLabel, MonthsThenYears) {
    QStringList labels;
    for (int months : agePresets)
        labels.append(presetLabel(months));
    EXPECT_EQ(labels, (QStringList{"1m", "6m", "1y", "2y", "3y", "4y", "5y"}));
}

TEST(OlderHint, OlderThanNamesTheCutoffDay) {
    const Engine::Calendar utc("UTC");
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const platform::Instant now =
        instantOf(QDateTime(QDate(2024, 5, 31), QTime(12, 0), QTimeZone::utc()));
    // 31 May minus two months is 31 March.
    EXPECT_EQ(olderHint(OlderMatch::older, 2, now, utc, english),
              "Includes files dated on or before Mar 31, 2024.");
    // 31 May minus three months is the last day of February.
    EXPECT_EQ(olderHint(OlderMatch::older, 3.8, now, utc, english),
              "Includes files dated on or before Feb 29, 2024.");
}

TEST(OlderHint, DuringThatMonthNamesTheMonth) {
    const Engine::Calendar utc("UTC");
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const platform::Instant now =
        instantOf(QDateTime(QDate(2024, 5, 31), QTime(12, 0), QTimeZone::utc()));
    EXPECT_EQ(olderHint(OlderMatch::around, 24, now, utc, english),
              "Matches only the calendar month May 2022.");
}

TEST(OlderHint, NoneForCustomDates) {
    const Engine::Calendar utc("UTC");
    EXPECT_EQ(olderHint(OlderMatch::custom, 24, platform::instantFrom(1'700'000'000, 0), utc), "");
}

}  // namespace
}  // namespace quorrin::ui
