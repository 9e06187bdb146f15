// Opens files and shows them in the file manager through the desktop's own services.
#include "ui/desktop.h"

#include "engine/paths.h"
#include "platform/trash/trash_location.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>

namespace quorrin::ui {
namespace {

// The desktop as Qt and the freedesktop.org interfaces reach it.
class SystemLauncher final : public Launcher {
public:
    void openUrl(const QUrl& url, std::function<void(bool)> done) override {
        if (url.isLocalFile()) {
            const bool opened = QDesktopServices::openUrl(url);
            if (done)
                done(opened);
            return;
        }
        // Other schemes (trash:///) go to xdg-open, whose exit status says whether a handler took
        // the URL; it runs without blocking the window.
        auto* process = new QProcess;
        QObject::connect(process, &QProcess::finished, process,
                         [process, done](int exitCode, QProcess::ExitStatus status) {
                             if (done)
                                 done(status == QProcess::NormalExit && exitCode == 0);
                             process->deleteLater();
                         });
        QObject::connect(process, &QProcess::errorOccurred, process,
                         [process, done](QProcess::ProcessError error) {
                             if (error != QProcess::FailedToStart)
                                 return;
                             if (done)
                                 done(false);
                             process->deleteLater();
                         });
        process->start(QStringLiteral("xdg-open"), {url.toString()});
    }

    void showItems(const QList<QUrl>& items, std::function<void(bool)> done) override {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            if (done)
                done(false);
            return;
        }
        QStringList uris;
        for (const QUrl& item : items)
            uris.append(item.toString(QUrl::FullyEncoded));
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.FileManager1"),
            QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
        call << uris << QString();
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 5000));
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                         [done](QDBusPendingCallWatcher* finished) {
                             if (done)
                                 done(!finished->isError());
                             finished->deleteLater();
                         });
    }

    void setClipboardText(const QString& text) override {
        QClipboard* clipboard = QGuiApplication::clipboard();
        clipboard->clear();
        clipboard->setText(text);
    }
};

Launcher*& replacement() {
    static Launcher* current = nullptr;
    return current;
}

}  // namespace

Launcher& launcher() {
    static SystemLauncher system;
    Launcher* current = replacement();
    return current ? *current : system;
}

void setLauncher(Launcher* launcher) {
    replacement() = launcher;
}

void openFile(const QString& path) {
    launcher().openUrl(QUrl::fromLocalFile(path), {});
}

void revealFile(const QString& path) {
    const QString folder = QFileInfo(path).path();
    launcher().showItems({QUrl::fromLocalFile(path)}, [folder](bool shown) {
        if (!shown)
            launcher().openUrl(QUrl::fromLocalFile(folder), {});
    });
}

void copyPathText(const QString& path) {
    launcher().setClipboardText(path);
}

void openTrash() {
    const std::string trash = platform::homeTrashPath(platform::system());
    const QString files =
        QFile::decodeName(QByteArray::fromStdString(Engine::appendComponent(trash, "files")));
    launcher().openUrl(QUrl(QStringLiteral("trash:///")), [files](bool opened) {
        if (!opened)
            launcher().openUrl(QUrl::fromLocalFile(files), {});
    });
}

}  // namespace quorrin::ui
