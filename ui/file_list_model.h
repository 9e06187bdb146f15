// FileListModel: the shared file list of the six list pages, with the view state it is built from.
//
// The rows are `visible` (store/file_list.h) for the current page, search, filters and find-older
// query; the model only presents them. They are recomputed on a background thread whenever the
// view state or the Store's lists change, so a keystroke in the search field never waits for
// 100,000 files to be filtered and sorted; the rows shown stay until the new ones are ready. The
// list actions (select visible, keep selected, move to the Trash) act on the rows of the current
// view state: pressed while those are still being computed, they compute them at once and show
// them first. The name keys and folded paths of the Store's lists are kept between recomputes.
#pragma once

#include "engine/entry.h"
#include "store/file_list.h"
#include "ui/store_facade.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QPointer>
#include <QThreadPool>
#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace quorrin::ui {

class FileListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(quorrin::ui::StoreFacade* store READ store WRITE setStore NOTIFY storeChanged)
    // The view state the rows are built from.
    Q_PROPERTY(QString page READ page WRITE setPage NOTIFY pageChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(QString issueFilter READ issueFilter WRITE setIssueFilter NOTIFY issueFilterChanged)
    Q_PROPERTY(double ageMonths READ ageMonths WRITE setAgeMonths NOTIFY ageMonthsChanged)
    Q_PROPERTY(QString dateBasis READ dateBasis WRITE setDateBasis NOTIFY dateBasisChanged)
    Q_PROPERTY(QString olderMode READ olderMode WRITE setOlderMode NOTIFY olderModeChanged)
    Q_PROPERTY(QDateTime fromDate READ fromDate WRITE setFromDate NOTIFY fromDateChanged)
    Q_PROPERTY(
        QDateTime throughDate READ throughDate WRITE setThroughDate NOTIFY throughDateChanged)
    // What is shown.
    Q_PROPERTY(int count READ count NOTIFY rowsChanged)
    Q_PROPERTY(qint64 totalBytes READ totalBytes NOTIFY rowsChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    // True from a change until the rows built for it are shown.
    Q_PROPERTY(bool computing READ computing NOTIFY computingChanged)

public:
    enum class Role {
        name = Qt::UserRole + 1,  // the last path component
        path,                     // the full path (the entry's id)
        detail,                   // the issue, "Matches: " + original, or the containing folder
        detailKind,               // "issue", "match" or "folder"
        size,
        sizeText,  // through bytes()
        selected,
        kept,
        dateText,  // FindOlder: the date of the chosen basis, or "Date unavailable"
        iconSource,
    };
    Q_ENUM(Role)

    explicit FileListModel(QObject* parent = nullptr);
    ~FileListModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    StoreFacade* store() const { return store_; }
    void setStore(StoreFacade* store);
    QString page() const { return page_; }
    void setPage(const QString& page);
    QString query() const { return query_; }
    void setQuery(const QString& query);
    QString filter() const { return filter_; }
    void setFilter(const QString& filter);
    QString issueFilter() const { return issueFilter_; }
    void setIssueFilter(const QString& issueFilter);
    double ageMonths() const { return ageMonths_; }
    void setAgeMonths(double months);
    QString dateBasis() const { return dateBasis_; }
    void setDateBasis(const QString& basis);
    QString olderMode() const { return olderMode_; }
    void setOlderMode(const QString& mode);
    QDateTime fromDate() const { return fromDate_; }
    void setFromDate(const QDateTime& date);
    QDateTime throughDate() const { return throughDate_; }
    void setThroughDate(const QDateTime& date);

    int count() const { return int(rows_->size()); }
    qint64 totalBytes() const { return totalBytes_; }
    int selectedCount() const { return int(selected_.size()); }
    bool computing() const { return computing_; }

    // The rows shown, and the view state as the list rules take it.
    const std::vector<Engine::Entry>& rows() const { return *rows_; }
    store::ListView listView() const;
    bool isSelected(const std::string& id) const { return selected_.contains(id); }

    // The selection: a set of entry ids, kept while rows come and go.
    Q_INVOKABLE void setSelected(int row, bool on);
    // Replaces the selection with every row shown.
    Q_INVOKABLE void selectVisible();
    Q_INVOKABLE void clearSelection();
    // A sidebar press: nothing selected, empty search, "All types", "All signals".
    Q_INVOKABLE void resetView();

    // Keeps every shown row that is selected, in list order, then empties the selection.
    Q_INVOKABLE void keepSelected();
    // "Keep / unkeep" of one row.
    Q_INVOKABLE void toggleKeep(int row);
    // "Move to Trash": the shown rows that are selected go to the Store's clear, as duplicates on
    // the Duplicates page; nothing when the Store is busy or none is selected. The selection is
    // emptied in every case.
    Q_INVOKABLE void moveSelectedToTrash();

    // The row's context menu and buttons.
    Q_INVOKABLE void open(int row) const;
    Q_INVOKABLE void reveal(int row) const;
    Q_INVOKABLE void copyPath(int row) const;

signals:
    void storeChanged();
    void pageChanged();
    void queryChanged();
    void filterChanged();
    void issueFilterChanged();
    void ageMonthsChanged();
    void dateBasisChanged();
    void olderModeChanged();
    void fromDateChanged();
    void throughDateChanged();
    void rowsChanged();
    void selectionChanged();
    void computingChanged();

private:
    struct Result {
        std::shared_ptr<const std::vector<Engine::Entry>> rows;
        std::int64_t totalBytes = 0;
        bool sameRows = false;  // the same ids in the same order as the rows shown
    };

    // The list index, shared by the background recompute and an action that needs the rows at
    // once; one thread uses it at a time.
    struct IndexSlot {
        std::mutex mutex;
        store::ListIndex index;
    };

    // Builds the rows of `view` over `source`, with their total size; `shown` is compared.
    static Result build(IndexSlot& index, const ListSnapshot& source, const store::ListView& view,
                        platform::Instant now,
                        const std::shared_ptr<const std::vector<Engine::Entry>>& shown);
    // The rows of the current view state: those shown, or, while they are being recomputed, the
    // new ones, computed now and shown before this returns.
    std::shared_ptr<const std::vector<Engine::Entry>> currentRows();
    platform::Instant now() const;
    // The custom range's default: the two calendar years up to now.
    void setDefaultRange();

    // Asks for new rows; several changes in one turn of the event loop make one recompute.
    void scheduleRecompute();
    void startRecompute();
    void apply(std::uint64_t generation, Result result);
    void setComputing(bool computing);
    void emitRowData(const QList<int>& roles);
    const Engine::Entry* entryAt(int row) const;

    QPointer<StoreFacade> store_;
    QString page_ = QStringLiteral("Overview");
    QString query_;
    QString filter_ = QString::fromLatin1(store::allTypes);
    QString issueFilter_ = QString::fromLatin1(store::allSignals);
    double ageMonths_ = 24;
    QString dateBasis_ = QStringLiteral("Created date");
    QString olderMode_ = QStringLiteral("Older than");
    QDateTime fromDate_;
    QDateTime throughDate_;

    std::shared_ptr<const std::vector<Engine::Entry>> rows_;
    std::int64_t totalBytes_ = 0;
    std::set<std::string> selected_;
    bool computing_ = false;
    bool scheduled_ = false;
    std::uint64_t generation_ = 0;
    std::shared_ptr<std::atomic<std::uint64_t>> latest_;
    std::shared_ptr<IndexSlot> index_;
    QThreadPool pool_;  // one thread: requests run in order, outdated ones are skipped
};

}  // namespace quorrin::ui
