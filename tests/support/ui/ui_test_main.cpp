// The interface tests' entry: one offscreen QGuiApplication for the whole run, in English (US).
#include "tests/support/temp_home.h"
#include "tests/support/ui/accessible_tree.h"
#include "ui/app_setup.h"

#include <QGuiApplication>
#include <QLocale>
#include <algorithm>
#include <optional>
#include <string_view>

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
    // Whatever Qt keeps of its own (caches, runtime folders) stays out of the real HOME. A death
    // test runs this program again in a child that dies on purpose: the child keeps its parent's
    // temporary HOME and runtime folder (inherited through the environment) instead of making
    // one that nothing would remove.
    const bool deathTestChild = std::any_of(argv, argv + argc, [](const char* argument) {
        return std::string_view(argument).starts_with("--gtest_internal_run_death_test");
    });
    std::optional<quorrin::testing::TempHome> processHome;
    if (!deathTestChild) {
        processHome.emplace();
        const std::string runtime = processHome->makeDir("runtime");
        ::chmod(runtime.c_str(), 0700);
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtime));
    }
    // The window's tests never reach the desktop's own session bus (a portal there would open
    // the desktop's folder chooser); the tests that need a bus start a private one.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/quorrin-tests-have-no-session-bus");
    QGuiApplication app(argc, argv);
    quorrin::ui::prepareApplication(app);
    // The window is read as an assistive technology reads it: with the platform's accessibility
    // on, as it is on a desktop where a screen reader runs.
    quorrin::testing::turnAccessibilityOn();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
