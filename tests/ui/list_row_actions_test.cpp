// A row's actions: "Show in Folder", and the context menu's "Open", "Show in Folder" and
// "Copy path".
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/recording_launcher.h"
#include "tests/support/ui/ui_fixture.h"

#include <QFont>
#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class ListRowActions : public ::testing::Test {
protected:
    void SetUp() override {
        path = QString::fromStdString(ui.home.writeFile("Documents/Invoices/March 2024.pdf", "m"));
        ui.open();
        ui.pressSidebar("All files");
        ui.runPageAction();
    }
    void menu(const QString& entry) {
        ui.click(ui.row("March 2024.pdf"), Qt::RightButton);
        ASSERT_TRUE(ui.waitFor([&] { return ui.isShown(entry); })) << entry.toStdString();
        ui.click(entry);
    }

    RecordingLauncher desktop;
    UiFixture ui;
    QString path;
};

TEST_F(ListRowActions, ShowInFolderRevealsTheFile) {
    QQuickItem* row = ui.row("March 2024.pdf");
    EXPECT_EQ(ui.text("rowRevealButton", row), "Show in Folder");
    ui.clickIn(row, "rowRevealButton");
    EXPECT_EQ(desktop.shown, QList<QUrl>{QUrl::fromLocalFile(path)});
}

TEST_F(ListRowActions, TheContextMenuOpensRevealsAndCopies) {
    menu("menuOpen");
    EXPECT_EQ(desktop.opened, QList<QUrl>{QUrl::fromLocalFile(path)});
    menu("menuReveal");
    EXPECT_EQ(desktop.shown, QList<QUrl>{QUrl::fromLocalFile(path)});
    menu("menuCopyPath");
    EXPECT_EQ(desktop.clipboard, QStringList{path});
}

TEST_F(ListRowActions, TheMenuEntriesReadAsTheyShould) {
    ui.click(ui.row("March 2024.pdf"), Qt::RightButton);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("menuOpen"); }));
    EXPECT_EQ(ui.text("menuOpen"), "Open");
    EXPECT_EQ(ui.text("menuReveal"), "Show in Folder");
    EXPECT_EQ(ui.text("menuCopyPath"), "Copy path");
}

TEST_F(ListRowActions, TheRowShowsNameFolderAndSize) {
    QQuickItem* row = ui.row("March 2024.pdf");
    EXPECT_EQ(ui.text("rowName", row), "March 2024.pdf");
    EXPECT_EQ(ui.text("rowDetail", row),
              QString::fromStdString(ui.home.path("Documents/Invoices")));
    EXPECT_EQ(ui.text("rowSize", row), "1 byte");
    EXPECT_FALSE(ui.item("rowDate", row)->isVisible());
    // The name at 13 px medium; the line under it and the size at 10 px.
    const auto pixels = [&](const char* name) {
        return ui.item(name, row)->property("font").value<QFont>().pixelSize();
    };
    EXPECT_EQ(pixels("rowName"), 13);
    EXPECT_EQ(pixels("rowDetail"), 10);
    EXPECT_EQ(pixels("rowSize"), 10);
}

}  // namespace
}  // namespace quorrin::testing
