// Dates and times in the user's locale: abbreviated dates, month and year, time of day.
#include "ui/date_text.h"

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

const QDateTime afternoon(QDate(2024, 6, 3), QTime(15, 41, 27));

TEST(DateText, EnglishUnitedStates) {
    const QLocale locale(QLocale::English, QLocale::UnitedStates);
    EXPECT_EQ(abbreviatedDate(afternoon, locale), "Jun 3, 2024");
    EXPECT_EQ(monthAndYear(afternoon, locale), "June 2024");
    EXPECT_EQ(timeOfDay(afternoon, locale), "3:41 PM");
}

TEST(DateText, EnglishUnitedKingdom) {
    const QLocale locale(QLocale::English, QLocale::UnitedKingdom);
    EXPECT_EQ(abbreviatedDate(afternoon, locale), "3 Jun 2024");
    EXPECT_EQ(monthAndYear(afternoon, locale), "June 2024");
    EXPECT_EQ(timeOfDay(afternoon, locale), "15:41");
}

TEST(DateText, German) {
    const QLocale locale(QLocale::German, QLocale::Germany);
    EXPECT_EQ(abbreviatedDate(afternoon, locale), "3. Juni 2024");
    EXPECT_EQ(monthAndYear(afternoon, locale), "Juni 2024");
    EXPECT_EQ(timeOfDay(afternoon, locale), "15:41");
}

TEST(DateText, InstantsConvertBothWaysToTheMillisecond) {
    const platform::Instant instant = platform::instantFrom(1'717'429'287, 123'456'789);
    const QDateTime local = localDateTime(instant);
    EXPECT_EQ(local.toMSecsSinceEpoch(), 1'717'429'287'123);
    EXPECT_EQ(instantOf(local), platform::instantFrom(1'717'429'287, 123'000'000));
}

}  // namespace
}  // namespace quorrin::ui
