// Draws a file type's icon from the desktop's icon theme, with a bundled fallback.
#include "ui/file_icon_provider.h"

#include "ui/symbol_image_provider.h"

#include <QColor>
#include <QIcon>
#include <QMimeDatabase>
#include <QMimeType>
#include <QMutexLocker>
#include <QPixmap>

namespace quorrin::ui {
namespace {

bool inheritsAny(const QMimeType& type, std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (type.inherits(QLatin1String(name)))
            return true;
    return false;
}

}  // namespace

QString mimeTypeOfName(const QString& fileName) {
    static const QMimeDatabase database;
    return database.mimeTypeForFile(fileName, QMimeDatabase::MatchExtension).name();
}

QString fallbackSymbolFor(const QString& mimeName) {
    static const QMimeDatabase database;
    const QMimeType type = database.mimeTypeForName(mimeName);
    if (mimeName.startsWith(QLatin1String("video/")))
        return QStringLiteral("film");
    if (mimeName.startsWith(QLatin1String("image/")))
        return QStringLiteral("photo");
    if (mimeName.startsWith(QLatin1String("audio/")))
        return QStringLiteral("music.note");
    if (type.isValid() &&
        inheritsAny(type, {"application/x-executable", "application/x-sharedlib",
                           "application/x-msdownload", "application/x-msi",
                           "application/vnd.debian.binary-package", "application/x-rpm",
                           "application/x-apple-diskimage", "application/vnd.appimage",
                           "application/x-shellscript"}))
        return QStringLiteral("shippingbox");
    // Office documents are zip files inside: they are documents first.
    if (mimeName.startsWith(QLatin1String("text/plain")) ||
        (type.isValid() && inheritsAny(type, {"application/pdf", "application/msword",
                                              "application/vnd.oasis.opendocument.text"})) ||
        mimeName.contains(QLatin1String("officedocument")) ||
        mimeName.contains(QLatin1String("opendocument")))
        return QStringLiteral("doc.text");
    if (type.isValid() &&
        inheritsAny(type, {"application/zip", "application/x-tar", "application/gzip",
                           "application/x-7z-compressed", "application/vnd.rar",
                           "application/x-bzip2", "application/x-xz", "application/zstd"}))
        return QStringLiteral("doc.zipper");
    if (type.isValid() && (inheritsAny(type, {"text/x-csrc", "application/javascript",
                                              "application/json", "application/xml"}) ||
                           mimeName.startsWith(QLatin1String("text/x-"))))
        return QStringLiteral("curlybraces");
    if (mimeName.startsWith(QLatin1String("text/")))
        return QStringLiteral("doc.text");
    return QStringLiteral("doc");
}

FileIconProvider::FileIconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage FileIconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    QSize wanted = requestedSize;
    if (wanted.width() <= 0)
        wanted.setWidth(wanted.height() > 0 ? wanted.height() : 32);
    if (wanted.height() <= 0)
        wanted.setHeight(wanted.width());
    const QString key = id + QLatin1Char('@') + QString::number(wanted.width()) + QLatin1Char('x') +
                        QString::number(wanted.height());
    QMutexLocker lock(&mutex_);
    auto cached = cache_.constFind(key);
    if (cached != cache_.constEnd()) {
        if (size)
            *size = cached->size();
        return *cached;
    }
    static const QMimeDatabase database;
    const QMimeType type = database.mimeTypeForName(id);
    QIcon icon;
    if (type.isValid()) {
        icon = QIcon::fromTheme(type.iconName());
        if (icon.isNull())
            icon = QIcon::fromTheme(type.genericIconName());
    }
    QImage image;
    if (!icon.isNull())
        image = icon.pixmap(wanted).toImage();
    if (image.isNull())
        image = renderSymbol(fallbackSymbolFor(id), QColor(0xa7, 0xb0, 0xb6), wanted);
    cache_.insert(key, image);
    if (size)
        *size = image.size();
    return image;
}

}  // namespace quorrin::ui
