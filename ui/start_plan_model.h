// StartPlanModel: the plan of a preview of Start as a list grouped by action, searchable, with
// the counts the preview sheet shows.
#pragma once

#include "store/start_plan.h"

#include <QAbstractListModel>
#include <QString>
#include <QVariantList>
#include <optional>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace quorrin::ui {

class StartPlanModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The plan belongs to the Store")
    // Rows whose file name, path or detail holds this text, ignoring case; all rows when empty.
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int moveCount READ moveCount NOTIFY planChanged)
    Q_PROPERTY(int trashCount READ trashCount NOTIFY planChanged)
    Q_PROPERTY(int skipCount READ skipCount NOTIFY planChanged)
    // [{"folder": "02 Images", "count": 3}, …] for each category folder that receives files, in
    // the folders' order.
    Q_PROPERTY(QVariantList folderCounts READ folderCounts NOTIFY planChanged)
    // What Start would report when everything goes as planned.
    Q_PROPERTY(QString summary READ summary NOTIFY planChanged)

public:
    enum class Role {
        action = Qt::UserRole + 1,  // "trash", "move" or "skip"
        group,                      // the section title of the action
        name,                       // the file name
        path,                       // the file's full path
        detail,                     // where it goes, what it copies, or why it stays
    };
    Q_ENUM(Role)

    explicit StartPlanModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString query() const { return query_; }
    void setQuery(const QString& query);
    int count() const { return int(shown_.size()); }
    int moveCount() const { return moveCount_; }
    int trashCount() const { return trashCount_; }
    int skipCount() const { return int(rows_.size()) - moveCount_ - trashCount_; }
    QVariantList folderCounts() const { return folderCounts_; }
    QString summary() const { return summary_; }

    // The Store's plan changed (or is gone): rows are rebuilt from it.
    void reload(const std::optional<store::StartPlan>& plan);

signals:
    void queryChanged();
    void countChanged();
    void planChanged();

private:
    struct Row {
        QString action, group, name, path, detail;
    };
    void filter();

    std::vector<Row> rows_;  // grouped: trashes, then moves, then skips, each in plan order
    std::vector<std::size_t> shown_;  // indexes into rows_ that match the query
    QString query_;
    int moveCount_ = 0;
    int trashCount_ = 0;
    QVariantList folderCounts_;
    QString summary_;
};

}  // namespace quorrin::ui
