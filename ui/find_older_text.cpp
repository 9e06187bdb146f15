// Computes the age label, the preset labels and the hint of the find-older controls.
#include "ui/find_older_text.h"

#include "ui/date_text.h"

#include <cmath>
#include <limits>

namespace quorrin::ui {

std::int64_t wholeMonths(double months) {
    if (!std::isfinite(months))
        return 0;
    const double truncated = std::trunc(months);
    if (truncated >= double(std::numeric_limits<std::int64_t>::max()))
        return std::numeric_limits<std::int64_t>::max();
    if (truncated <= double(std::numeric_limits<std::int64_t>::min()))
        return std::numeric_limits<std::int64_t>::min();
    return std::int64_t(truncated);
}

QString ageLabel(double months) {
    const std::int64_t m = wholeMonths(months);
    if (m <= 11)
        return QString::number(m) + (m == 1 ? QStringLiteral(" month") : QStringLiteral(" months"));
    const std::int64_t years = m / 12;
    const std::int64_t rest = m % 12;
    QString text =
        QString::number(years) + (m >= 24 ? QStringLiteral(" years") : QStringLiteral(" year"));
    if (rest != 0)
        text += QLatin1Char(' ') + QString::number(rest) + QStringLiteral(" months");
    return text;
}

QString ageHeading(Engine::OlderMatch mode, double months) {
    switch (mode) {
        case Engine::OlderMatch::older:
            return QStringLiteral("Older than ") + ageLabel(months);
        case Engine::OlderMatch::around:
            return QStringLiteral("Created / modified ") + ageLabel(months) +
                   QStringLiteral(" ago");
        case Engine::OlderMatch::custom:
            break;
    }
    return {};
}

QString presetLabel(int months) {
    if (months <= 11)
        return QString::number(months) + QLatin1Char('m');
    return QString::number(months / 12) + QLatin1Char('y');
}

QString olderHint(Engine::OlderMatch mode, double months, platform::Instant now,
                  const Engine::Calendar& calendar, const QLocale& locale) {
    if (mode == Engine::OlderMatch::custom)
        return {};
    const std::int64_t m = wholeMonths(months);
    if (m == std::numeric_limits<std::int64_t>::min())
        return {};
    const std::optional<platform::Instant> cutoff = calendar.addingMonths(now, -m);
    if (!cutoff)
        return {};
    const QDateTime date = localDateTime(*cutoff);
    if (mode == Engine::OlderMatch::around)
        return QStringLiteral("Matches only the calendar month ") + monthAndYear(date, locale) +
               QLatin1Char('.');
    return QStringLiteral("Includes files dated on or before ") + abbreviatedDate(date, locale) +
           QLatin1Char('.');
}

}  // namespace quorrin::ui
