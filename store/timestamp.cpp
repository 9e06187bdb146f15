// Formatting and reading ISO 8601 UTC timestamps, to the millisecond or to the nanosecond.
#include "store/timestamp.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace quorrin::store {
namespace {

using namespace std::chrono;

// Reads exactly `count` decimal digits at `at`, advancing it.
std::optional<int> digits(std::string_view text, std::size_t& at, std::size_t count) {
    if (at + count > text.size())
        return std::nullopt;
    int value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        char c = text[at + i];
        if (c < '0' || c > '9')
            return std::nullopt;
        value = value * 10 + (c - '0');
    }
    at += count;
    return value;
}

bool literal(std::string_view text, std::size_t& at, char expected) {
    if (at >= text.size() || text[at] != expected)
        return false;
    ++at;
    return true;
}

}  // namespace

namespace {

// The date and time of `instant` at the precision of `Duration`, with `fractionDigits` digits.
template <typename Duration>
std::string format(platform::Instant instant, int fractionDigits) {
    const auto rounded = floor<Duration>(instant);
    const auto day = floor<days>(rounded);
    const year_month_day date{day};
    const hh_mm_ss time{rounded - day};
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%0*lldZ", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), int(time.hours().count()),
                  int(time.minutes().count()), int(time.seconds().count()), fractionDigits,
                  static_cast<long long>(time.subseconds().count()));
    return text;
}

}  // namespace

std::string formatTimestamp(platform::Instant instant) {
    return format<milliseconds>(instant, 3);
}

std::string formatExactTimestamp(platform::Instant instant) {
    return format<nanoseconds>(instant, 9);
}

std::optional<platform::Instant> parseTimestamp(std::string_view text) {
    std::size_t at = 0;
    auto yearValue = digits(text, at, 4);
    if (!yearValue || !literal(text, at, '-'))
        return std::nullopt;
    auto monthValue = digits(text, at, 2);
    if (!monthValue || !literal(text, at, '-'))
        return std::nullopt;
    auto dayValue = digits(text, at, 2);
    if (!dayValue || !literal(text, at, 'T'))
        return std::nullopt;
    auto hourValue = digits(text, at, 2);
    if (!hourValue || !literal(text, at, ':'))
        return std::nullopt;
    auto minuteValue = digits(text, at, 2);
    if (!minuteValue || !literal(text, at, ':'))
        return std::nullopt;
    auto secondValue = digits(text, at, 2);
    if (!secondValue)
        return std::nullopt;
    std::int64_t nanos = 0;
    if (literal(text, at, '.')) {
        std::size_t count = 0;
        while (at < text.size() && text[at] >= '0' && text[at] <= '9' && count < 9) {
            nanos = nanos * 10 + (text[at] - '0');
            ++at;
            ++count;
        }
        if (count == 0)
            return std::nullopt;
        for (; count < 9; ++count)
            nanos *= 10;
    }
    if (!literal(text, at, 'Z') || at != text.size())
        return std::nullopt;

    const year_month_day date{year{*yearValue}, month{unsigned(*monthValue)},
                              day{unsigned(*dayValue)}};
    if (!date.ok() || *hourValue > 23 || *minuteValue > 59 || *secondValue > 59)
        return std::nullopt;
    const std::int64_t seconds = std::int64_t{sys_days(date).time_since_epoch().count()} * 86400 +
                                 *hourValue * 3600 + *minuteValue * 60 + *secondValue;
    // Instants count nanoseconds in 64 bits: about the years 1678 to 2262.
    constexpr std::int64_t limit = std::numeric_limits<std::int64_t>::max() / 1'000'000'000 - 1;
    if (seconds > limit || seconds < -limit)
        return std::nullopt;
    return platform::Instant(nanoseconds(seconds * 1'000'000'000 + nanos));
}

}  // namespace quorrin::store
