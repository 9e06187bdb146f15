// Stored timestamps: ISO 8601 in UTC, to the millisecond or the nanosecond, read strictly.
#include "store/timestamp.h"

#include <gtest/gtest.h>

namespace quorrin::store {
namespace {

using platform::Instant;
using platform::instantFrom;

TEST(Timestamp, FormatsUtcWithMillisecondsRoundedDown) {
    EXPECT_EQ(formatTimestamp(instantFrom(1'795'254'525, 123'999'999)), "2026-11-21T09:48:45.123Z");
    EXPECT_EQ(formatTimestamp(instantFrom(0, 0)), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(formatTimestamp(instantFrom(-1, 500'000'000)), "1969-12-31T23:59:59.500Z");
}

TEST(Timestamp, TheExactFormKeepsEveryNanosecond) {
    EXPECT_EQ(formatExactTimestamp(instantFrom(1'795'254'525, 123'456'789)),
              "2026-11-21T09:48:45.123456789Z");
    EXPECT_EQ(formatExactTimestamp(instantFrom(0, 1)), "1970-01-01T00:00:00.000000001Z");
    EXPECT_EQ(formatExactTimestamp(instantFrom(-1, 999'999'999)), "1969-12-31T23:59:59.999999999Z");
    for (const Instant instant : {instantFrom(1'795'254'525, 123'456'789), instantFrom(-1, 1),
                                  instantFrom(1'709'251'199, 999'999'999)})
        EXPECT_EQ(parseTimestamp(formatExactTimestamp(instant)), instant);
}

TEST(Timestamp, ReadsWhatItWrites) {
    auto read = parseTimestamp("2026-11-21T09:48:45.123Z");
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, instantFrom(1'795'254'525, 123'000'000));
    EXPECT_EQ(parseTimestamp("1969-12-31T23:59:59.500Z"), instantFrom(-1, 500'000'000));
    EXPECT_EQ(parseTimestamp("2024-02-29T23:59:59.999Z"), instantFrom(1'709'251'199, 999'000'000));
}

TEST(Timestamp, AcceptsAMissingOrLongerFraction) {
    EXPECT_EQ(parseTimestamp("2026-11-21T09:48:45Z"), instantFrom(1'795'254'525, 0));
    EXPECT_EQ(parseTimestamp("2026-11-21T09:48:45.5Z"), instantFrom(1'795'254'525, 500'000'000));
    EXPECT_EQ(parseTimestamp("2026-11-21T09:48:45.123456789Z"),
              instantFrom(1'795'254'525, 123'456'789));
}

TEST(Timestamp, RejectsEverythingElse) {
    for (const char* text :
         {"", "2026-11-21", "2026-11-21T09:48:45.123", "2026-11-21 09:48:45Z",
          "2026-11-21T09:48:45.Z", "2026-11-21T09:48:45.1234567890Z", "2026-11-21T09:48:45+01:00",
          "2026-11-21T09:48:45.123Zx", "2026-02-30T00:00:00Z", "2026-13-01T00:00:00Z",
          "2026-11-21T24:00:00Z", "2026-11-21T09:60:00Z", "2026-11-21T09:48:60Z",
          "+026-11-21T09:48:45Z", "9999-12-31T00:00:00Z", "0001-01-01T00:00:00Z", "yesterday"}) {
        EXPECT_FALSE(parseTimestamp(text)) << text;
    }
}

}  // namespace
}  // namespace quorrin::store
