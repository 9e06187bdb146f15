// File icons: the MIME type from the name alone, the desktop theme's icon, the bundled fallback.
#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "ui/file_icon_provider.h"
#include "ui/symbol_image_provider.h"

#include <QDir>
#include <QIcon>
#include <QImage>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using testing::TempHome;

TEST(FileIcon, TypeComesFromTheNameWithoutReadingTheFile) {
    // None of these files exists.
    EXPECT_EQ(mimeTypeOfName(QStringLiteral("Holiday photo.JPG")), "image/jpeg");
    EXPECT_EQ(mimeTypeOfName(QStringLiteral("song.mp3")), "audio/mpeg");
    EXPECT_EQ(mimeTypeOfName(QStringLiteral("report.pdf")), "application/pdf");
    EXPECT_EQ(mimeTypeOfName(QStringLiteral("no extension")), "application/octet-stream");
}

TEST(FileIcon, FallbackSymbolsByKindOfFile) {
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("video/mp4")), "film");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("image/png")), "photo");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("audio/mpeg")), "music.note");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("application/zip")), "doc.zipper");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("application/x-apple-diskimage")), "shippingbox");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("application/pdf")), "doc.text");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral(
                  "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet")),
              "doc.text");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("text/x-csrc")), "curlybraces");
    EXPECT_EQ(fallbackSymbolFor(QStringLiteral("application/octet-stream")), "doc");
}

// An icon theme of one icon, "image-x-generic", solid red, in a folder of the temporary HOME.
class ThemedFileIcon : public ::testing::Test {
protected:
    void SetUp() override {
        savedPaths_ = QIcon::themeSearchPaths();
        savedTheme_ = QIcon::themeName();
        const QString theme = QString::fromStdString(home_.makeDir("icons/quorrin-test"));
        home_.writeFile("icons/quorrin-test/index.theme",
                        "[Icon Theme]\nName=quorrin-test\nDirectories=32x32/mimetypes\n\n"
                        "[32x32/mimetypes]\nSize=32\nType=Fixed\nContext=MimeTypes\n");
        QDir().mkpath(theme + QStringLiteral("/32x32/mimetypes"));
        QImage red(32, 32, QImage::Format_ARGB32);
        red.fill(Qt::red);
        ASSERT_TRUE(red.save(theme + QStringLiteral("/32x32/mimetypes/image-x-generic.png")));
        QIcon::setThemeSearchPaths({QString::fromStdString(home_.path("icons"))});
        QIcon::setThemeName(QStringLiteral("quorrin-test"));
    }
    void TearDown() override {
        QIcon::setThemeSearchPaths(savedPaths_);
        QIcon::setThemeName(savedTheme_);
    }

    TempHome home_;
    QStringList savedPaths_;
    QString savedTheme_;
};

TEST_F(ThemedFileIcon, TheThemesIconForTheTypeIsUsed) {
    FileIconProvider provider;
    QSize size;
    // image/png has no icon of its own in the theme; its generic icon is used.
    const QImage image = provider.requestImage(QStringLiteral("image/png"), &size, QSize(32, 32));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(size, QSize(32, 32));
    EXPECT_EQ(image.pixelColor(16, 16).rgb(), QColor(Qt::red).rgb());
}

TEST_F(ThemedFileIcon, ATypeWithoutThemeIconGetsTheBundledSymbol) {
    FileIconProvider provider;
    QSize size;
    const QImage image =
        provider.requestImage(QStringLiteral("application/zip"), &size, QSize(32, 32));
    const QImage expected =
        renderSymbol(QStringLiteral("doc.zipper"), QColor(0xa7, 0xb0, 0xb6), QSize(32, 32));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.convertToFormat(QImage::Format_ARGB32_Premultiplied),
              expected.convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

}  // namespace
}  // namespace quorrin::ui
