// The interface tests' entry: one offscreen QGuiApplication for the whole run, in English (US).
#include "tests/support/temp_home.h"
#include "ui/app_setup.h"

#include <QGuiApplication>
#include <QLocale>

#include <QtQml/qqmlextensionplugin.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

Q_IMPORT_QML_PLUGIN(QuorrinPlugin)

int main(int argc, char** argv) {
    // No display is needed, and the software renderer draws the same pixels everywhere.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("LC_ALL", "en_US.UTF-8");
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    // Whatever Qt keeps of its own (caches, runtime folders) stays out of the real HOME.
    quorrin::testing::TempHome processHome;
    const std::string runtime = processHome.makeDir("runtime");
    ::chmod(runtime.c_str(), 0700);
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime));
    QGuiApplication app(argc, argv);
    quorrin::ui::prepareApplication(app);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
