// The texts of the find-older controls: the age label, the preset labels and the hint.
#pragma once

#include "engine/calendar.h"
#include "engine/older_match.h"

#include <QLocale>
#include <QString>
#include <array>
#include <cstdint>

namespace quorrin::ui {

// The month counts of the preset buttons, in order.
inline constexpr std::array<int, 7> agePresets{1, 6, 12, 24, 36, 48, 60};

// The slider's value as a whole number of months, truncated toward zero.
std::int64_t wholeMonths(double months);

// "1 month", "6 months", "1 year", "1 year 1 months", "2 years", "5 years".
QString ageLabel(double months);
// "Older than 2 years" or "Created / modified 2 years ago"; empty for custom dates.
QString ageHeading(Engine::OlderMatch mode, double months);
// "1m", "6m", "1y", …, "5y".
QString presetLabel(int months);
// What the query will include, computed from `now` minus the months in `calendar`:
// "Includes files dated on or before Jun 3, 2024." or "Matches only the calendar month June 2024.";
// empty for custom dates or when the calendar cannot compute the cutoff.
QString olderHint(Engine::OlderMatch mode, double months, platform::Instant now,
                  const Engine::Calendar& calendar, const QLocale& locale = QLocale());

}  // namespace quorrin::ui
