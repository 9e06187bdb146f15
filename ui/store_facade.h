// StoreFacade: the window's one Store, published to QML as the singleton `Store`.
//
// Every published property of the Store is a Qt property with a change signal; the operations are
// invokable. The Store runs on the interface thread with a QtExecutor: its long operations work on
// the executor's thread pool and publish their results through the event loop.
#pragma once

#include "store/store.h"
#include "ui/activity_model.h"
#include "ui/qt_executor.h"
#include "ui/start_plan_model.h"

#include <QObject>
#include <QStringList>
#include <memory>
#include <set>
#include <vector>

#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace quorrin::ui {

// The lists the file pages read, shared with background work without copying them again.
struct ListSnapshot {
    std::shared_ptr<const std::vector<Engine::Entry>> files;
    std::shared_ptr<const std::vector<Engine::Entry>> olderFiles;
    std::shared_ptr<const std::set<std::string>> kept;
    std::int64_t weeks = 4;
};

class StoreFacade : public QObject, private store::StoreObserver {
    Q_OBJECT
    QML_NAMED_ELEMENT(Store)
    QML_SINGLETON

    // The Store's published properties.
    Q_PROPERTY(QStringList roots READ roots NOTIFY rootsChanged)
    Q_PROPERTY(int fileCount READ fileCount NOTIFY filesChanged)
    Q_PROPERTY(int olderFileCount READ olderFileCount NOTIFY olderFilesChanged)
    Q_PROPERTY(bool olderScanned READ olderScanned NOTIFY olderScannedChanged)
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    // How far the running operation has come, from 0 to 1; -1 when it cannot tell.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(quorrin::ui::ActivityModel* activity READ activity CONSTANT)
    Q_PROPERTY(int keptCount READ keptCount NOTIFY keptChanged)
    Q_PROPERTY(int weeks READ weeks WRITE setWeeks NOTIFY weeksChanged)
    Q_PROPERTY(bool autoDuplicates READ autoDuplicates WRITE setAutoDuplicates NOTIFY
                   autoDuplicatesChanged)
    Q_PROPERTY(bool inspect READ inspect WRITE setInspect NOTIFY inspectChanged)
    Q_PROPERTY(bool duplicatesChecked READ duplicatesChecked NOTIFY duplicatesCheckedChanged)
    Q_PROPERTY(bool healthChecked READ healthChecked NOTIFY healthCheckedChanged)
    Q_PROPERTY(int moveCount READ moveCount NOTIFY movesChanged)
    // The plan of the last preview of Start, until it is run or cancelled.
    Q_PROPERTY(bool hasStartPlan READ hasStartPlan NOTIFY startPlanChanged)
    Q_PROPERTY(quorrin::ui::StartPlanModel* startPlan READ startPlan CONSTANT)

    // Derived values.
    Q_PROPERTY(QStringList rootNames READ rootNames NOTIFY rootsChanged)
    Q_PROPERTY(qint64 duplicateBytes READ duplicateBytes NOTIFY filesChanged)
    Q_PROPERTY(int staleCount READ staleCount NOTIFY staleChanged)
    Q_PROPERTY(bool reviewDue READ reviewDue NOTIFY reviewDueChanged)

public:
    explicit StoreFacade(QObject* parent = nullptr);
    // A Store over `platform`, whose clock the pages read too (tests fix it).
    explicit StoreFacade(platform::Platform& platform, QObject* parent = nullptr);
    ~StoreFacade() override;

    static StoreFacade* create(QQmlEngine* qmlEngine, QJSEngine* jsEngine);

    store::Store& store() { return *store_; }
    const store::Store& store() const { return *store_; }
    QtExecutor& executor() { return executor_; }
    const ListSnapshot& snapshot() const { return snapshot_; }
    // The time now, by the clock of the Store's platform.
    platform::Instant now() const { return platform_.now(); }

    QStringList roots() const;
    QStringList rootNames() const;
    int fileCount() const { return int(store_->files().size()); }
    int olderFileCount() const { return int(store_->olderFiles().size()); }
    bool olderScanned() const { return store_->olderScanned(); }
    bool busy() const { return store_->busy(); }
    QString status() const { return QString::fromStdString(store_->status()); }
    double progress() const {
        const store::ProgressAmount& amount = store_->progress();
        return amount.total > 0 ? double(amount.done) / double(amount.total) : -1.0;
    }
    ActivityModel* activity() { return &activity_; }
    int keptCount() const { return int(store_->kept().size()); }
    int weeks() const { return int(store_->weeks()); }
    void setWeeks(int weeks) { store_->setWeeks(weeks); }
    bool autoDuplicates() const { return store_->autoDuplicates(); }
    void setAutoDuplicates(bool on) { store_->setAutoDuplicates(on); }
    bool inspect() const { return store_->inspect(); }
    void setInspect(bool on) { store_->setInspect(on); }
    bool duplicatesChecked() const { return store_->duplicatesChecked(); }
    bool healthChecked() const { return store_->healthChecked(); }
    int moveCount() const { return int(store_->moves().size()); }
    bool hasStartPlan() const { return store_->startPlan().has_value(); }
    StartPlanModel* startPlan() { return &startPlan_; }
    // The total size of the files marked as duplicates of another.
    qint64 duplicateBytes() const { return duplicateBytes_; }
    int staleCount() const { return staleCount_; }
    bool reviewDue() const { return reviewDue_; }

    // Connected folders: `paths` as the folder chooser returned them, then saved.
    Q_INVOKABLE void addFolders(const QStringList& paths);
    // Removes every connected folder equal to the one in row `index`, then saves the list.
    Q_INVOKABLE void removeFolderAt(int index);

    // Start and the page scans.
    Q_INVOKABLE void scan(bool organize, bool duplicates, bool health, bool usageDates);
    Q_INVOKABLE void scanOlder();
    Q_INVOKABLE void undo();
    // Empties the results cache ("Forget cached results").
    Q_INVOKABLE void forgetCachedResults();
    // Asks the running long operation to stop at its next safe point.
    Q_INVOKABLE void stop();

    // The preview of Start: plan in the background, then run exactly that plan or drop it.
    Q_INVOKABLE void previewStart();
    Q_INVOKABLE void runStartPlan();
    Q_INVOKABLE void cancelStartPlan();

    // The weekly Downloads review.
    Q_INVOKABLE void markReviewDone();
    // Re-reads whether the review is due and which Downloads are stale (both depend on the time).
    Q_INVOKABLE void refreshReview();
    Q_INVOKABLE void log(const QString& text);

signals:
    void rootsChanged();
    void filesChanged();
    void olderFilesChanged();
    void olderScannedChanged();
    void busyChanged();
    void statusChanged();
    void progressChanged();
    void activityChanged();
    void keptChanged();
    void weeksChanged();
    void autoDuplicatesChanged();
    void inspectChanged();
    void duplicatesCheckedChanged();
    void healthCheckedChanged();
    void movesChanged();
    void startPlanChanged();
    void staleChanged();
    void reviewDueChanged();
    // Something the file pages list from changed: files, olderFiles, kept or weeks.
    void listSourceChanged();

private:
    void changed(store::Property property) override;
    void updateDuplicateBytes();
    void updateStale();

    platform::Platform& platform_;
    QtExecutor executor_;  // outlives the Store: it waits for background work when destroyed
    std::unique_ptr<store::Store> store_;
    ActivityModel activity_;
    StartPlanModel startPlan_;
    ListSnapshot snapshot_;
    qint64 duplicateBytes_ = 0;
    int staleCount_ = 0;
    bool reviewDue_ = false;
};

}  // namespace quorrin::ui
