// Calendar arithmetic in fixed time zones: month clamping, local midnights and months across
// daylight-saving changes, nanosecond precision, range limits and the user's default zone.
#include "engine/calendar.h"

#include "tests/support/utc.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using std::chrono::nanoseconds;

using quorrin::testing::utc;

const Instant earliest = Instant(nanoseconds::min());
const Instant latest = Instant(nanoseconds::max());

TEST(Calendar, NamesItsZone) {
    EXPECT_EQ(Calendar("Europe/Berlin").zoneId(), "Europe/Berlin");
    EXPECT_EQ(Calendar("America/New_York").zoneId(), "America/New_York");
}

TEST(Calendar, RejectsAnUnknownZone) {
    EXPECT_THROW(Calendar("Europe/Atlantis"), std::invalid_argument);
    EXPECT_THROW(Calendar(""), std::invalid_argument);
}

TEST(Calendar, MinusOneMonthFrom31MarchIsTheLastDayOfFebruaryInALeapYear) {
    Calendar berlin("Europe/Berlin");
    // 31 March 2024 12:00 CEST (the day summer time began) → 29 February 12:00 CET.
    EXPECT_EQ(berlin.addingMonths(utc(2024, 3, 31, 10), -1), utc(2024, 2, 29, 11));
    // The same in New York: 12:00 EDT → 12:00 EST.
    Calendar newYork("America/New_York");
    EXPECT_EQ(newYork.addingMonths(utc(2024, 3, 31, 16), -1), utc(2024, 2, 29, 17));
}

TEST(Calendar, MinusOneMonthFrom31MarchIsTheLastDayOfFebruaryInACommonYear) {
    Calendar berlin("Europe/Berlin");
    // 31 March 2023 12:00 CEST → 28 February 2023 12:00 CET.
    EXPECT_EQ(berlin.addingMonths(utc(2023, 3, 31, 10), -1), utc(2023, 2, 28, 11));
    // 23:30 keeps its time of day too, and stays on the 28th.
    EXPECT_EQ(berlin.addingMonths(utc(2023, 3, 31, 21, 30), -1), utc(2023, 2, 28, 22, 30));
}

TEST(Calendar, AddingMonthsCrossesYearsBothWays) {
    Calendar berlin("Europe/Berlin");
    // 15 January 2024 08:00 CET minus 2 months → 15 November 2023 08:00 CET.
    EXPECT_EQ(berlin.addingMonths(utc(2024, 1, 15, 7), -2), utc(2023, 11, 15, 7));
    // 31 December 2023 08:00 CET plus 2 months → 29 February 2024 08:00 CET.
    EXPECT_EQ(berlin.addingMonths(utc(2023, 12, 31, 7), 2), utc(2024, 2, 29, 7));
    // Zero months is the instant itself.
    Instant t = utc(2024, 7, 1, 3) + nanoseconds(42);
    EXPECT_EQ(berlin.addingMonths(t, 0), t);
}

