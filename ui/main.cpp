// quorrin: the desktop app. Opens the window over one Store for the life of the process.
#include "ui/app_setup.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>

#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(QuorrinPlugin)

int main(int argc, char* argv[]) {
    QGuiApplication app(argc, argv);
    quorrin::ui::prepareApplication(app);
    QQmlApplicationEngine engine;
    quorrin::ui::prepareEngine(engine);
    QObject::connect(
        &engine, &QQmlApplicationEngine::objectCreationFailed, &app,
        [] { QCoreApplication::exit(1); }, Qt::QueuedConnection);
    engine.load(quorrin::ui::mainWindowUrl());
    return app.exec();
}
