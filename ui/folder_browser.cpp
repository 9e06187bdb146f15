// Lists a folder's subfolders in the background for the built-in chooser and keeps the ticks.
#include "ui/folder_browser.h"

#include <QCollator>
#include <QDir>
#include <QMetaObject>
#include <algorithm>

namespace quorrin::ui {

FolderBrowser::FolderBrowser(QObject* parent) : QAbstractListModel(parent) {
    pool_.setMaxThreadCount(1);
}

FolderBrowser::~FolderBrowser() {
    pool_.clear();
    pool_.waitForDone();
}

int FolderBrowser::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QString FolderBrowser::pathAt(int row) const {
    if (row < 0 || row >= count())
        return {};
    return folder_ == QLatin1String("/") ? QLatin1Char('/') + names_[row]
                                         : folder_ + QLatin1Char('/') + names_[row];
}

QVariant FolderBrowser::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= count())
        return {};
    switch (Role(role)) {
        case Role::name:
            return names_[index.row()];
        case Role::path:
            return pathAt(index.row());
        case Role::chosen:
            return chosen_.contains(pathAt(index.row()));
    }
    return {};
}

QHash<int, QByteArray> FolderBrowser::roleNames() const {
    return {{int(Role::name), "name"}, {int(Role::path), "path"}, {int(Role::chosen), "chosen"}};
}

QString FolderBrowser::home() const {
    return QDir::homePath();
}

QString FolderBrowser::folderName() const {
    if (folder_ == QLatin1String("/"))
        return folder_;
    return folder_.mid(folder_.lastIndexOf(QLatin1Char('/')) + 1);
}

bool FolderBrowser::canGoUp() const {
    return !folder_.isEmpty() && folder_ != QLatin1String("/");
}

void FolderBrowser::setFolder(const QString& folder) {
    QString clean = QDir::cleanPath(folder);
    if (clean.isEmpty() || !clean.startsWith(QLatin1Char('/')))
        return;
    if (clean == folder_)
        return;
    folder_ = clean;
    emit folderChanged();
    beginResetModel();
    names_.clear();
    endResetModel();
    emit countChanged();
    loading_ = true;
    emit loadingChanged();
    const std::uint64_t generation = ++generation_;
    pool_.start([this, generation, clean] {
        // Visible folders only, as a file manager shows them, in its name order.
        QStringList names = QDir(clean).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCollator collator;
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        std::sort(names.begin(), names.end(), collator);
        QMetaObject::invokeMethod(
            this, [this, generation, names] { loaded(generation, names); }, Qt::QueuedConnection);
    });
}

void FolderBrowser::loaded(std::uint64_t generation, const QStringList& names) {
    if (generation != generation_)
        return;
    beginResetModel();
    names_ = names;
    endResetModel();
    emit countChanged();
    loading_ = false;
    emit loadingChanged();
}

void FolderBrowser::goUp() {
    if (!canGoUp())
        return;
    const qsizetype slash = folder_.lastIndexOf(QLatin1Char('/'));
    setFolder(slash <= 0 ? QStringLiteral("/") : folder_.left(slash));
}

void FolderBrowser::enter(int row) {
    const QString path = pathAt(row);
    if (!path.isEmpty())
        setFolder(path);
}

void FolderBrowser::setChosen(int row, bool on) {
    const QString path = pathAt(row);
    if (path.isEmpty() || chosen_.contains(path) == on)
        return;
    if (on)
        chosen_.append(path);
    else
        chosen_.removeAll(path);
    emit dataChanged(index(row), index(row), {int(Role::chosen)});
    emit chosenChanged();
}

QStringList FolderBrowser::result() const {
    if (!chosen_.isEmpty())
        return chosen_;
    return folder_.isEmpty() ? QStringList() : QStringList{folder_};
}

void FolderBrowser::reset() {
    if (!chosen_.isEmpty()) {
        chosen_.clear();
        emit chosenChanged();
        if (count() > 0)
            emit dataChanged(index(0), index(count() - 1), {int(Role::chosen)});
    }
    folder_.clear();  // read the home folder again, even when it is the one shown
    setFolder(home());
}

}  // namespace quorrin::ui
