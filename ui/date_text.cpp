// Writes dates and times in the user's locale.
#include "ui/date_text.h"

#include <QRegularExpression>
#include <chrono>

namespace quorrin::ui {
namespace {

// The locale's long date pattern without its weekday ("dddd, MMMM d, yyyy" → "MMMM d, yyyy").
QString longPatternWithoutWeekday(const QLocale& locale) {
    QString pattern = locale.dateFormat(QLocale::LongFormat);
    static const QRegularExpression weekday(QStringLiteral("d{4}[,.\\s]*|[,\\s]*d{4}"));
    pattern.remove(weekday);
    return pattern.trimmed();
}

}  // namespace

QDateTime localDateTime(platform::Instant instant) {
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(ms.count());
}

platform::Instant instantOf(const QDateTime& dateTime) {
    return platform::Instant(std::chrono::milliseconds(dateTime.toMSecsSinceEpoch()));
}

QString abbreviatedDate(const QDateTime& dateTime, const QLocale& locale) {
    QString pattern = longPatternWithoutWeekday(locale);
    pattern.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
    return locale.toString(dateTime.date(), pattern);
}

QString monthAndYear(const QDateTime& dateTime, const QLocale& locale) {
    QString pattern = longPatternWithoutWeekday(locale);
    // Drop the day with what separates it from the next field ("d, " in English, "d. " in German).
    static const QRegularExpression day(QStringLiteral("(?<![dMy])d{1,2}(?![dMy])[,.\\s]*"));
    pattern.remove(day);
    static const QRegularExpression trailing(QStringLiteral("[,.\\s]+$"));
    pattern.remove(trailing);
    return locale.toString(dateTime.date(), pattern.trimmed());
}

QString timeOfDay(const QDateTime& dateTime, const QLocale& locale) {
    return locale.toString(dateTime.time(), QLocale::ShortFormat);
}

}  // namespace quorrin::ui
