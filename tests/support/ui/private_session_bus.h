// PrivateSessionBus: a D-Bus session bus of the test's own (a dbus-daemon in a temporary folder),
// so that services a test plays, such as the desktop portal, are reached as on a real desktop
// without touching the user's bus. Nothing is started on demand on it: a name nobody owns stays
// unowned.
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace quorrin::testing {

class PrivateSessionBus {
public:
    PrivateSessionBus() = default;
    ~PrivateSessionBus();
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    // Starts the bus; false (with failure() saying why) when it could not.
    bool start();
    QString failure() const { return failure_; }
    QString address() const { return address_; }
    // A new connection to the bus under this name, closed with the bus.
    QDBusConnection connect(const QString& name);

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
    QString failure_;
    QStringList connections_;
};

}  // namespace quorrin::testing
