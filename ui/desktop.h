// Desktop: what the window asks of the desktop: opening files, showing them in the file manager,
// the clipboard, and opening the Trash.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <functional>

#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace quorrin::ui {

// The desktop services the actions use; tests put a recording one in place.
class Launcher {
public:
    virtual ~Launcher() = default;
    // Opens the URL with the desktop's default handler; `done` learns whether that worked.
    virtual void openUrl(const QUrl& url, std::function<void(bool opened)> done) = 0;
    // Asks the file manager to show the items selected in their folder.
    virtual void showItems(const QList<QUrl>& items, std::function<void(bool shown)> done) = 0;
    virtual void setClipboardText(const QString& text) = 0;
};

// The launcher in use: the system's unless a test set another (nullptr restores the system's).
Launcher& launcher();
void setLauncher(Launcher* replacement);

// "Open": the file with its default application.
void openFile(const QString& path);
// "Show in Folder": the file selected in the file manager through
// org.freedesktop.FileManager1.ShowItems, or its folder opened when no file manager answers.
void revealFile(const QString& path);
// "Copy path": the full path as plain text on the clipboard.
void copyPathText(const QString& path);
// "Open Trash": trash:///, or the home trash's files/ folder when nothing opens that.
void openTrash();

class Desktop : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;
    static Desktop* create(QQmlEngine*, QJSEngine*) { return new Desktop; }

    Q_INVOKABLE void openTrash() { ui::openTrash(); }
    Q_INVOKABLE void copyPath(const QString& path) { copyPathText(path); }
};

}  // namespace quorrin::ui
