// PrivateSessionBus: a D-Bus session bus of the test's own, in a temporary folder.
#include "tests/support/ui/private_session_bus.h"

#include <QFile>

namespace quorrin::testing {

bool PrivateSessionBus::start() {
    // A session bus that lets its clients own any name and talk to each other, with no service
    // folders to start programs from.
    if (!folder_.isValid()) {
        failure_ = QStringLiteral("no temporary folder: ") + folder_.errorString();
        return false;
    }
    const QString config = folder_.filePath(QStringLiteral("bus.conf"));
    QFile file(config);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(QByteArray(
            "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
            " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
            "<busconfig>\n"
            "  <type>session</type>\n"
            "  <listen>unix:dir=" +
            QFile::encodeName(folder_.path()) +
            "</listen>\n"
            "  <auth>EXTERNAL</auth>\n"
            "  <policy context=\"default\">\n"
            "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
            "    <allow eavesdrop=\"true\"/>\n"
            "    <allow own=\"*\"/>\n"
            "  </policy>\n"
            "</busconfig>\n")) < 0) {
        failure_ = QStringLiteral("cannot write ") + config;
        return false;
    }
    file.close();
    daemon_.setProgram(QStringLiteral("dbus-daemon"));
    daemon_.setArguments({QStringLiteral("--config-file=") + config, QStringLiteral("--nofork"),
                          QStringLiteral("--print-address=1")});
    daemon_.setProcessChannelMode(QProcess::SeparateChannels);
    daemon_.start();
    if (!daemon_.waitForStarted(10000)) {
        failure_ = QStringLiteral("dbus-daemon did not start: ") + daemon_.errorString();
        return false;
    }
    // The daemon prints its address once it listens.
    while (!daemon_.canReadLine()) {
        if (!daemon_.waitForReadyRead(10000)) {
            failure_ = QStringLiteral("dbus-daemon printed no address: ") +
                       QString::fromLocal8Bit(daemon_.readAllStandardError());
            return false;
        }
    }
    address_ = QString::fromLocal8Bit(daemon_.readLine()).trimmed();
    return !address_.isEmpty();
}

QDBusConnection PrivateSessionBus::connect(const QString& name) {
    connections_.append(name);
    return QDBusConnection::connectToBus(address_, name);
}

PrivateSessionBus::~PrivateSessionBus() {
    for (const QString& name : connections_)
        QDBusConnection::disconnectFromBus(name);
    if (daemon_.state() != QProcess::NotRunning) {
        daemon_.terminate();
        if (!daemon_.waitForFinished(5000)) {
            daemon_.kill();
            daemon_.waitForFinished(5000);
        }
    }
}

}  // namespace quorrin::testing
