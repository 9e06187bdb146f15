// Search by file name or folder (case ignored), the type filter, and the file manager's name order.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(ListSearch, AFolderNameFindsTheFilesInIt) {
    UiFixture ui;
    ui.home.writeFile("Documents/Invoices/Summary.txt", "s");
    ui.home.writeFile("Documents/Invoices/march.pdf", "m");
    ui.home.writeFile("Documents/Letters/April.txt", "a");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    EXPECT_EQ(ui.item("searchField")->property("placeholderText").toString(),
              "Search by filename or folder…");
    ui.typeInto("searchField", "invoices");
    EXPECT_EQ(ui.rowNames(), (QStringList{"march.pdf", "Summary.txt"}));
    EXPECT_EQ(ui.text("selectionCaption"), "2 files • 2 bytes");
    ui.typeInto("searchField", "APRIL");
    EXPECT_EQ(ui.rowNames(), QStringList{"April.txt"});
}

TEST(ListSearch, TheTypeFilterKeepsOneCategory) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.pdf", "a");
    ui.home.writeFile("Desktop/b.png", "b");
    ui.home.writeFile("Downloads/c.zip", "c");
    ui.home.writeFile("Downloads/d.xyz", "d");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    ui.choose("typePicker", "Images");
    EXPECT_EQ(ui.rowNames(), QStringList{"b.png"});
    ui.choose("typePicker", "Installers and ZIP");
    EXPECT_EQ(ui.rowNames(), QStringList{"c.zip"});
    ui.choose("typePicker", "Other Files");
    EXPECT_EQ(ui.rowNames(), QStringList{"d.xyz"});
    ui.choose("typePicker", "All types");
    EXPECT_EQ(ui.rowNames().size(), 4);
}

TEST(ListSort, NumbersInNamesCompareByValue) {
    UiFixture ui;
    ui.home.writeFile("Documents/file10.txt", "x");
    ui.home.writeFile("Desktop/file2.txt", "x");
    ui.home.writeFile("Downloads/file1.txt", "x");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    EXPECT_EQ(ui.rowNames(), (QStringList{"file1.txt", "file2.txt", "file10.txt"}));
}

}  // namespace
}  // namespace quorrin::testing
