// Names the application, picks its font and registers the image providers before QML loads.
#include "ui/app_setup.h"

#include "ui/file_icon_provider.h"
#include "ui/symbol_image_provider.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlEngine>

namespace quorrin::ui {

void prepareApplication(QGuiApplication& app) {
    QGuiApplication::setApplicationName(QStringLiteral("Quorrin"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Quorrin"));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.quorrin.Quorrin"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Quorrin/icons/app.svg")));
    // Inter reads well at the small sizes of the rows; without it the desktop's font is used.
    if (QFontDatabase::families().contains(QStringLiteral("Inter"))) {
        QFont font(QStringLiteral("Inter"));
        font.setPixelSize(13);
        app.setFont(font);
    }
}

void prepareEngine(QQmlEngine& engine) {
    // The module lives in the program's resources under /qt/qml.
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider);
    engine.addImageProvider(QStringLiteral("fileicon"), new FileIconProvider);
}

QUrl mainWindowUrl() {
    return QUrl(QStringLiteral("qrc:/qt/qml/Quorrin/Main.qml"));
}

}  // namespace quorrin::ui
