// OlderQuery: the find-older test of one entry by one of its dates, and its precomputed form.
#pragma once

#include "engine/calendar.h"
#include "engine/entry.h"
#include "engine/file_date_basis.h"
#include "engine/older_match.h"

#include <cstdint>

namespace quorrin::Engine {

// A query fixed to one `now` and one calendar, with the cutoff and the range bounds computed once,
// for testing many entries against the same instant. Gives exactly the answers of
// OlderQuery::matches with that `now` and calendar.
class OlderMatcher {
public:
    bool matches(const Entry& entry) const;
    // The test applied to a date of the chosen basis.
    bool matchesDate(Instant date) const;

private:
    friend struct OlderQuery;

    OlderMatch mode_ = OlderMatch::older;
    FileDateBasis basis_ = FileDateBasis::created;
    // False when the calendar could not compute a bound or the custom range is reversed: nothing
    // matches then.
    bool possible_ = false;
    Instant start_{};  // around and custom: the first instant inside
    Instant end_{};  // older: the cutoff, itself inside; around and custom: the first instant after
};

// What the find-older controls ask for. Built whole by the interface from its own state.
struct OlderQuery {
    std::int64_t months = 0;  // the age for `older` and `around`
    OlderMatch mode = OlderMatch::older;
    FileDateBasis basis = FileDateBasis::created;
    Instant from{};     // custom: any time of the first day
    Instant through{};  // custom: any time of the last day

    // Whether the entry belongs in the result, tested at `now` in `calendar`:
    // 1. the date of `basis`; a file without a creation date never matches by creation date;
    // 2. the cutoff, `now` minus `months` calendar months, computed in every mode; when the
    //    calendar cannot compute it nothing matches;
    // 3. older: date ≤ cutoff. around: within the month holding the cutoff, its first instant
    //    included, the next month's first instant not. custom: within the local days of `from`
    //    through `through`, both whole; nothing when `through` is earlier than `from` as instants
    //    (not as days), or when a day bound cannot be computed.
    bool matches(const Entry& entry, Instant now, const Calendar& calendar) const;
    // The same at the current moment, read for each call, in the user's calendar.
    bool matches(const Entry& entry) const;

    // The query fixed to `now` and `calendar`, for testing many entries at one instant.
    OlderMatcher prepare(Instant now, const Calendar& calendar) const;
    // The query fixed to the current moment in the user's calendar.
    OlderMatcher prepare() const;
};

}  // namespace quorrin::Engine
