// Exposes the computed texts and the fixed option lists of the pages to QML.
#include "ui/format.h"

#include "engine/file_date_basis.h"
#include "engine/older_match.h"
#include "platform/platform.h"
#include "store/file_list.h"
#include "store/page.h"
#include "ui/bytes.h"
#include "ui/date_text.h"
#include "ui/find_older_text.h"
#include "ui/store_facade.h"

#include <QVariantMap>

namespace quorrin::ui {
namespace {

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), qsizetype(view.size()));
}

Engine::OlderMatch modeOf(const QString& mode) {
    return Engine::olderMatchFrom(mode.toStdString()).value_or(Engine::OlderMatch::older);
}

}  // namespace

QStringList Format::pages() const {
    QStringList titles;
    for (store::Page page : store::allPages)
        titles.append(text(store::rawValue(page)));
    return titles;
}

QVariantList Format::typeOptions() const {
    QVariantList options;
    for (const store::TypeOption& option : store::typeOptions())
        options.append(
            QVariantMap{{QStringLiteral("label"), QString::fromStdString(option.label)},
                        {QStringLiteral("value"), QString::fromStdString(option.value)}});
    return options;
}

QVariantList Format::signalOptions() const {
    QVariantList options;
    for (const store::SignalOption& option : store::signalOptions())
        options.append(QVariantMap{{QStringLiteral("label"), QString::fromUtf8(option.label)},
                                   {QStringLiteral("value"), QString::fromUtf8(option.value)}});
    return options;
}

QStringList Format::dateBases() const {
    QStringList names;
    for (Engine::FileDateBasis basis : Engine::allFileDateBases)
        names.append(text(Engine::rawValue(basis)));
    return names;
}

QStringList Format::olderModes() const {
    QStringList names;
    for (Engine::OlderMatch mode : Engine::allOlderMatches)
        names.append(text(Engine::rawValue(mode)));
    return names;
}

QVariantList Format::agePresets() const {
    QVariantList presets;
    for (int months : ui::agePresets)
        presets.append(months);
    return presets;
}

QString Format::bytes(qint64 count) const {
    return ui::bytes(count);
}

int Format::wholeMonths(double months) const {
    const std::int64_t whole = ui::wholeMonths(months);
    return int(std::clamp<std::int64_t>(whole, INT32_MIN, INT32_MAX));
}

QString Format::ageLabel(double months) const {
    return ui::ageLabel(months);
}

QString Format::ageHeading(const QString& mode, double months) const {
    return ui::ageHeading(modeOf(mode), months);
}

QString Format::presetLabel(int months) const {
    return ui::presetLabel(months);
}

QString Format::olderHint(const QString& mode, double months, QObject* store) const {
    const auto* facade = qobject_cast<const StoreFacade*>(store);
    return ui::olderHint(modeOf(mode), months, facade ? facade->now() : platform::system().now(),
                         Engine::Calendar::current());
}

QString Format::abbreviatedDate(const QDateTime& date) const {
    return ui::abbreviatedDate(date);
}

QString Format::monthAndYear(const QDateTime& date) const {
    return ui::monthAndYear(date);
}

QDateTime Format::addMonths(const QDateTime& date, int months) const {
    const QDate first(date.date().year(), date.date().month(), 1);
    return QDateTime(first.addMonths(months), QTime(12, 0));
}

QDateTime Format::withDay(const QDateTime& date, int year, int month, int day) const {
    return QDateTime(QDate(year, month, day), date.isValid() ? date.time() : QTime(12, 0));
}

}  // namespace quorrin::ui
