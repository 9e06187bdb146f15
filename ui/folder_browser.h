// FolderBrowser: the folder chooser's list: the subfolders of one folder, read on a background
// thread, and the folders ticked so far (several may be chosen, from different folders).
#pragma once

#include <QAbstractListModel>
#include <QStringList>
#include <QThreadPool>
#include <cstdint>

#include <QtQml/qqmlregistration.h>

namespace quorrin::ui {

class FolderBrowser : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY folderChanged)
    Q_PROPERTY(QString folderName READ folderName NOTIFY folderChanged)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY folderChanged)
    Q_PROPERTY(bool loading READ loading NOTIFY loadingChanged)
    Q_PROPERTY(QStringList chosen READ chosen NOTIFY chosenChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum class Role { name = Qt::UserRole + 1, path, chosen };
    Q_ENUM(Role)

    explicit FolderBrowser(QObject* parent = nullptr);
    ~FolderBrowser() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString folder() const { return folder_; }
    // Shows the subfolders of `folder` (an absolute path), read in the background.
    void setFolder(const QString& folder);
    QString folderName() const;
    bool canGoUp() const;
    bool loading() const { return loading_; }
    QStringList chosen() const { return chosen_; }
    int count() const { return int(names_.size()); }

    // The home folder: where the chooser opens.
    Q_INVOKABLE QString home() const;
    Q_INVOKABLE void goUp();
    Q_INVOKABLE void enter(int row);
    // Ticks or unticks the folder in `row`.
    Q_INVOKABLE void setChosen(int row, bool on);
    // What "Add folder" connects: the ticked folders in the order ticked, or, when none is ticked,
    // the folder being shown.
    Q_INVOKABLE QStringList result() const;
    // Unticks everything and goes back to the home folder.
    Q_INVOKABLE void reset();

signals:
    void folderChanged();
    void loadingChanged();
    void chosenChanged();
    void countChanged();

private:
    void loaded(std::uint64_t generation, const QStringList& names);
    QString pathAt(int row) const;

    QString folder_;
    QStringList names_;
    QStringList chosen_;
    bool loading_ = false;
    std::uint64_t generation_ = 0;
    QThreadPool pool_;
};

}  // namespace quorrin::ui
