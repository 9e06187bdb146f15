// The find-older test: cutoff, month interval and custom day range, computed once per instant.
#include "engine/older_query.h"

#include <chrono>
#include <limits>

namespace quorrin::Engine {
namespace {

Instant currentInstant() {
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

}  // namespace

bool OlderMatcher::matches(const Entry& entry) const {
    std::optional<Instant> d = date(basis_, entry);
    return d && matchesDate(*d);
}

bool OlderMatcher::matchesDate(Instant date) const {
    if (!possible_)
        return false;
    switch (mode_) {
        case OlderMatch::older:
            return date <= end_;
        case OlderMatch::around:
        case OlderMatch::custom:
            return start_ <= date && date < end_;
    }
    return false;
}

OlderMatcher OlderQuery::prepare(Instant now, const Calendar& calendar) const {
    OlderMatcher matcher;
    matcher.mode_ = mode;
    matcher.basis_ = basis;

    // The cutoff is needed by every mode: a calendar that cannot compute it rules out a custom
    // range as well.
    if (months == std::numeric_limits<std::int64_t>::min())
        return matcher;
    std::optional<Instant> cutoff = calendar.addingMonths(now, -months);
    if (!cutoff)
        return matcher;

    switch (mode) {
        case OlderMatch::older:
            matcher.end_ = *cutoff;
            break;
        case OlderMatch::around: {
            std::optional<DateInterval> month = calendar.monthInterval(*cutoff);
            if (!month)
                return matcher;
            matcher.start_ = month->start;
            matcher.end_ = month->end;
            break;
        }
        case OlderMatch::custom: {
            std::optional<Instant> start = calendar.startOfDay(from);
            std::optional<Instant> endDay = calendar.startOfDay(through);
            if (!start || !endDay)
                return matcher;
            std::optional<Instant> end = calendar.addingDays(*endDay, 1);
            if (!end)
                return matcher;
            // Deliberately on the raw instants: on one day, a `through` earlier in the day than
            // `from` leaves the range empty.
            if (through < from)
                return matcher;
            matcher.start_ = *start;
            matcher.end_ = *end;
            break;
        }
    }
    matcher.possible_ = true;
    return matcher;
}

OlderMatcher OlderQuery::prepare() const {
    return prepare(currentInstant(), Calendar::current());
}

bool OlderQuery::matches(const Entry& entry, Instant now, const Calendar& calendar) const {
    // A missing date decides before any calendar work; the answer is the same either way.
    std::optional<Instant> d = date(basis, entry);
    return d && prepare(now, calendar).matchesDate(*d);
}

bool OlderQuery::matches(const Entry& entry) const {
    return matches(entry, currentInstant(), Calendar::current());
}

}  // namespace quorrin::Engine
