// FolderPortal: "Add folder" through the desktop's own folder chooser, reached over the XDG desktop
// portal (org.freedesktop.portal.FileChooser.OpenFile on the session bus), so that GNOME, KDE and
// sandboxed installs show the chooser their users know.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QWindow>
#include <optional>

#include <QtQml/qqmlregistration.h>

class QQmlEngine;
class QJSEngine;

namespace quorrin::ui {

// The bus the portal is asked on: the session bus unless a test set another (std::nullopt
// restores the session bus).
void setPortalBus(std::optional<QDBusConnection> bus);

// How the portal names the window a chooser belongs to: "x11:" and the window's id in hexadecimal
// on X11; nothing elsewhere (a Wayland surface would need an exported handle).
QString portalParentWindow(const QWindow* window, const QString& platformName);

class FolderPortal : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    // True from the request until the portal's answer (or its failure).
    Q_PROPERTY(bool pending READ pending NOTIFY pendingChanged)

public:
    using QObject::QObject;
    static FolderPortal* create(QQmlEngine*, QJSEngine*) { return new FolderPortal; }

    bool pending() const { return pending_; }

    // Asks the portal for folders (several at once), the chooser parented to `window`. Ends in
    // chosen() with the folders picked, in nothing when the user cancelled, or in unavailable()
    // when no portal answered. A second request while one is open is ignored.
    Q_INVOKABLE void choose(QWindow* window);

signals:
    void chosen(const QStringList& paths);
    void unavailable();
    void pendingChanged();

private slots:
    void handleResponse(uint response, const QVariantMap& results);

private:
    void finish();
    void watch(const QString& requestPath);

    bool pending_ = false;
    QString requestPath_;
    std::optional<QDBusConnection> bus_;
};

}  // namespace quorrin::ui
