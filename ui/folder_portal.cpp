// FolderPortal: "Add folder" through the desktop's folder chooser over the XDG desktop portal.
#include "ui/folder_portal.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QUrl>
#include <QWindow>

namespace quorrin::ui {
namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

// How long the portal may take to accept the request (not to answer it: the user takes their
// time); a portal that says nothing for this long counts as absent.
constexpr int acceptTimeoutMs = 10000;

std::optional<QDBusConnection>& replacementBus() {
    static std::optional<QDBusConnection> bus;
    return bus;
}

QDBusConnection portalBus() {
    return replacementBus() ? *replacementBus() : QDBusConnection::sessionBus();
}

// The handle a request gets: /org/freedesktop/portal/desktop/request/SENDER/TOKEN, SENDER being
// the caller's unique bus name without its ":" and with "_" for ".".
QString requestPathFor(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService();
    if (sender.startsWith(QLatin1Char(':')))
        sender.remove(0, 1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return portalPath + QStringLiteral("/request/") + sender + QLatin1Char('/') + token;
}

}  // namespace

void setPortalBus(std::optional<QDBusConnection> bus) {
    replacementBus() = std::move(bus);
}

QString portalParentWindow(const QWindow* window, const QString& platformName) {
    if (window == nullptr || platformName != QStringLiteral("xcb"))
        return {};
    return QStringLiteral("x11:") + QString::number(window->winId(), 16);
}

void FolderPortal::choose(QWindow* window) {
    if (pending_)
        return;
    QDBusConnection bus = portalBus();
    if (!bus.isConnected()) {
        emit unavailable();
        return;
    }
    static unsigned requests = 0;
    const QString token = QStringLiteral("quorrin%1").arg(++requests);
    bus_ = bus;
    pending_ = true;
    emit pendingChanged();
    // Listen before asking, so that an answer given at once is not missed.
    watch(requestPathFor(bus, token));

    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService, portalPath, QStringLiteral("org.freedesktop.portal.FileChooser"),
        QStringLiteral("OpenFile"));
    const QVariantMap options{
        {QStringLiteral("handle_token"), token},
        {QStringLiteral("accept_label"), QStringLiteral("Add folder")},
        {QStringLiteral("multiple"), true},
        {QStringLiteral("directory"), true},
        {QStringLiteral("modal"), true},
    };
    call << portalParentWindow(window, QGuiApplication::platformName())
         << QStringLiteral("Choose folders to connect") << options;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, acceptTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                QDBusPendingReply<QDBusObjectPath> reply = *finished;
                if (!pending_)
                    return;  // answered already
                if (reply.isError()) {
                    finish();
                    emit unavailable();
                    return;
                }
                // Older portals choose the handle themselves.
                if (reply.value().path() != requestPath_)
                    watch(reply.value().path());
            });
}

void FolderPortal::watch(const QString& requestPath) {
    if (!requestPath_.isEmpty())
        bus_->disconnect(portalService, requestPath_, requestInterface, QStringLiteral("Response"),
                         this, SLOT(handleResponse(uint, QVariantMap)));
    requestPath_ = requestPath;
    bus_->connect(portalService, requestPath_, requestInterface, QStringLiteral("Response"), this,
                  SLOT(handleResponse(uint, QVariantMap)));
}

void FolderPortal::handleResponse(uint response, const QVariantMap& results) {
    if (!pending_)
        return;
    finish();
    // 0: chosen; 1: cancelled, which changes nothing; anything else: the chooser failed.
    if (response == 1)
        return;
    if (response != 0) {
        emit unavailable();
        return;
    }
    QStringList paths;
    for (const QString& uri : results.value(QStringLiteral("uris")).toStringList()) {
        const QUrl url(uri);
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    if (!paths.isEmpty())
        emit chosen(paths);
}

void FolderPortal::finish() {
    bus_->disconnect(portalService, requestPath_, requestInterface, QStringLiteral("Response"),
                     this, SLOT(handleResponse(uint, QVariantMap)));
    requestPath_.clear();
    bus_.reset();
    pending_ = false;
    emit pendingChanged();
}

}  // namespace quorrin::ui
