// render_icon: draws the application's SVG icon as PNG files of the sizes the desktop's icon
// theme holds, at build time: render_icon ICON.svg OUTPUT_FOLDER SIZE...
// Writes OUTPUT_FOLDER/<size>x<size>/apps/<icon name>.png for each size.
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char** argv) {
    // No display is needed to draw into an image.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "usage: render_icon ICON.svg OUTPUT_FOLDER SIZE...\n");
        return 2;
    }
    QSvgRenderer renderer(arguments[1]);
    if (!renderer.isValid()) {
        std::fprintf(stderr, "render_icon: cannot read %s\n", qPrintable(arguments[1]));
        return 1;
    }
    const QString name = QFileInfo(arguments[1]).completeBaseName();
    for (qsizetype i = 3; i < arguments.size(); ++i) {
        bool valid = false;
        const int size = arguments[i].toInt(&valid);
        if (!valid || size <= 0) {
            std::fprintf(stderr, "render_icon: not a size: %s\n", qPrintable(arguments[i]));
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter);
        painter.end();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(arguments[2]).arg(size);
        const QString path = folder + QLatin1Char('/') + name + QStringLiteral(".png");
        if (!QDir().mkpath(folder) || !image.save(path, "PNG")) {
            std::fprintf(stderr, "render_icon: cannot write %s\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
