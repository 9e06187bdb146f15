// Renders each of the nine pages over the sample home to a PNG in the build folder.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QDir>
#include <QImage>
#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class Screenshots : public ::testing::Test {
protected:
    void SetUp() override {
        writeSampleHome(ui.home);
        ui.open();
        ASSERT_TRUE(QDir().mkpath(QStringLiteral(QUORRIN_SCREENSHOT_DIR)));
    }

    // Saves the window as <number>-<page>.png and checks that something was drawn.
    void shoot(int number, const QString& page) {
        ui.settle();
        const QImage image = ui.grab();
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.width(), 1180);
        EXPECT_EQ(image.height(), 800);
        QString name = page.toLower();
        name.replace(QStringLiteral(" & "), QStringLiteral("-"));
        name.replace(QLatin1Char(' '), QLatin1Char('-'));
        const QString path = QStringLiteral(QUORRIN_SCREENSHOT_DIR) + QLatin1Char('/') +
                             QString::asprintf("%d-", number) + name + QStringLiteral(".png");
        ASSERT_TRUE(image.save(path, "PNG", 0)) << path.toStdString();  // smallest file
    }

    UiFixture ui;
};

TEST_F(Screenshots, NinePages) {
    // Overview after a duplicate check, so every card has a value.
    ui.pressSidebar(QStringLiteral("Duplicates"));
    ui.runPageAction();
    ui.pressSidebar(QStringLiteral("Overview"));
    // The sample home holds 20 files in its connected folders.
    EXPECT_EQ(ui.text(QStringLiteral("value"), ui.item(QStringLiteral("card:FILES INDEXED"))),
              QStringLiteral("20"));
    shoot(1, QStringLiteral("Overview"));

    // All files with two rows ticked and one file kept.
    ui.pressSidebar(QStringLiteral("All files"));
    ui.clickIn(ui.row(QStringLiteral("Budget 2025.xlsx")), QStringLiteral("rowKeepButton"));
    ui.clickIn(ui.row(QStringLiteral("Birthday clip.mp4")), QStringLiteral("rowCheck"));
    ui.clickIn(ui.row(QStringLiteral("Flight tickets.pdf")), QStringLiteral("rowCheck"));
    shoot(2, QStringLiteral("All files"));

    // FindOlder: files last modified more than 6 months ago.
    ui.pressSidebar(QStringLiteral("FindOlder"));
    ui.choose(QStringLiteral("dateBasisPicker"), QStringLiteral("Last modified date"));
    ui.click(QStringLiteral("preset:6m"));
    ui.runPageAction();
    shoot(3, QStringLiteral("FindOlder"));

    ui.pressSidebar(QStringLiteral("Duplicates"));
    ui.runPageAction();
    shoot(4, QStringLiteral("Duplicates"));

    ui.pressSidebar(QStringLiteral("Downloads review"));
    ui.runPageAction();
    shoot(5, QStringLiteral("Downloads review"));

    ui.pressSidebar(QStringLiteral("File health"));
    ui.runPageAction();
    shoot(6, QStringLiteral("File health"));

    ui.pressSidebar(QStringLiteral("All files"));
    ui.typeInto(QStringLiteral("searchField"), QStringLiteral("tax"));
    ui.clickIn(ui.row(QStringLiteral("Tax return 2023.pdf")), QStringLiteral("rowKeepButton"));
    ui.typeInto(QStringLiteral("searchField"), QStringLiteral("holiday"));
    ui.clickIn(ui.row(QStringLiteral("Holiday photo.jpg")), QStringLiteral("rowKeepButton"));
    ui.pressSidebar(QStringLiteral("Kept files"));
    EXPECT_EQ(ui.rowNames(),
              (QStringList{QStringLiteral("Budget 2025.xlsx"), QStringLiteral("Holiday photo.jpg"),
                           QStringLiteral("Tax return 2023.pdf")}));
    shoot(7, QStringLiteral("Kept files"));

    ui.pressSidebar(QStringLiteral("Folders & settings"));
    shoot(8, QStringLiteral("Folders & settings"));

    ui.pressSidebar(QStringLiteral("Activity"));
    shoot(9, QStringLiteral("Activity"));
}

}  // namespace
}  // namespace quorrin::testing
