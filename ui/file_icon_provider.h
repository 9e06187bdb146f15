// The "image://fileicon/<mime type>" images: a file's icon from the desktop's icon theme.
#pragma once

#include <QHash>
#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>
#include <QString>

namespace quorrin::ui {

// The MIME type of a file, judged by its name alone so that no file is read ("image/png").
QString mimeTypeOfName(const QString& fileName);

// The bundled symbol drawn when the icon theme has no icon for a MIME type.
QString fallbackSymbolFor(const QString& mimeType);

// Icons come from the theme by the type's icon name, then its generic icon name; when the theme
// has neither, a bundled symbol for the kind of file is drawn instead. Each type and size is looked
// up once.
class FileIconProvider : public QQuickImageProvider {
public:
    FileIconProvider();
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    QMutex mutex_;
    QHash<QString, QImage> cache_;
};

}  // namespace quorrin::ui
