// The find-older query: older than, during that month and custom days, at fixed instants in fixed
// time zones, exact to the nanosecond, and its precomputed form.
#include "engine/older_query.h"

#include "platform/platform.h"
#include "tests/support/temp_home.h"
#include "tests/support/utc.h"

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace quorrin::Engine {
namespace {

using std::chrono::nanoseconds;
using std::chrono::seconds;

// Local times in the tests are written out with their known offset
// (Berlin: CET +1, CEST +2; New York: EST -5, EDT -4).
using quorrin::testing::utc;

const Instant earliest = Instant(nanoseconds::min());
const Instant latest = Instant(nanoseconds::max());

Entry modifiedAt(Instant modified) {
    return Entry{.url = "/home/u/Documents/a.txt",
                 .size = 1,
                 .modified = modified,
                 .lastUsed = modified,
                 .category = "04 Documents",
                 .root = "/home/u/Documents"};
}

Entry createdAt(Instant created) {
    Entry entry = modifiedAt(utc(2000, 1, 1));
    entry.created = created;
    return entry;
}

OlderQuery older(std::int64_t months, FileDateBasis basis = FileDateBasis::modified) {
    return OlderQuery{.months = months, .mode = OlderMatch::older, .basis = basis};
}

OlderQuery around(std::int64_t months, FileDateBasis basis = FileDateBasis::modified) {
    return OlderQuery{.months = months, .mode = OlderMatch::around, .basis = basis};
}

OlderQuery custom(Instant from, Instant through, FileDateBasis basis = FileDateBasis::modified,
                  std::int64_t months = 24) {
    return OlderQuery{.months = months,
                      .mode = OlderMatch::custom,
                      .basis = basis,
                      .from = from,
                      .through = through};
}

class OlderQueryTest : public ::testing::Test {
protected:
    Calendar berlin{"Europe/Berlin"};
    Calendar newYork{"America/New_York"};
};

TEST_F(OlderQueryTest, CreatedBasisWithoutACreationDateNeverMatches) {
    Instant now = utc(2024, 5, 15, 10);  // 15 May 12:00 CEST
    Entry entry = modifiedAt(utc(2024, 3, 10, 12));
    std::vector<OlderQuery> queries{older(1), around(2),
                                    custom(utc(2024, 3, 1, 12), utc(2024, 3, 31, 10))};
    for (OlderQuery query : queries) {
        SCOPED_TRACE(std::string(rawValue(query.mode)));
        // By its modification date the file belongs in every result ...
        EXPECT_TRUE(query.matches(entry, now, berlin));
        // ... but it has no creation date, so it is left out by creation date.
        query.basis = FileDateBasis::created;
        EXPECT_FALSE(query.matches(entry, now, berlin));
        EXPECT_FALSE(query.prepare(now, berlin).matches(entry));
        // Once it has one, the creation date decides.
        Entry dated = entry;
        dated.created = entry.modified;
        EXPECT_TRUE(query.matches(dated, now, berlin));
    }
}

TEST_F(OlderQueryTest, OlderByZeroMonthsMatchesEveryFileUpToNow) {
    Instant now = utc(2024, 5, 15, 10) + nanoseconds(123'456'789);
    OlderQuery query = older(0);
    EXPECT_TRUE(query.matches(modifiedAt(now), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(now - nanoseconds(1)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(utc(1990, 1, 1)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(now + nanoseconds(1)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2030, 1, 1)), now, berlin));
}

TEST_F(OlderQueryTest, OlderByOneMonthOn31MarchCutsOffOnTheLastDayOfFebruaryInALeapYear) {
    // 31 March 2024 12:00 CEST → cutoff 29 February 2024 12:00 CET.
    Instant now = utc(2024, 3, 31, 10);
    Instant cutoff = utc(2024, 2, 29, 11);
    OlderQuery query = older(1);
    EXPECT_TRUE(query.matches(modifiedAt(cutoff), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(cutoff + seconds(1)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(cutoff - seconds(1)), now, berlin));
    // By creation date alike.
    EXPECT_TRUE(older(1, FileDateBasis::created).matches(createdAt(cutoff), now, berlin));
    EXPECT_FALSE(
        older(1, FileDateBasis::created).matches(createdAt(cutoff + seconds(1)), now, berlin));
}

TEST_F(OlderQueryTest, OlderByOneMonthOn31MarchCutsOffOnTheLastDayOfFebruaryInACommonYear) {
    // 31 March 2023 12:00 CEST → cutoff 28 February 2023 12:00 CET.
    Instant now = utc(2023, 3, 31, 10);
    Instant cutoff = utc(2023, 2, 28, 11);
    OlderQuery query = older(1);
    EXPECT_TRUE(query.matches(modifiedAt(cutoff), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(cutoff + seconds(1)), now, berlin));
    // In New York: 31 March 2023 12:00 EDT → 28 February 2023 12:00 EST.
    EXPECT_TRUE(query.matches(modifiedAt(utc(2023, 2, 28, 17)), utc(2023, 3, 31, 16), newYork));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2023, 2, 28, 17) + seconds(1)), utc(2023, 3, 31, 16),
                               newYork));
}

