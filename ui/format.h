// Format: the texts the pages compute (sizes, dates, the find-older labels) and the fixed option
// lists of the pickers, published to QML as the singleton `Format`.
#pragma once

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace quorrin::ui {

class Format : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    // The nine pages' titles, in sidebar order.
    Q_PROPERTY(QStringList pages READ pages CONSTANT)
    // {label, value} for the "Type" picker and the "Health filter" picker.
    Q_PROPERTY(QVariantList typeOptions READ typeOptions CONSTANT)
    Q_PROPERTY(QVariantList signalOptions READ signalOptions CONSTANT)
    // "Created date", "Last modified date" and "Older than", "During that month", "Custom dates".
    Q_PROPERTY(QStringList dateBases READ dateBases CONSTANT)
    Q_PROPERTY(QStringList olderModes READ olderModes CONSTANT)
    // 1, 6, 12, 24, 36, 48, 60.
    Q_PROPERTY(QVariantList agePresets READ agePresets CONSTANT)

public:
    using QObject::QObject;
    static Format* create(QQmlEngine*, QJSEngine*) { return new Format; }

    QStringList pages() const;
    QVariantList typeOptions() const;
    QVariantList signalOptions() const;
    QStringList dateBases() const;
    QStringList olderModes() const;
    QVariantList agePresets() const;

    Q_INVOKABLE QString bytes(qint64 count) const;
    Q_INVOKABLE int wholeMonths(double months) const;
    Q_INVOKABLE QString ageLabel(double months) const;
    Q_INVOKABLE QString ageHeading(const QString& mode, double months) const;
    Q_INVOKABLE QString presetLabel(int months) const;
    // The hint under the presets, for the current moment by the clock of `store` (the `Store`
    // singleton; the system clock when it is not one).
    Q_INVOKABLE QString olderHint(const QString& mode, double months, QObject* store) const;
    Q_INVOKABLE QString abbreviatedDate(const QDateTime& date) const;
    Q_INVOKABLE QString monthAndYear(const QDateTime& date) const;
    // The first day of the month holding `date`, and that day moved by `months` months, for the
    // date picker's month grid.
    Q_INVOKABLE QDateTime addMonths(const QDateTime& date, int months) const;
    // `date` moved to the calendar day year-month-day, keeping its time of day.
    Q_INVOKABLE QDateTime withDay(const QDateTime& date, int year, int month, int day) const;
};

}  // namespace quorrin::ui
