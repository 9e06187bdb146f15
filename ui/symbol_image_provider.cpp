// Renders a bundled icon in one colour at the requested size.
#include "ui/symbol_image_provider.h"

#include "ui/icon_table.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace quorrin::ui {

QImage renderSymbol(const QString& symbol, const QColor& color, QSize size) {
    const QString resource = iconResource(symbol.toStdString());
    if (resource.isEmpty())
        return {};
    QFile file(resource);  // compiled into the program: no disk access
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The icons draw in "currentColor"; give them the colour asked for.
    QByteArray svg = file.readAll();
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return {};
    // The icons are square: one given side is enough.
    if (size.width() <= 0 && size.height() <= 0)
        size = QSize(24, 24);
    else if (size.width() <= 0)
        size.setWidth(size.height());
    else if (size.height() <= 0)
        size.setHeight(size.width());
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(color.alphaF());
    renderer.render(&painter);
    return image;
}

SymbolImageProvider::SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage SymbolImageProvider::requestImage(const QString& id, QSize* size,
                                         const QSize& requestedSize) {
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    const QString symbol = slash < 0 ? id : id.left(slash);
    QColor color(Qt::white);
    if (slash >= 0) {
        const QColor parsed(QLatin1Char('#') + id.mid(slash + 1));
        if (parsed.isValid())
            color = parsed;
    }
    QImage image = renderSymbol(symbol, color, requestedSize);
    if (size)
        *size = image.size();
    return image;
}

}  // namespace quorrin::ui