TEST_F(OlderQueryTest, CutoffIsExactToTheNanosecond) {
    OlderQuery query = older(1);
    // 15 May 2024 12:00:00.123456789 CEST → 15 April 2024 12:00:00.123456789 CEST.
    Instant now = utc(2024, 5, 15, 10) + nanoseconds(123'456'789);
    Instant cutoff = utc(2024, 4, 15, 10) + nanoseconds(123'456'789);
    EXPECT_TRUE(query.matches(modifiedAt(cutoff), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(cutoff - nanoseconds(1)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(cutoff + nanoseconds(1)), now, berlin));
    // Just below a whole millisecond.
    now = utc(2024, 5, 15, 10) + nanoseconds(999'999);
    cutoff = utc(2024, 4, 15, 10) + nanoseconds(999'999);
    EXPECT_TRUE(query.matches(modifiedAt(cutoff), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(cutoff + nanoseconds(1)), now, berlin));
    // One nanosecond before 1970 (1 January 1970 00:59:59.999999999 CET) → 1 December 1969 at
    // the same time.
    now = Instant(nanoseconds(-1));
    cutoff = utc(1969, 12, 1) - nanoseconds(1);
    EXPECT_TRUE(query.matches(modifiedAt(cutoff), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(cutoff + nanoseconds(1)), now, berlin));
}

TEST_F(OlderQueryTest, AroundTwoMonthsInMidMayIsMarch) {
    OlderQuery query = around(2);
    // Berlin: 15 May 2024 12:00 CEST; March runs from 1 March 00:00 CET to 1 April 00:00 CEST.
    Instant now = utc(2024, 5, 15, 10);
    Instant start = utc(2024, 2, 29, 23);
    Instant end = utc(2024, 3, 31, 22);
    EXPECT_TRUE(query.matches(modifiedAt(start), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(start - nanoseconds(1)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 3, 15, 12)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(end - nanoseconds(1)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(end), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 5, 15, 10)), now, berlin));
    // New York: 15 May 2024 12:00 EDT; March from 1 March 00:00 EST to 1 April 00:00 EDT.
    now = utc(2024, 5, 15, 16);
    start = utc(2024, 3, 1, 5);
    end = utc(2024, 4, 1, 4);
    EXPECT_TRUE(query.matches(modifiedAt(start), now, newYork));
    EXPECT_FALSE(query.matches(modifiedAt(start - nanoseconds(1)), now, newYork));
    EXPECT_TRUE(query.matches(modifiedAt(end - nanoseconds(1)), now, newYork));
    EXPECT_FALSE(query.matches(modifiedAt(end), now, newYork));
}

TEST_F(OlderQueryTest, AroundOctoberRunsBetweenLocalMidnightsAcrossTheEndOfSummerTime) {
    // 15 December 2024 12:00 CET, two months back: October, 1 October 00:00 CEST to 1 November
    // 00:00 CET.
    Instant now = utc(2024, 12, 15, 11);
    OlderQuery query = around(2);
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 9, 30, 22)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 9, 30, 22) - nanoseconds(1)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 10, 31, 23) - nanoseconds(1)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 10, 31, 23)), now, berlin));
    // The same instants in New York's calendar: October there starts at 04:00 UTC.
    now = utc(2024, 12, 15, 17);
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 9, 30, 22)), now, newYork));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 10, 1, 4)), now, newYork));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 10, 31, 23)), now, newYork));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 11, 1, 4)), now, newYork));
}

TEST_F(OlderQueryTest, AroundZeroMonthsIsTheCurrentMonth) {
    // 15 May 2024 12:00 CEST: May runs from 1 May 00:00 CEST to 1 June 00:00 CEST.
    Instant now = utc(2024, 5, 15, 10);
    OlderQuery query = around(0);
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 4, 30, 22)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 4, 30, 22) - nanoseconds(1)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(now), now, berlin));
    // Later in the month than now still counts: the whole month is the interval.
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 5, 31, 21, 59, 59)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 5, 31, 22)), now, berlin));
}

