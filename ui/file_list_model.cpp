// Rebuilds the list pages' rows in the background from the view state and the Store's files.
#include "ui/file_list_model.h"

#include "engine/calendar.h"
#include "engine/file_date_basis.h"
#include "engine/older_match.h"
#include "engine/paths.h"
#include "store/page.h"
#include "ui/bytes.h"
#include "ui/date_text.h"
#include "ui/desktop.h"
#include "ui/file_icon_provider.h"
#include "ui/find_older_text.h"

#include <QFile>
#include <QMetaObject>

namespace quorrin::ui {
namespace {

using Engine::Entry;

QString pathText(std::string_view path) {
    return QFile::decodeName(QByteArray(path.data(), qsizetype(path.size())));
}

std::string bytesOf(const QString& text) {
    return text.toStdString();
}

}  // namespace

FileListModel::FileListModel(QObject* parent)
    : QAbstractListModel(parent),
      rows_(std::make_shared<const std::vector<Entry>>()),
      latest_(std::make_shared<std::atomic<std::uint64_t>>(0)),
      index_(std::make_shared<IndexSlot>()) {
    pool_.setMaxThreadCount(1);
    const QDateTime now = QDateTime::currentDateTime();
    // Two calendar years before now, or now itself when the calendar cannot go back that far.
    const auto twoYearsAgo = Engine::Calendar::current().addingMonths(instantOf(now), -24);
    fromDate_ = twoYearsAgo ? localDateTime(*twoYearsAgo) : now;
    throughDate_ = now;
}

FileListModel::~FileListModel() {
    pool_.clear();
    pool_.waitForDone();
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

const Entry* FileListModel::entryAt(int row) const {
    if (row < 0 || row >= count())
        return nullptr;
    return &(*rows_)[std::size_t(row)];
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
    const Entry* entry = index.isValid() ? entryAt(index.row()) : nullptr;
    if (!entry)
        return {};
    switch (Role(role)) {
        case Role::name:
            return pathText(Engine::lastComponent(entry->url));
        case Role::path:
            return pathText(entry->url);
        case Role::detail:
            if (entry->issue)
                return QString::fromStdString(*entry->issue);
            if (entry->duplicateOf)
                return QStringLiteral("Matches: ") + pathText(*entry->duplicateOf);
            return pathText(Engine::parentOf(entry->url));
        case Role::detailKind:
            if (entry->issue)
                return QStringLiteral("issue");
            if (entry->duplicateOf)
                return QStringLiteral("match");
            return QStringLiteral("folder");
        case Role::size:
            return qint64(entry->size);
        case Role::sizeText:
            return bytes(entry->size);
        case Role::selected:
            return selected_.contains(entry->id());
        case Role::kept:
            return store_ && store_->store().kept().contains(entry->id());
        case Role::dateText: {
            const auto basis = Engine::fileDateBasisFrom(bytesOf(dateBasis_))
                                   .value_or(Engine::FileDateBasis::created);
            const std::optional<platform::Instant> date = Engine::date(basis, *entry);
            return date ? abbreviatedDate(localDateTime(*date))
                        : QStringLiteral("Date unavailable");
        }
        case Role::iconSource:
            return QStringLiteral("image://fileicon/") +
                   mimeTypeOfName(pathText(Engine::lastComponent(entry->url)));
    }
    return {};
}

QHash<int, QByteArray> FileListModel::roleNames() const {
    return {
        {int(Role::name), "name"},         {int(Role::path), "path"},
        {int(Role::detail), "detail"},     {int(Role::detailKind), "detailKind"},
        {int(Role::size), "size"},         {int(Role::sizeText), "sizeText"},
        {int(Role::selected), "selected"}, {int(Role::kept), "kept"},
        {int(Role::dateText), "dateText"}, {int(Role::iconSource), "iconSource"},
    };
}

void FileListModel::setStore(StoreFacade* store) {
    if (store_ == store)
        return;
    if (store_)
        disconnect(store_, nullptr, this, nullptr);
    store_ = store;
    if (store_)
        connect(store_, &StoreFacade::listSourceChanged, this, &FileListModel::scheduleRecompute);
    emit storeChanged();
    scheduleRecompute();
}

#define QUORRIN_SETTER(Name, member, Type, signal) \
    void FileListModel::Name(Type value) {         \
        if (member == value)                       \
            return;                                \
        member = value;                            \
        emit signal();                             \
        scheduleRecompute();                       \
    }

QUORRIN_SETTER(setPage, page_, const QString&, pageChanged)
QUORRIN_SETTER(setQuery, query_, const QString&, queryChanged)
QUORRIN_SETTER(setFilter, filter_, const QString&, filterChanged)
QUORRIN_SETTER(setIssueFilter, issueFilter_, const QString&, issueFilterChanged)
QUORRIN_SETTER(setAgeMonths, ageMonths_, double, ageMonthsChanged)
QUORRIN_SETTER(setDateBasis, dateBasis_, const QString&, dateBasisChanged)
QUORRIN_SETTER(setOlderMode, olderMode_, const QString&, olderModeChanged)
QUORRIN_SETTER(setFromDate, fromDate_, const QDateTime&, fromDateChanged)
QUORRIN_SETTER(setThroughDate, throughDate_, const QDateTime&, throughDateChanged)

#undef QUORRIN_SETTER

store::ListView FileListModel::listView() const {
    store::ListView view;
    view.page = store::pageFrom(bytesOf(page_)).value_or(store::Page::overview);
    view.query = bytesOf(query_);
    view.filter = bytesOf(filter_);
    view.issueFilter = bytesOf(issueFilter_);
    view.olderQuery.months = wholeMonths(ageMonths_);
    view.olderQuery.mode =
        Engine::olderMatchFrom(bytesOf(olderMode_)).value_or(Engine::OlderMatch::older);
    view.olderQuery.basis =
        Engine::fileDateBasisFrom(bytesOf(dateBasis_)).value_or(Engine::FileDateBasis::created);
    view.olderQuery.from = instantOf(fromDate_);
    view.olderQuery.through = instantOf(throughDate_);
    return view;
}

void FileListModel::scheduleRecompute() {
    setComputing(true);
    if (scheduled_)
        return;
    scheduled_ = true;
    QMetaObject::invokeMethod(this, &FileListModel::startRecompute, Qt::QueuedConnection);
}

platform::Instant FileListModel::now() const {
    return store_ ? store_->now() : platform::system().now();
}

FileListModel::Result FileListModel::build(IndexSlot& index, const ListSnapshot& source,
                                           const store::ListView& view, platform::Instant now,
                                           const std::shared_ptr<const std::vector<Entry>>& shown) {
    Result result;
    std::shared_ptr<std::vector<Entry>> rows;
    {
        std::lock_guard lock(index.mutex);
        rows = std::make_shared<std::vector<Entry>>(store::visible(
            store::ListSource{*source.files, *source.olderFiles, *source.kept, source.weeks}, view,
            now, Engine::Calendar::current(), index.index));
    }
    for (const Entry& entry : *rows)
        result.totalBytes = checkedSum(result.totalBytes, entry.size);
    result.sameRows = rows->size() == shown->size() &&
                      std::equal(rows->begin(), rows->end(), shown->begin(),
                                 [](const Entry& a, const Entry& b) { return a.id() == b.id(); });
    result.rows = std::move(rows);
    return result;
}

void FileListModel::startRecompute() {
    scheduled_ = false;
    if (!store_) {
        apply(generation_, Result{std::make_shared<const std::vector<Entry>>(), 0, false});
        return;
    }
    const std::uint64_t generation = ++generation_;
    latest_->store(generation);
    // Everything the work needs is a shared, immutable snapshot: nothing is copied here.
    pool_.start([this, generation, latest = latest_, index = index_, source = store_->snapshot(),
                 view = listView(), shown = rows_, now = now()] {
        if (latest->load() != generation)
            return;  // a newer request is already queued
        Result result = build(*index, source, view, now, shown);
        QMetaObject::invokeMethod(
            this, [this, generation, result = std::move(result)] { apply(generation, result); },
            Qt::QueuedConnection);
    });
}

std::shared_ptr<const std::vector<Entry>> FileListModel::currentRows() {
    if (!computing_ || !store_)
        return rows_;
    // Whatever is queued or running was asked for an earlier state, or for this one: either way
    // these rows replace it.
    const std::uint64_t generation = ++generation_;
    latest_->store(generation);
    apply(generation, build(*index_, store_->snapshot(), listView(), now(), rows_));
    return rows_;
}

void FileListModel::apply(std::uint64_t generation, Result result) {
    if (generation != generation_)
        return;  // built for a view state that has changed since
    if (result.sameRows) {
        rows_ = std::move(result.rows);
        totalBytes_ = result.totalBytes;
        emitRowData({});
    } else {
        beginResetModel();
        rows_ = std::move(result.rows);
        totalBytes_ = result.totalBytes;
        endResetModel();
    }
    emit rowsChanged();
    if (!scheduled_)
        setComputing(false);
}

void FileListModel::setComputing(bool computing) {
    if (computing_ == computing)
        return;
    computing_ = computing;
    emit computingChanged();
}

void FileListModel::emitRowData(const QList<int>& roles) {
    if (count() > 0)
        emit dataChanged(index(0), index(count() - 1), roles);
}

void FileListModel::setSelected(int row, bool on) {
    const Entry* entry = entryAt(row);
    if (!entry)
        return;
    const bool changed =
        on ? selected_.insert(entry->id()).second : selected_.erase(entry->id()) > 0;
    if (!changed)
        return;
    emit dataChanged(index(row), index(row), {int(Role::selected)});
    emit selectionChanged();
}

void FileListModel::selectVisible() {
    const std::shared_ptr<const std::vector<Entry>> shown = currentRows();
    selected_.clear();
    for (const Entry& entry : *shown)
        selected_.insert(entry.id());
    emitRowData({int(Role::selected)});
    emit selectionChanged();
}

void FileListModel::clearSelection() {
    if (selected_.empty())
        return;
    selected_.clear();
    emitRowData({int(Role::selected)});
    emit selectionChanged();
}

void FileListModel::resetView() {
    clearSelection();
    setQuery(QString());
    setFilter(QString::fromLatin1(store::allTypes));
    setIssueFilter(QString::fromLatin1(store::allSignals));
}

void FileListModel::keepSelected() {
    if (!store_ || selected_.empty() || store_->busy())
        return;
    // Keeping changes the Store's lists, which replaces the rows: walk a copy.
    const std::shared_ptr<const std::vector<Entry>> shown = currentRows();
    for (const Entry& entry : *shown)
        if (selected_.contains(entry.id()))
            store_->store().keep(entry);
    clearSelection();
}

void FileListModel::toggleKeep(int row) {
    const Entry* found = entryAt(row);
    if (!store_ || !found)
        return;
    const Entry entry = *found;
    if (store_->store().kept().contains(entry.id()))
        store_->store().unkeep(entry);
    else
        store_->store().keep(entry);
}

void FileListModel::moveSelectedToTrash() {
    const std::shared_ptr<const std::vector<Entry>> shown = currentRows();
    std::vector<Entry> chosen;
    for (const Entry& entry : *shown)
        if (selected_.contains(entry.id()))
            chosen.push_back(entry);
    if (store_ && !store_->busy() && !chosen.empty())
        store_->store().clear(std::move(chosen), page_ == QLatin1String("Duplicates"));
    clearSelection();
}

void FileListModel::open(int row) const {
    if (const Entry* entry = entryAt(row))
        openFile(pathText(entry->url));
}

void FileListModel::reveal(int row) const {
    if (const Entry* entry = entryAt(row))
        revealFile(pathText(entry->url));
}

void FileListModel::copyPath(int row) const {
    if (const Entry* entry = entryAt(row))
        copyPathText(pathText(entry->url));
}

}  // namespace quorrin::ui
