// Publishes the Store's state to QML as properties and forwards the user's operations.
#include "ui/store_facade.h"

#include "engine/paths.h"
#include "ui/bytes.h"

#include <QFile>

namespace quorrin::ui {
namespace {

QString pathText(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

}  // namespace

StoreFacade::StoreFacade(QObject* parent) : StoreFacade(platform::system(), parent) {}

StoreFacade::StoreFacade(platform::Platform& platform, QObject* parent)
    : QObject(parent),
      platform_(platform),
      store_(std::make_unique<store::Store>(executor_, platform)),
      activity_(store_->activity(), this),
      startPlan_(this) {
    snapshot_.files = std::make_shared<const std::vector<Engine::Entry>>();
    snapshot_.olderFiles = std::make_shared<const std::vector<Engine::Entry>>();
    snapshot_.kept = std::make_shared<const std::set<std::string>>(store_->kept());
    snapshot_.weeks = store_->weeks();
    store_->addObserver(this);
    refreshReview();
}

StoreFacade::~StoreFacade() {
    store_->removeObserver(this);
    activity_.release();
    // The Store goes first; the executor then waits for work still running in the background.
    store_.reset();
    executor_.waitForBackground();
}

StoreFacade* StoreFacade::create(QQmlEngine*, QJSEngine*) {
    return new StoreFacade;
}

QStringList StoreFacade::roots() const {
    QStringList paths;
    for (const std::string& root : store_->roots())
        paths.append(pathText(root));
    return paths;
}

QStringList StoreFacade::rootNames() const {
    QStringList names;
    for (const std::string& root : store_->roots())
        names.append(pathText(std::string(Engine::lastComponent(root))));
    return names;
}

void StoreFacade::addFolders(const QStringList& paths) {
    std::vector<std::string> chosen;
    for (const QString& path : paths)
        chosen.push_back(QFile::encodeName(path).toStdString());
    store_->addFolders(chosen);
}

void StoreFacade::removeFolderAt(int index) {
    const auto& roots = store_->roots();
    if (index < 0 || std::size_t(index) >= roots.size())
        return;
    const std::string path = roots[std::size_t(index)];
    store_->removeFolders({path});
}

void StoreFacade::scan(bool organize, bool duplicates, bool health, bool usageDates) {
    store_->scan({.organize = organize,
                  .duplicates = duplicates,
                  .health = health,
                  .usageDates = usageDates});
}

void StoreFacade::scanOlder() {
    store_->scanOlder();
}

void StoreFacade::undo() {
    store_->undo();
}

void StoreFacade::forgetCachedResults() {
    store_->forgetCachedResults();
}

void StoreFacade::stop() {
    store_->stop();
}

void StoreFacade::previewStart() {
    store_->previewStart();
}

void StoreFacade::runStartPlan() {
    store_->runStartPlan();
}

void StoreFacade::cancelStartPlan() {
    store_->cancelStartPlan();
}

void StoreFacade::markReviewDone() {
    store_->markReviewDone();
    refreshReview();
}

void StoreFacade::refreshReview() {
    const bool due = store_->reviewDue();
    if (due != reviewDue_) {
        reviewDue_ = due;
        emit reviewDueChanged();
    }
    updateStale();
}

void StoreFacade::updateStale() {
    const int stale = int(store_->stale().size());
    if (stale != staleCount_) {
        staleCount_ = stale;
        emit staleChanged();
    }
}

void StoreFacade::log(const QString& text) {
    store_->log(text.toStdString());
}

void StoreFacade::updateDuplicateBytes() {
    std::int64_t total = 0;
    for (const Engine::Entry& entry : store_->files())
        if (entry.duplicateOf)
            total = checkedSum(total, entry.size);
    duplicateBytes_ = total;
}

void StoreFacade::changed(store::Property property) {
    using store::Property;
    switch (property) {
        case Property::roots:
            emit rootsChanged();
            break;
        case Property::files:
            snapshot_.files = store_->sharedFiles();
            updateDuplicateBytes();
            emit filesChanged();
            emit listSourceChanged();
            updateStale();
            break;
        case Property::olderFiles:
            snapshot_.olderFiles =
                std::make_shared<const std::vector<Engine::Entry>>(store_->olderFiles());
            emit olderFilesChanged();
            emit listSourceChanged();
            break;
        case Property::olderScanned:
            emit olderScannedChanged();
            break;
        case Property::busy:
            emit busyChanged();
            break;
        case Property::status:
            emit statusChanged();
            break;
        case Property::activity:
            activity_.reload();
            emit activityChanged();
            break;
        case Property::kept:
            snapshot_.kept = std::make_shared<const std::set<std::string>>(store_->kept());
            emit keptChanged();
            emit listSourceChanged();
            updateStale();
            break;
        case Property::weeks:
            snapshot_.weeks = store_->weeks();
            emit weeksChanged();
            emit listSourceChanged();
            updateStale();
            break;
        case Property::autoDuplicates:
            emit autoDuplicatesChanged();
            break;
        case Property::inspect:
            emit inspectChanged();
            break;
        case Property::duplicatesChecked:
            emit duplicatesCheckedChanged();
            break;
        case Property::healthChecked:
            emit healthCheckedChanged();
            break;
        case Property::moves:
            emit movesChanged();
            break;
        case Property::startPlan:
            startPlan_.reload(store_->startPlan());
            emit startPlanChanged();
            break;
        case Property::progress:
            emit progressChanged();
            break;
    }
}

}  // namespace quorrin::ui
