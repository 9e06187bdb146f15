// The icon table: every symbol the pages name maps to one bundled icon that draws.
#include "ui/icon_table.h"

#include "tests/support/ui/qt_printing.h"
#include "ui/symbol_image_provider.h"

#include <QFile>
#include <QSet>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

// The system symbols the pages name.
const char* const pageSymbols[] = {"square.grid.2x2",
                                   "magnifyingglass",
                                   "calendar.badge.clock",
                                   "square.on.square",
                                   "arrow.down.circle",
                                   "heart.text.square",
                                   "bookmark",
                                   "slider.horizontal.3",
                                   "clock.arrow.circlepath",
                                   "arrow.clockwise",
                                   "sparkles",
                                   "hourglass",
                                   "checkmark.circle",
                                   "doc.on.doc",
                                   "folder.badge.gearshape",
                                   "calendar",
                                   "arrow.up.right",
                                   "folder",
                                   "folder.fill",
                                   "bookmark.fill"};

TEST(IconTable, EveryPageSymbolHasABundledIcon) {
    for (const char* symbol : pageSymbols) {
        const QString resource = iconResource(symbol);
        ASSERT_FALSE(resource.isEmpty()) << symbol;
        EXPECT_TRUE(QFile::exists(resource)) << symbol << " → " << resource.toStdString();
    }
}

TEST(IconTable, EachSymbolOnceAndEveryFileExists) {
    QSet<QString> symbols;
    for (const IconRow& row : iconTable()) {
        const QString symbol = QString::fromLatin1(row.symbol.data(), qsizetype(row.symbol.size()));
        EXPECT_FALSE(symbols.contains(symbol)) << "twice: " << symbol.toStdString();
        symbols.insert(symbol);
        EXPECT_TRUE(QFile::exists(iconResource(row.symbol))) << row.file;
    }
}

TEST(IconTable, TheIconSetsLicenceIsBundled) {
    QFile licence(QStringLiteral(QUORRIN_SOURCE_DIR "/ui/icons/LICENSE"));
    ASSERT_TRUE(licence.open(QIODevice::ReadOnly));
    EXPECT_TRUE(licence.readAll().contains("MIT License"));
}

TEST(IconTable, UnknownSymbolsHaveNoIcon) {
    EXPECT_TRUE(iconResource("no.such.symbol").isEmpty());
    EXPECT_TRUE(renderSymbol(QStringLiteral("no.such.symbol"), Qt::white, QSize(16, 16)).isNull());
}

TEST(SymbolImage, DrawsInTheColourAskedAtTheSizeAsked) {
    SymbolImageProvider provider;
    QSize size;
    const QImage image =
        provider.requestImage(QStringLiteral("folder.fill/abf26b"), &size, QSize(48, 48));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(size, QSize(48, 48));
    // The filled folder covers the middle of the square in the colour given.
    const QColor middle = image.pixelColor(24, 28);
    EXPECT_EQ(middle.alpha(), 255);
    EXPECT_EQ(middle.rgb(), QColor(0xab, 0xf2, 0x6b).rgb());
}

TEST(SymbolImage, OneSideIsEnoughAndTheDefaultIs24) {
    SymbolImageProvider provider;
    QSize size;
    EXPECT_EQ(provider.requestImage(QStringLiteral("sparkles/ffffff"), &size, QSize(32, 0)).size(),
              QSize(32, 32));
    EXPECT_EQ(provider.requestImage(QStringLiteral("sparkles/ffffff"), &size, QSize()).size(),
              QSize(24, 24));
}

}  // namespace
}  // namespace quorrin::ui