TEST_F(OlderQueryTest, AroundTakesTheMonthOfTheClampedCutoff) {
    // 31 March 2024 minus one month is 29 February: the month is February.
    Instant now = utc(2024, 3, 31, 10);
    OlderQuery query = around(1);
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 1, 31, 23)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 2, 29, 22, 59, 59)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 2, 29, 23)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 1, 31, 22, 59, 59)), now, berlin));
}

TEST_F(OlderQueryTest, CustomOnOneDayWithThroughLaterMatchesTheWholeDay) {
    // 10 June 2024 from 09:00 through 17:00 CEST.
    Instant now = utc(2024, 7, 1, 10);
    OlderQuery query = custom(utc(2024, 6, 10, 7), utc(2024, 6, 10, 15));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 6, 9, 22)), now, berlin));           // 00:00
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 6, 10, 6)), now, berlin));           // 08:00
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 6, 10, 18)), now, berlin));          // 20:00
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 6, 10, 21, 59, 59)), now, berlin));  // 23:59:59
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 6, 10, 22) - nanoseconds(1)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 6, 10, 22)), now, berlin));  // 00:00 next day
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 6, 9, 22) - nanoseconds(1)), now, berlin));
    // By creation date alike.
    OlderQuery byCreation =
        custom(utc(2024, 6, 10, 7), utc(2024, 6, 10, 15), FileDateBasis::created);
    EXPECT_TRUE(byCreation.matches(createdAt(utc(2024, 6, 10, 21, 59, 59)), now, berlin));
    EXPECT_FALSE(byCreation.matches(createdAt(utc(2024, 6, 10, 22)), now, berlin));
}

TEST_F(OlderQueryTest, CustomWithThroughOneMinuteEarlierOnTheSameDayMatchesNothing) {
    Instant now = utc(2024, 7, 1, 10);
    Instant from = utc(2024, 6, 10, 10);  // 12:00 CEST
    OlderQuery query = custom(from, from - std::chrono::minutes(1));
    for (Instant d :
         {utc(2024, 6, 9, 22), utc(2024, 6, 10, 9, 59, 30), from, utc(2024, 6, 10, 21, 59, 59)}) {
        EXPECT_FALSE(query.matches(modifiedAt(d), now, berlin));
        // With `through` equal to `from` the same files do match.
        EXPECT_TRUE(custom(from, from).matches(modifiedAt(d), now, berlin));
    }
}

TEST_F(OlderQueryTest, CustomWithThroughOnAnEarlierDayMatchesNothing) {
    Instant now = utc(2024, 7, 1, 10);
    OlderQuery query = custom(utc(2024, 6, 10, 10), utc(2024, 6, 5, 10));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 6, 7, 10)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 6, 10, 10)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 6, 5, 10)), now, berlin));
}

TEST_F(OlderQueryTest, CustomOverADaylightSavingChangeIncludesTheWholeDay) {
    Instant now = utc(2025, 1, 1);
    // 31 March 2024 in Berlin is 23 hours long: 30 March 23:00 to 31 March 22:00 UTC.
    OlderQuery spring = custom(utc(2024, 3, 31, 10), utc(2024, 3, 31, 10));
    EXPECT_TRUE(spring.matches(modifiedAt(utc(2024, 3, 30, 23)), now, berlin));
    EXPECT_TRUE(spring.matches(modifiedAt(utc(2024, 3, 31, 0, 30)), now, berlin));   // 01:30 CET
    EXPECT_TRUE(spring.matches(modifiedAt(utc(2024, 3, 31, 21, 30)), now, berlin));  // 23:30 CEST
    EXPECT_FALSE(spring.matches(modifiedAt(utc(2024, 3, 31, 22)), now, berlin));
    EXPECT_FALSE(spring.matches(modifiedAt(utc(2024, 3, 30, 23) - nanoseconds(1)), now, berlin));
    // 27 October 2024 is 25 hours long: 26 October 22:00 to 27 October 23:00 UTC, and both
    // 02:30 of the repeated hour belong to it.
    OlderQuery autumn = custom(utc(2024, 10, 27, 11), utc(2024, 10, 27, 11));
    EXPECT_TRUE(autumn.matches(modifiedAt(utc(2024, 10, 26, 22)), now, berlin));
    EXPECT_TRUE(autumn.matches(modifiedAt(utc(2024, 10, 27, 0, 30)), now, berlin));
    EXPECT_TRUE(autumn.matches(modifiedAt(utc(2024, 10, 27, 1, 30)), now, berlin));
    EXPECT_TRUE(autumn.matches(modifiedAt(utc(2024, 10, 27, 22, 30)), now, berlin));  // 23:30 CET
    EXPECT_FALSE(autumn.matches(modifiedAt(utc(2024, 10, 27, 23)), now, berlin));
    EXPECT_FALSE(autumn.matches(modifiedAt(utc(2024, 10, 26, 22) - nanoseconds(1)), now, berlin));
    // New York, 10 March 2024 (23 hours) and 3 November 2024 (25 hours).
    OlderQuery newYorkSpring = custom(utc(2024, 3, 10, 16), utc(2024, 3, 10, 16));
    EXPECT_TRUE(newYorkSpring.matches(modifiedAt(utc(2024, 3, 10, 5)), now, newYork));
    EXPECT_TRUE(newYorkSpring.matches(modifiedAt(utc(2024, 3, 11, 3, 59, 59)), now, newYork));
    EXPECT_FALSE(newYorkSpring.matches(modifiedAt(utc(2024, 3, 11, 4)), now, newYork));
    OlderQuery newYorkAutumn = custom(utc(2024, 11, 3, 17), utc(2024, 11, 3, 17));
    EXPECT_TRUE(newYorkAutumn.matches(modifiedAt(utc(2024, 11, 3, 4)), now, newYork));
    EXPECT_TRUE(newYorkAutumn.matches(modifiedAt(utc(2024, 11, 4, 4, 59, 59)), now, newYork));
    EXPECT_FALSE(newYorkAutumn.matches(modifiedAt(utc(2024, 11, 4, 5)), now, newYork));
}

