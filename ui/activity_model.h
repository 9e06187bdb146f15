// ActivityModel: the Store's activity history as a list model, newest first.
#pragma once

#include "engine/activity.h"

#include <QAbstractListModel>
#include <deque>

#include <QtQml/qqmlregistration.h>

namespace quorrin::ui {

class ActivityModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The activity history belongs to the Store")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum class Role {
        id = Qt::UserRole + 1,  // the record's identity
        text,
        date,  // a QDateTime
        time,  // the time of day in the user's locale, e.g. "3:41 PM"
    };
    Q_ENUM(Role)

    explicit ActivityModel(const std::deque<Engine::Activity>& activity, QObject* parent = nullptr);

    int count() const { return activity_ ? int(activity_->size()) : 0; }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // The Store's list changed: rows are rebuilt from it.
    void reload();
    // The Store is going away: the model shows no rows from now on.
    void release();

signals:
    void countChanged();

private:
    const std::deque<Engine::Activity>* activity_;
};

}  // namespace quorrin::ui
