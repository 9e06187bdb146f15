// Dates and times as the window writes them, in the user's locale.
#pragma once

#include "platform/instant.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace quorrin::ui {

// The instant in local time, to the millisecond.
QDateTime localDateTime(platform::Instant instant);
platform::Instant instantOf(const QDateTime& dateTime);

// An abbreviated date without time: "Jun 3, 2024" in English (US), "3 Jun 2024" in English (UK).
QString abbreviatedDate(const QDateTime& dateTime, const QLocale& locale = QLocale());
// The full month name and the year: "June 2024".
QString monthAndYear(const QDateTime& dateTime, const QLocale& locale = QLocale());
// The time of day only, in the locale's short style: "3:41 PM".
QString timeOfDay(const QDateTime& dateTime, const QLocale& locale = QLocale());

}  // namespace quorrin::ui