TEST_F(OlderQueryTest, CustomOverSeveralDaysIncludesTheFirstAndLastWhole) {
    // From 30 March 2024 20:00 CET through 1 April 06:00 CEST.
    Instant now = utc(2025, 1, 1);
    OlderQuery query = custom(utc(2024, 3, 30, 19), utc(2024, 4, 1, 4));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 3, 29, 23)), now, berlin));  // 30 March 00:00
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 3, 29, 23) - nanoseconds(1)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 3, 31, 12)), now, berlin));
    EXPECT_TRUE(query.matches(modifiedAt(utc(2024, 4, 1, 21, 59, 59)), now, berlin));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2024, 4, 1, 22)), now, berlin));  // 2 April 00:00
}

TEST_F(OlderQueryTest, ACutoffTheCalendarCannotComputeMatchesNothingInEveryMode) {
    Instant now = utc(2024, 5, 15, 10);
    Entry entry = modifiedAt(utc(2024, 3, 10, 12));
    OlderQuery range = custom(utc(2024, 3, 1, 12), utc(2024, 3, 31, 10));
    ASSERT_TRUE(range.matches(entry, now, berlin));
    constexpr std::int64_t maximum = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t minimum = std::numeric_limits<std::int64_t>::min();
    for (std::int64_t months : {maximum, minimum, -maximum, std::int64_t{5'000'000}}) {
        SCOPED_TRACE(months);
        EXPECT_FALSE(older(months).matches(entry, now, berlin));
        EXPECT_FALSE(around(months).matches(entry, now, berlin));
        // The custom range does not use the cutoff, but it is computed there too.
        OlderQuery query = range;
        query.months = months;
        EXPECT_FALSE(query.matches(entry, now, berlin));
    }
    // A cutoff past the last representable instant.
    OlderQuery ahead = range;
    ahead.months = -1;
    EXPECT_FALSE(ahead.matches(entry, latest, berlin));
    ahead.months = 0;
    EXPECT_TRUE(ahead.matches(entry, latest, berlin));
}

TEST_F(OlderQueryTest, CustomDayBoundsTheCalendarCannotComputeMatchNothing) {
    Instant now = utc(2024, 5, 15, 10);
    Entry entry = modifiedAt(utc(2024, 3, 10, 12));
    // The day after the last representable instant.
    EXPECT_FALSE(custom(utc(2024, 3, 1), latest).matches(entry, now, berlin));
    // The start of the day of the first representable instant.
    EXPECT_FALSE(custom(earliest, utc(2024, 3, 31)).matches(entry, now, berlin));
    EXPECT_TRUE(custom(utc(2024, 3, 1), utc(2024, 3, 31)).matches(entry, now, berlin));
}

