// Gives QML the activity lines with their local date and time of day.
#include "ui/activity_model.h"

#include "ui/date_text.h"

namespace quorrin::ui {

ActivityModel::ActivityModel(const std::deque<Engine::Activity>& activity, QObject* parent)
    : QAbstractListModel(parent), activity_(&activity) {}

int ActivityModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ActivityModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count())
        return {};
    const Engine::Activity& record = (*activity_)[std::size_t(index.row())];
    switch (Role(role)) {
        case Role::id:
            return QString::fromStdString(record.id());
        case Role::text:
            return QString::fromStdString(record.text());
        case Role::date:
            return localDateTime(record.date());
        case Role::time:
            return timeOfDay(localDateTime(record.date()));
    }
    return {};
}

QHash<int, QByteArray> ActivityModel::roleNames() const {
    return {
        {int(Role::id), "activityId"},
        {int(Role::text), "text"},
        {int(Role::date), "date"},
        {int(Role::time), "time"},
    };
}

void ActivityModel::release() {
    beginResetModel();
    activity_ = nullptr;
    endResetModel();
    emit countChanged();
}

void ActivityModel::reload() {
    beginResetModel();
    endResetModel();
    emit countChanged();
}

}  // namespace quorrin::ui
