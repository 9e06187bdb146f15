// Calendar: Gregorian month and day arithmetic in one time zone, for the date queries.
#pragma once

#include "platform/instant.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quorrin::Engine {

using platform::Instant;

// A half-open span of time: start ≤ t < end.
struct DateInterval {
    Instant start;
    Instant end;
};

// The Gregorian calendar in one time zone, backed by ICU. Every operation keeps the nanoseconds of
// its argument (ICU itself counts whole milliseconds) and answers none where the result cannot be
// computed or lies outside the range an Instant can hold.
//
// One ICU calendar is created per Calendar object and reused by every call. ICU calendars are
// mutated by each computation, so the calls take a mutex: a computation is a few microseconds, the
// lock is uncontended on the interface thread that runs the queries, and unlike a clone per call or
// per thread it costs no allocation. A Calendar may therefore be shared freely between threads.
class Calendar {
public:
    // The calendar of the zone with this IANA id (e.g. "Europe/Berlin"). An id that names no zone
    // is a programming error and throws std::invalid_argument.
    explicit Calendar(std::string_view zoneId);
    ~Calendar();
    Calendar(const Calendar&) = delete;
    Calendar& operator=(const Calendar&) = delete;

    // The user's calendar: the time zone ICU finds for the process (TZ, else /etc/localtime), read
    // once on first use.
    static const Calendar& current();

    // The IANA id of the zone, e.g. "Europe/Berlin".
    std::string zoneId() const;

    // `months` calendar months after `t` (before it when negative) at the same time of day; a day
    // that the target month lacks is clamped to its last day (31 March minus one month is the last
    // day of February).
    std::optional<Instant> addingMonths(Instant t, std::int64_t months) const;
    // `days` calendar days after `t` at the same local time of day, so across a daylight-saving
    // change one day may be 23 or 25 hours.
    std::optional<Instant> addingDays(Instant t, std::int64_t days) const;
    // The first instant of the local day that contains `t`.
    std::optional<Instant> startOfDay(Instant t) const;
    // The local calendar month that contains `t`: the start of its first day up to the start of the
    // first day of the next month.
    std::optional<DateInterval> monthInterval(Instant t) const;

private:
    struct State;
    explicit Calendar(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace quorrin::Engine
