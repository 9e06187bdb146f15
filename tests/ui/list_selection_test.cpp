// The selection bar: the caption, "Select visible", and "Keep selected" on visible rows only.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class ListSelection : public ::testing::Test {
protected:
    void SetUp() override {
        ui.home.writeFile("Documents/a.txt", std::string(1200, 'a'));
        ui.home.writeFile("Documents/b.pdf", std::string(800, 'b'));
        ui.home.writeFile("Desktop/photo.png", std::string(3000, 'p'));
        ui.open();
        ui.pressSidebar("All files");
        ui.runPageAction();
    }
    bool ticked(const QString& name) {
        return ui.item("rowCheck", ui.row(name))->property("checked").toBool();
    }
    UiFixture ui;
};

TEST_F(ListSelection, TheCaptionCountsTheVisibleFilesAndTheirSize) {
    EXPECT_EQ(ui.text("selectionCaption"), "3 files • 5 KB");
    ui.choose("typePicker", "Documents");
    EXPECT_EQ(ui.text("selectionCaption"), "2 files • 2 KB");
}

TEST_F(ListSelection, KeepSelectedActsOnlyOnTheSelectedRowsShown) {
    EXPECT_FALSE(ui.isEnabled("keepSelectedButton"));
    ui.clickIn(ui.row("a.txt"), "rowCheck");
    ui.clickIn(ui.row("photo.png"), "rowCheck");
    EXPECT_TRUE(ticked("a.txt"));
    EXPECT_TRUE(ui.isEnabled("keepSelectedButton"));
    ui.choose("typePicker", "Images");
    ASSERT_EQ(ui.rowNames(), QStringList{"photo.png"});
    ui.click("keepSelectedButton");
    ui.settle();
    EXPECT_EQ(ui.store().store().kept(), std::set<std::string>{ui.home.path("Desktop/photo.png")});
    EXPECT_TRUE(ui.item("rowKeptMark", ui.row("photo.png"))->isVisible());
    EXPECT_EQ(ui.fileList().selectedCount(), 0);
    EXPECT_EQ(ui.text("statusText"), "Kept: photo.png");
    ui.choose("typePicker", "All types");
    EXPECT_FALSE(ui.item("rowKeptMark", ui.row("a.txt"))->isVisible());
    EXPECT_FALSE(ticked("a.txt"));
}

TEST_F(ListSelection, SelectVisibleReplacesTheSelection) {
    ui.clickIn(ui.row("photo.png"), "rowCheck");
    ui.choose("typePicker", "Documents");
    ui.click("selectVisibleButton");
    EXPECT_EQ(ui.fileList().selectedCount(), 2);
    EXPECT_TRUE(ticked("a.txt"));
    EXPECT_TRUE(ticked("b.pdf"));
    ui.choose("typePicker", "All types");
    EXPECT_FALSE(ticked("photo.png"));
}

TEST_F(ListSelection, KeepUnkeepTogglesOneRow) {
    QQuickItem* row = ui.row("b.pdf");
    EXPECT_EQ(ui.text("rowKeepButton", row), "Keep / unkeep");
    ui.clickIn(row, "rowKeepButton");
    ui.settle();
    EXPECT_TRUE(ui.item("rowKeptMark", ui.row("b.pdf"))->isVisible());
    ui.pressSidebar("Kept files");
    EXPECT_EQ(ui.rowNames(), QStringList{"b.pdf"});
    ui.clickIn(ui.row("b.pdf"), "rowKeepButton");
    ui.settle();
    EXPECT_TRUE(ui.rowNames().isEmpty());
    EXPECT_TRUE(ui.store().store().kept().empty());
}

}  // namespace
}  // namespace quorrin::testing
