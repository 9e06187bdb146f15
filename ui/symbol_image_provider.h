// The "image://symbol/<name>/<rrggbb>" images: a bundled icon drawn in one colour at any size.
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickImageProvider>
#include <QSize>
#include <QString>

namespace quorrin::ui {

// The symbol's icon in `color` at `size` (24 × 24 when empty); a null image for an unknown symbol.
QImage renderSymbol(const QString& symbol, const QColor& color, QSize size);

class SymbolImageProvider : public QQuickImageProvider {
public:
    SymbolImageProvider();
    // `id` is the symbol name, a slash, and the colour as 6 or 8 hex digits (rrggbb, aarrggbb).
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace quorrin::ui
