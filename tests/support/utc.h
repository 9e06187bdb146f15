// utc(): an instant written as a UTC date and time, for tests that fix their clock or zone.
#pragma once

#include "platform/instant.h"

#include <chrono>

namespace quorrin::testing {

// A UTC instant; local times in the tests are written out with their known offset.
inline platform::Instant utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
                             int second = 0) {
    using namespace std::chrono;
    return platform::Instant(
        sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)) +
        hours(hour) + minutes(minute) + seconds(second));
}

}  // namespace quorrin::testing
