// What the program and the interface tests do before the window is loaded.
#pragma once

#include <QUrl>

class QGuiApplication;
class QQmlEngine;

namespace quorrin::ui {

// The application's identity, its font and the icon theme's fallback. Call once, after the
// QGuiApplication is made.
void prepareApplication(QGuiApplication& app);
// Gives the engine the bundled symbols ("image://symbol/…") and the desktop's file icons
// ("image://fileicon/…").
void prepareEngine(QQmlEngine& engine);
// The window: the QML module's Main.qml.
QUrl mainWindowUrl();

}  // namespace quorrin::ui