TEST(Calendar, ArithmeticKeepsNanoseconds) {
    Calendar berlin("Europe/Berlin");
    nanoseconds fraction(123'456'789);
    EXPECT_EQ(berlin.addingMonths(utc(2024, 5, 15, 10) + fraction, -1),
              utc(2024, 4, 15, 10) + fraction);
    EXPECT_EQ(berlin.addingDays(utc(2024, 5, 15, 10) + fraction, 1),
              utc(2024, 5, 16, 10) + fraction);
    // Before 1970 the instant counts backwards from the epoch: the sub-millisecond part is still
    // carried correctly. Germany kept CET all year then: 1 January 1970 00:59:59.999999999 local
    // minus one month is 1 December 1969 at the same time.
    Instant beforeEpoch = Instant(nanoseconds(-1));
    EXPECT_EQ(berlin.addingMonths(beforeEpoch, -1), utc(1969, 12, 1) - nanoseconds(1));
    EXPECT_EQ(berlin.addingMonths(beforeEpoch - nanoseconds(999'999), -1),
              utc(1969, 12, 1) - nanoseconds(1'000'000));
}

TEST(Calendar, StartOfDayIsLocalMidnightAcrossDaylightSavingChanges) {
    Calendar berlin("Europe/Berlin");
    // 31 March 2024, 23 hours long: 23:30 CEST → 00:00 CET.
    EXPECT_EQ(berlin.startOfDay(utc(2024, 3, 31, 21, 30)), utc(2024, 3, 30, 23));
    // 27 October 2024, 25 hours long: 23:30 CET → 00:00 CEST.
    EXPECT_EQ(berlin.startOfDay(utc(2024, 10, 27, 22, 30)), utc(2024, 10, 26, 22));
    // The first instant of a day is its own start; the instant before it belongs to the day before.
    EXPECT_EQ(berlin.startOfDay(utc(2024, 3, 30, 23)), utc(2024, 3, 30, 23));
    EXPECT_EQ(berlin.startOfDay(utc(2024, 3, 30, 23) - nanoseconds(1)), utc(2024, 3, 29, 23));

    Calendar newYork("America/New_York");
    // 3 November 2024 (clocks back at 02:00 EDT): 23:00 EST → 00:00 EDT.
    EXPECT_EQ(newYork.startOfDay(utc(2024, 11, 4, 4)), utc(2024, 11, 3, 4));
    // 10 March 2024 (clocks forward at 02:00 EST): 12:00 EDT → 00:00 EST.
    EXPECT_EQ(newYork.startOfDay(utc(2024, 3, 10, 16)), utc(2024, 3, 10, 5));
}

TEST(Calendar, StartOfADayWithoutMidnightIsTheMomentTheClocksChange) {
    // Chile moves its clocks from 00:00 (-04) to 01:00 (-03) on 8 September 2024.
    Calendar santiago("America/Santiago");
    EXPECT_EQ(santiago.startOfDay(utc(2024, 9, 8, 15)), utc(2024, 9, 8, 4));
}

TEST(Calendar, StartOfADayWhoseMidnightRepeatsIsTheFirstMidnight) {
    // Cuba turns its clocks back from 01:00 (-04) to 00:00 (-05) on 3 November 2024 and forward
    // from 00:00 (-05) to 01:00 (-04) on 10 March 2024.
    Calendar havana("America/Havana");
    EXPECT_EQ(havana.startOfDay(utc(2024, 11, 3, 12)), utc(2024, 11, 3, 4));
    EXPECT_EQ(havana.startOfDay(utc(2024, 3, 10, 12)), utc(2024, 3, 10, 5));
}

TEST(Calendar, AddingMonthsIntoAChangeOfTheClocks) {
    Calendar newYork("America/New_York");
    // 3 December 2024 01:30 EST minus one month: 01:30 occurs twice on 3 November; the first,
    // 01:30 EDT, is taken.
    EXPECT_EQ(newYork.addingMonths(utc(2024, 12, 3, 6, 30), -1), utc(2024, 11, 3, 5, 30));
    // 10 April 2024 02:30 EDT minus one month: 02:30 does not exist on 10 March; the wall time is
    // read with the offset before the change, 02:30 EST, which is 03:30 EDT.
    EXPECT_EQ(newYork.addingMonths(utc(2024, 4, 10, 6, 30), -1), utc(2024, 3, 10, 7, 30));
}

TEST(Calendar, MonthIntervalRunsFromLocalMidnightToLocalMidnight) {
    Calendar berlin("Europe/Berlin");
    // March 2024 starts in CET and ends in CEST.
    std::optional<DateInterval> march = berlin.monthInterval(utc(2024, 3, 15, 12));
    ASSERT_TRUE(march.has_value());
    EXPECT_EQ(march->start, utc(2024, 2, 29, 23));
    EXPECT_EQ(march->end, utc(2024, 3, 31, 22));
    // October 2024 starts in CEST and ends in CET.
    std::optional<DateInterval> october = berlin.monthInterval(utc(2024, 10, 27, 1, 30));
    ASSERT_TRUE(october.has_value());
    EXPECT_EQ(october->start, utc(2024, 9, 30, 22));
    EXPECT_EQ(october->end, utc(2024, 10, 31, 23));
    // Its first instant lies inside, its end belongs to the next month.
    EXPECT_EQ(berlin.monthInterval(october->start)->start, october->start);
    EXPECT_EQ(berlin.monthInterval(october->end)->start, october->end);

    Calendar newYork("America/New_York");
    std::optional<DateInterval> newYorkMarch = newYork.monthInterval(utc(2024, 3, 20));
    ASSERT_TRUE(newYorkMarch.has_value());
    EXPECT_EQ(newYorkMarch->start, utc(2024, 3, 1, 5));
    EXPECT_EQ(newYorkMarch->end, utc(2024, 4, 1, 4));
    // December runs into January of the next year.
    std::optional<DateInterval> december = newYork.monthInterval(utc(2024, 12, 31, 12));
    ASSERT_TRUE(december.has_value());
    EXPECT_EQ(december->start, utc(2024, 12, 1, 5));
    EXPECT_EQ(december->end, utc(2025, 1, 1, 5));
}

TEST(Calendar, AddingADayKeepsTheLocalTimeOfDay) {
    Calendar berlin("Europe/Berlin");
    // Midnight to midnight over 31 March 2024 is 23 hours, over 27 October 2024 25 hours.
    EXPECT_EQ(berlin.addingDays(utc(2024, 3, 30, 23), 1), utc(2024, 3, 31, 22));
    EXPECT_EQ(berlin.addingDays(utc(2024, 10, 26, 22), 1), utc(2024, 10, 27, 23));
    EXPECT_EQ(berlin.addingDays(utc(2024, 10, 27, 23), -1), utc(2024, 10, 26, 22));
}

TEST(Calendar, ResultsOutsideTheRangeOfAnInstantAreNone) {
    Calendar berlin("Europe/Berlin");
    EXPECT_FALSE(berlin.addingMonths(latest, 1).has_value());
    EXPECT_FALSE(berlin.addingMonths(earliest, -1).has_value());
    EXPECT_FALSE(berlin.addingDays(latest, 1).has_value());
    EXPECT_FALSE(berlin.addingDays(earliest, -1).has_value());
    // The first local midnight at or before the earliest instant is earlier still.
    EXPECT_FALSE(berlin.startOfDay(earliest).has_value());
    EXPECT_FALSE(berlin.monthInterval(latest).has_value());
    constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max();
    Instant t = utc(2024, 5, 15);
    EXPECT_FALSE(berlin.addingMonths(t, huge).has_value());
    EXPECT_FALSE(berlin.addingMonths(t, -huge).has_value());
    EXPECT_FALSE(berlin.addingMonths(t, std::numeric_limits<std::int32_t>::max()).has_value());
    EXPECT_FALSE(berlin.addingMonths(t, 12 * 1000).has_value());
    EXPECT_FALSE(berlin.addingDays(t, -huge).has_value());
    // Far back inside the range still works: 200 years before 15 May 2024 12:00 CEST is 15 May
    // 1824 12:00 in Berlin's local mean time (+0:53:28).
    EXPECT_EQ(berlin.addingMonths(utc(2024, 5, 15, 10), -12 * 200), utc(1824, 5, 15, 11, 6, 32));
}

TEST(Calendar, OneCalendarServesSeveralThreads) {
    Calendar berlin("Europe/Berlin");
    // Each thread alternates two computations on the shared calendar and records any wrong answer.
    auto work = [&berlin](Instant t, Instant monthBack, Instant dayStart, int* wrong) {
        for (int i = 0; i < 2000; ++i) {
            if (berlin.addingMonths(t, -1) != monthBack)
                ++*wrong;
            if (berlin.startOfDay(t) != dayStart)
                ++*wrong;
        }
    };
    int wrongFirst = 0;
    int wrongSecond = 0;
    std::thread first(work, utc(2024, 3, 31, 10), utc(2024, 2, 29, 11), utc(2024, 3, 30, 23),
                      &wrongFirst);
    std::thread second(work, utc(2023, 10, 29, 12), utc(2023, 9, 29, 11), utc(2023, 10, 28, 22),
                       &wrongSecond);
    first.join();
    second.join();
    EXPECT_EQ(wrongFirst, 0);
    EXPECT_EQ(wrongSecond, 0);
}

TEST(Calendar, CurrentFollowsTheTimeZoneOfTheProcess) {
    // A fresh process, so that the zone is read from TZ on first use.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv("TZ", "Asia/Tokyo", 1);
            const Calendar& current = Calendar::current();
            bool tokyo = current.zoneId() == "Asia/Tokyo" &&
                         current.startOfDay(utc(2024, 5, 15, 12)) == utc(2024, 5, 14, 15) &&
                         &Calendar::current() == &current;
            std::exit(tokyo ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace quorrin::Engine
