// Writes byte counts the way the window shows every size.
#include "ui/bytes.h"

#include <QtGlobal>
#include <array>
#include <cmath>

namespace quorrin::ui {
namespace {

struct Unit {
    const char* name;
    int decimals;
};

// KB, MB, GB, …: each 1000 times the one before.
constexpr std::array<Unit, 6> units{{
    {"KB", 0},
    {"MB", 1},
    {"GB", 2},
    {"TB", 2},
    {"PB", 2},
    {"EB", 2},
}};

// `value` rounded to `decimals` places, without trailing zeros, in the locale's digits.
QString number(double value, int decimals, const QLocale& locale) {
    QLocale plain = locale;
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    QString text = plain.toString(value, 'f', decimals);
    if (decimals > 0) {
        const QString point = plain.decimalPoint();
        const QString zero = plain.zeroDigit();
        while (text.endsWith(zero))
            text.chop(zero.size());
        if (text.endsWith(point))
            text.chop(point.size());
    }
    return text;
}

}  // namespace

QString bytes(std::int64_t count, const QLocale& locale) {
    if (count == 0)
        return QStringLiteral("Zero KB");
    const QString sign = count < 0 ? locale.negativeSign() : QString();
    // The magnitude as an unsigned number, so that the smallest int64 has one too.
    const std::uint64_t magnitude =
        count < 0 ? std::uint64_t(0) - std::uint64_t(count) : std::uint64_t(count);
    if (magnitude == 1)
        return sign + QStringLiteral("1 byte");
    if (magnitude < 1000)
        return sign + number(double(magnitude), 0, locale) + QStringLiteral(" bytes");

    double scaled = double(magnitude) / 1000.0;
    std::size_t unit = 0;
    while (unit + 1 < units.size()) {
        const double factor = std::pow(10.0, units[unit].decimals);
        if (std::round(scaled * factor) / factor < 1000.0)
            break;
        scaled /= 1000.0;
        ++unit;
    }
    return sign + number(scaled, units[unit].decimals, locale) + QLatin1Char(' ') +
           QLatin1String(units[unit].name);
}

std::int64_t checkedSum(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        qFatal("A size total does not fit in 64 bits");
    return sum;
}

}  // namespace quorrin::ui
