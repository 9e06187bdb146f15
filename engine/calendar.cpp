// Calendar: month and day arithmetic through ICU's Gregorian calendar, exact to the nanosecond.
#include "engine/calendar.h"

#include <cmath>
#include <mutex>
#include <stdexcept>

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace quorrin::Engine {

struct Calendar::State {
    std::mutex mutex;
    std::unique_ptr<icu::Calendar> calendar;
};

namespace {

constexpr std::int64_t nanosPerMilli = 1'000'000;

// An Instant spans fewer than 600 years, so any larger step leaves the range for every starting
// point; refusing it up front keeps ICU's own field arithmetic far from overflow.
constexpr std::int64_t maxStep = 1'000'000;

// An Instant as ICU's whole milliseconds plus the nanoseconds below them, 0 ≤ remainder < 1 ms.
// The milliseconds of any Instant (below 2^44) are exact in a double.
struct Millis {
    UDate whole;
    std::int64_t remainder;
};

Millis split(Instant t) {
    std::int64_t nanos = t.time_since_epoch().count();
    std::int64_t millis = nanos / nanosPerMilli;
    std::int64_t remainder = nanos % nanosPerMilli;
    if (remainder < 0) {
        remainder += nanosPerMilli;
        --millis;
    }
    return {static_cast<UDate>(millis), remainder};
}

// ICU's result plus the carried nanoseconds, or none outside the range of an Instant.
std::optional<Instant> join(UDate millis, std::int64_t remainder) {
    if (!std::isfinite(millis))
        return std::nullopt;
    UDate whole = std::floor(millis);
    constexpr double limit = static_cast<double>(INT64_MAX / nanosPerMilli);
    if (whole < -limit || whole > limit)
        return std::nullopt;
    std::int64_t nanos = static_cast<std::int64_t>(whole) * nanosPerMilli;
    if (__builtin_add_overflow(nanos, remainder, &nanos))
        return std::nullopt;
    return Instant(std::chrono::nanoseconds(nanos));
}

std::unique_ptr<icu::Calendar> makeCalendar(icu::TimeZone* zone) {
    UErrorCode status = U_ZERO_ERROR;
    auto calendar = std::make_unique<icu::GregorianCalendar>(zone, icu::Locale::getRoot(), status);
    if (U_FAILURE(status)) {
        throw std::runtime_error(std::string("ICU calendar unavailable: ") + u_errorName(status));
    }
    // Lenient, so that a month past December rolls into the next year. A wall time that occurs
    // twice when the clocks go back means its first occurrence, so a day whose midnight repeats
    // starts at the earlier one; a skipped wall time keeps ICU's default (the offset before the
    // change), so a day whose midnight is skipped starts at the moment of the change.
    calendar->setLenient(true);
    calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
    calendar->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
    return calendar;
}

// The first instant of the local day year/month/day (month 0-based; lenient, so 12 is January of
// the next year). Uses the extended year so that eras never enter.
UDate midnight(icu::Calendar& calendar, std::int32_t year, std::int32_t month, std::int32_t day,
               UErrorCode& status) {
    calendar.clear();
    calendar.set(UCAL_EXTENDED_YEAR, year);
    calendar.set(UCAL_MONTH, month);
    calendar.set(UCAL_DATE, day);
    return calendar.getTime(status);
}

}  // namespace

Calendar::Calendar(std::unique_ptr<State> state) : state_(std::move(state)) {}

Calendar::Calendar(std::string_view zoneId) : state_(std::make_unique<State>()) {
    icu::UnicodeString id = icu::UnicodeString::fromUTF8(
        icu::StringPiece(zoneId.data(), static_cast<std::int32_t>(zoneId.size())));
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
    if (!zone || *zone == icu::TimeZone::getUnknown()) {
        throw std::invalid_argument("unknown time zone: " + std::string(zoneId));
    }
    state_->calendar = makeCalendar(zone.release());
}

Calendar::~Calendar() = default;

const Calendar& Calendar::current() {
    static const Calendar calendar = [] {
        auto state = std::make_unique<State>();
        state->calendar = makeCalendar(icu::TimeZone::createDefault());
        return Calendar(std::move(state));
    }();
    return calendar;
}

std::string Calendar::zoneId() const {
    std::scoped_lock lock(state_->mutex);
    icu::UnicodeString id;
    state_->calendar->getTimeZone().getID(id);
    std::string text;
    id.toUTF8String(text);
    return text;
}

namespace {

// `amount` steps of `field` (months or days) after `t`, by the rules of `calendar`.
std::optional<Instant> adding(std::mutex& mutex, icu::Calendar& calendar, Instant t,
                              std::int64_t amount, UCalendarDateFields field) {
    if (amount < -maxStep || amount > maxStep)
        return std::nullopt;
    Millis from = split(t);
    std::scoped_lock lock(mutex);
    UErrorCode status = U_ZERO_ERROR;
    calendar.setTime(from.whole, status);
    calendar.add(field, static_cast<std::int32_t>(amount), status);
    UDate result = calendar.getTime(status);
    if (U_FAILURE(status))
        return std::nullopt;
    return join(result, from.remainder);
}

}  // namespace

std::optional<Instant> Calendar::addingMonths(Instant t, std::int64_t months) const {
    return adding(state_->mutex, *state_->calendar, t, months, UCAL_MONTH);
}

std::optional<Instant> Calendar::addingDays(Instant t, std::int64_t days) const {
    return adding(state_->mutex, *state_->calendar, t, days, UCAL_DATE);
}

std::optional<Instant> Calendar::startOfDay(Instant t) const {
    Millis from = split(t);
    std::scoped_lock lock(state_->mutex);
    icu::Calendar& calendar = *state_->calendar;
    UErrorCode status = U_ZERO_ERROR;
    calendar.setTime(from.whole, status);
    std::int32_t year = calendar.get(UCAL_EXTENDED_YEAR, status);
    std::int32_t month = calendar.get(UCAL_MONTH, status);
    std::int32_t day = calendar.get(UCAL_DATE, status);
    if (U_FAILURE(status))
        return std::nullopt;
    UDate start = midnight(calendar, year, month, day, status);
    if (U_FAILURE(status))
        return std::nullopt;
    return join(start, 0);
}

std::optional<DateInterval> Calendar::monthInterval(Instant t) const {
    Millis from = split(t);
    std::scoped_lock lock(state_->mutex);
    icu::Calendar& calendar = *state_->calendar;
    UErrorCode status = U_ZERO_ERROR;
    calendar.setTime(from.whole, status);
    std::int32_t year = calendar.get(UCAL_EXTENDED_YEAR, status);
    std::int32_t month = calendar.get(UCAL_MONTH, status);
    if (U_FAILURE(status))
        return std::nullopt;
    UDate start = midnight(calendar, year, month, 1, status);
    if (U_FAILURE(status))
        return std::nullopt;
    UDate end = midnight(calendar, year, month + 1, 1, status);
    if (U_FAILURE(status))
        return std::nullopt;
    std::optional<Instant> first = join(start, 0);
    std::optional<Instant> next = join(end, 0);
    if (!first || !next)
        return std::nullopt;
    return DateInterval{*first, *next};
}

}  // namespace quorrin::Engine
