// The preview plan as rows: one per trash, move and skip, grouped in that order.
#include "ui/start_plan_model.h"

#include "engine/paths.h"
#include "engine/tables.h"

#include <QFile>
#include <QVariantMap>
#include <map>

namespace quorrin::ui {
namespace {

using Kind = store::StartAction::Kind;

QString pathText(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

}  // namespace

StartPlanModel::StartPlanModel(QObject* parent) : QAbstractListModel(parent) {}

int StartPlanModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant StartPlanModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count())
        return {};
    const Row& row = rows_[shown_[std::size_t(index.row())]];
    switch (Role(role)) {
        case Role::action:
            return row.action;
        case Role::group:
            return row.group;
        case Role::name:
            return row.name;
        case Role::path:
            return row.path;
        case Role::detail:
            return row.detail;
    }
    return {};
}

QHash<int, QByteArray> StartPlanModel::roleNames() const {
    return {
        {int(Role::action), "action"}, {int(Role::group), "group"},   {int(Role::name), "name"},
        {int(Role::path), "path"},     {int(Role::detail), "detail"},
    };
}

void StartPlanModel::setQuery(const QString& query) {
    if (query == query_)
        return;
    query_ = query;
    emit queryChanged();
    filter();
}

void StartPlanModel::reload(const std::optional<store::StartPlan>& plan) {
    rows_.clear();
    moveCount_ = trashCount_ = 0;
    folderCounts_.clear();
    summary_.clear();
    if (plan) {
        std::vector<Row> moves, skips;
        std::map<std::string, int> perFolder;
        for (const store::StartAction* action : plan->shown()) {
            Row row{.name = pathText(std::string(Engine::lastComponent(action->file.url))),
                    .path = pathText(action->file.url)};
            switch (action->kind) {
                case Kind::trash:
                    row.action = QStringLiteral("trash");
                    row.group = QStringLiteral("Duplicates to Trash");
                    row.detail = QStringLiteral("Copy of ") +
                                 pathText(action->file.duplicateOf.value_or(""));
                    rows_.push_back(std::move(row));
                    break;
                case Kind::move:
                    row.action = QStringLiteral("move");
                    row.group = QStringLiteral("Files to arrange");
                    row.detail = QStringLiteral("→ ") + pathText(action->to);
                    ++perFolder[std::string(action->file.category)];
                    moves.push_back(std::move(row));
                    break;
                case Kind::skip:
                    row.action = QStringLiteral("skip");
                    row.group = QStringLiteral("Left in place");
                    row.detail = QString::fromStdString(action->message);
                    skips.push_back(std::move(row));
                    break;
            }
        }
        trashCount_ = int(rows_.size());
        moveCount_ = int(moves.size());
        rows_.insert(rows_.end(), moves.begin(), moves.end());
        rows_.insert(rows_.end(), skips.begin(), skips.end());
        // The category folder names sort in their numbered order.
        for (const auto& [folder, count] : perFolder)
            folderCounts_.append(
                QVariantMap{{QStringLiteral("folder"), QString::fromStdString(folder)},
                            {QStringLiteral("count"), count}});
        summary_ = QString::fromStdString(plan->summary());
    }
    emit planChanged();
    filter();
}

void StartPlanModel::filter() {
    beginResetModel();
    shown_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const Row& row = rows_[i];
        if (query_.isEmpty() || row.name.contains(query_, Qt::CaseInsensitive) ||
            row.path.contains(query_, Qt::CaseInsensitive) ||
            row.detail.contains(query_, Qt::CaseInsensitive))
            shown_.push_back(i);
    }
    endResetModel();
    emit countChanged();
}

}  // namespace quorrin::ui