TEST_F(OlderQueryTest, PreparedMatcherGivesTheSameAnswers) {
    Instant now = utc(2024, 3, 31, 10) + nanoseconds(123'456'789);
    std::vector<Entry> entries;
    for (Instant t :
         {utc(2024, 2, 29, 11), utc(2024, 2, 29, 11) + nanoseconds(123'456'789),
          utc(2024, 2, 29, 11) + nanoseconds(123'456'790), utc(2024, 1, 31, 23),
          utc(2024, 1, 31, 23) - nanoseconds(1), utc(2023, 12, 1), utc(2024, 3, 31, 9),
          utc(2024, 3, 30, 23), utc(2024, 3, 31, 22), utc(2020, 1, 1), now, now + nanoseconds(1)}) {
        entries.push_back(modifiedAt(t));
        entries.push_back(createdAt(t));
    }
    constexpr std::int64_t maximum = std::numeric_limits<std::int64_t>::max();
    int matched = 0;
    int unmatched = 0;
    for (OlderMatch mode : allOlderMatches) {
        for (FileDateBasis basis : allFileDateBases) {
            for (std::int64_t months : {std::int64_t{0}, std::int64_t{1}, std::int64_t{2},
                                        std::int64_t{-1}, std::int64_t{13}, maximum}) {
                for (auto [from, through] :
                     {std::pair{utc(2024, 3, 30, 20), utc(2024, 3, 31, 9)},
                      std::pair{utc(2024, 3, 31, 9), utc(2024, 3, 31, 8, 59)},
                      std::pair{utc(2024, 1, 1), utc(2024, 2, 29, 11)}}) {
                    OlderQuery query{.months = months,
                                     .mode = mode,
                                     .basis = basis,
                                     .from = from,
                                     .through = through};
                    OlderMatcher matcher = query.prepare(now, berlin);
                    for (const Entry& entry : entries) {
                        bool expected = query.matches(entry, now, berlin);
                        EXPECT_EQ(matcher.matches(entry), expected)
                            << rawValue(mode) << " " << rawValue(basis) << " " << months;
                        ++(expected ? matched : unmatched);
                    }
                }
            }
        }
    }
    // Both answers occur, so the comparison covers both.
    EXPECT_GT(matched, 100);
    EXPECT_GT(unmatched, 100);
}

TEST_F(OlderQueryTest, DefaultsUseTheCurrentMomentAndTheUserCalendar) {
    OlderQuery query = older(0);
    EXPECT_TRUE(query.matches(modifiedAt(utc(2000, 1, 1))));
    EXPECT_FALSE(query.matches(modifiedAt(utc(2250, 1, 1))));
    EXPECT_TRUE(query.prepare().matches(modifiedAt(utc(2000, 1, 1))));
    EXPECT_FALSE(query.prepare().matches(modifiedAt(utc(2250, 1, 1))));
    EXPECT_FALSE(older(0, FileDateBasis::created).matches(modifiedAt(utc(2000, 1, 1))));
    EXPECT_TRUE(older(0, FileDateBasis::created).matches(createdAt(utc(2000, 1, 1))));
}

// Files on disk, their modification dates set to the nanosecond and read back as a scan would.
TEST_F(OlderQueryTest, RealFilesMatchByTheirRecordedModificationDates) {
    quorrin::testing::TempHome home;
    // 15 May 2024 12:00:00.123456789 CEST → cutoff 15 April 2024 12:00:00.123456789 CEST.
    Instant now = utc(2024, 5, 15, 10) + nanoseconds(123'456'789);
    std::int64_t cutoffSeconds =
        std::chrono::duration_cast<seconds>(utc(2024, 4, 15, 10).time_since_epoch()).count();
    struct Case {
        const char* name;
        std::int64_t seconds;
        std::uint32_t nanoseconds;
        bool older;
    };
    const Case cases[] = {
        {"Documents/at cutoff.pdf", cutoffSeconds, 123'456'789, true},
        {"Documents/just after.pdf", cutoffSeconds, 123'456'790, false},
        {"Documents/a second before.pdf", cutoffSeconds - 1, 123'456'789, true},
        {"Documents/Über nächste Woche.pdf", cutoffSeconds + 7 * 86400, 0, false}};
    OlderMatcher matcher = older(1).prepare(now, berlin);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string path = home.writeFile(c.name, "content");
        quorrin::testing::setModified(path, c.seconds, c.nanoseconds);
        auto info = platform::system().stat(path, false);
        ASSERT_TRUE(info.ok());
        Entry entry{.url = path,
                    .size = info->size,
                    .modified = info->modified,
                    .lastUsed = info->modified,
                    .created = info->created,
                    .category = "04 Documents",
                    .root = home.path("Documents")};
        EXPECT_EQ(older(1).matches(entry, now, berlin), c.older);
        EXPECT_EQ(matcher.matches(entry), c.older);
    }
}

}  // namespace
}  // namespace quorrin::Engine
