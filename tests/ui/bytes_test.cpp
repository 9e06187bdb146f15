// bytes(): decimal "file" style sizes, and the checked totals behind them.
#include "ui/bytes.h"

#include <limits>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

const QLocale english(QLocale::English, QLocale::UnitedStates);

TEST(Bytes, ZeroIsZeroKilobytesNeverEmpty) {
    EXPECT_EQ(bytes(0, english), "Zero KB");
}

TEST(Bytes, BytesBelowOneThousandAreCounted) {
    EXPECT_EQ(bytes(1, english), "1 byte");
    EXPECT_EQ(bytes(2, english), "2 bytes");
    EXPECT_EQ(bytes(999, english), "999 bytes");
}

TEST(Bytes, KilobytesHaveNoDecimals) {
    EXPECT_EQ(bytes(1000, english), "1 KB");
    EXPECT_EQ(bytes(1499, english), "1 KB");
    EXPECT_EQ(bytes(1500, english), "2 KB");
    EXPECT_EQ(bytes(2048, english), "2 KB");
    EXPECT_EQ(bytes(999'499, english), "999 KB");
}

TEST(Bytes, MegabytesHaveOneDecimalWithoutTrailingZero) {
    EXPECT_EQ(bytes(999'500, english), "1 MB");
    EXPECT_EQ(bytes(1'000'000, english), "1 MB");
    EXPECT_EQ(bytes(1'234'567, english), "1.2 MB");
    EXPECT_EQ(bytes(12'800'000, english), "12.8 MB");
    EXPECT_EQ(bytes(999'940'000, english), "999.9 MB");
}

TEST(Bytes, GigabytesAndAboveHaveTwoDecimalsWithoutTrailingZeros) {
    EXPECT_EQ(bytes(999'960'000, english), "1 GB");
    EXPECT_EQ(bytes(1'234'567'890, english), "1.23 GB");
    EXPECT_EQ(bytes(1'500'000'000, english), "1.5 GB");
    EXPECT_EQ(bytes(3'000'000'000, english), "3 GB");
    EXPECT_EQ(bytes(4'560'000'000'000, english), "4.56 TB");
    EXPECT_EQ(bytes(std::numeric_limits<std::int64_t>::max(), english), "9.22 EB");
}

TEST(Bytes, NegativeCountsCarryASign) {
    EXPECT_EQ(bytes(-1, english), "-1 byte");
    EXPECT_EQ(bytes(-1'234'567, english), "-1.2 MB");
    EXPECT_EQ(bytes(std::numeric_limits<std::int64_t>::min(), english), "-9.22 EB");
}

TEST(Bytes, DecimalsFollowTheLocale) {
    const QLocale german(QLocale::German, QLocale::Germany);
    EXPECT_EQ(bytes(1'234'567, german), "1,2 MB");
    EXPECT_EQ(bytes(1'234'567'890, german), "1,23 GB");
}

TEST(CheckedSum, AddsWithinRange) {
    EXPECT_EQ(checkedSum(2, 3), 5);
    EXPECT_EQ(checkedSum(std::numeric_limits<std::int64_t>::max() - 1, 1),
              std::numeric_limits<std::int64_t>::max());
}

TEST(CheckedSumDeathTest, OverflowIsAFaultNotAWrap) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(checkedSum(std::numeric_limits<std::int64_t>::max(), 1),
                 "size total does not fit");
}

}  // namespace
}  // namespace quorrin::ui
