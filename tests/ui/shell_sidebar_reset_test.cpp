// A sidebar press resets the list state: empty search, "All types", "All signals", nothing
// selected, also when the page pressed is the one shown.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class ShellSidebarReset : public ::testing::Test {
protected:
    void SetUp() override {
        ui.home.writeFile("Documents/Invoices/March.pdf", "march");
        ui.home.writeFile("Documents/notes.txt", "");
        ui.home.writeFile("Desktop/photo.png", "png");
        ui.open();
        ui.pressSidebar("File health");
        ui.runPageAction();
    }

    void expectReset() {
        EXPECT_EQ(ui.text("searchField"), "");
        EXPECT_EQ(ui.fileList().query(), "");
        EXPECT_EQ(ui.fileList().filter(), "All types");
        EXPECT_EQ(ui.fileList().issueFilter(), "All signals");
        // What the pickers show, not only what they are bound to.
        EXPECT_EQ(ui.item("typePicker.menu")->property("displayText").toString(), "All types");
        if (QQuickItem* health = ui.find("healthPicker.menu")) {
            EXPECT_EQ(health->property("displayText").toString(), "All signals");
        }
        EXPECT_EQ(ui.fileList().selectedCount(), 0);
        EXPECT_FALSE(ui.isEnabled("keepSelectedButton"));
        EXPECT_FALSE(ui.isEnabled("clearSelectedButton"));
    }

    UiFixture ui;
};

TEST_F(ShellSidebarReset, AnotherPageStartsWithNoSearchNoFiltersAndNothingSelected) {
    ui.choose("healthPicker", "Empty files");
    ui.typeInto("searchField", "notes");
    ui.choose("typePicker", "Documents");
    ui.clickIn(ui.row("notes.txt"), "rowCheck");
    ASSERT_EQ(ui.fileList().selectedCount(), 1);
    ASSERT_EQ(ui.fileList().issueFilter(), "Empty");

    ui.pressSidebar("All files");
    EXPECT_EQ(ui.window().property("page").toString(), "All files");
    EXPECT_EQ(ui.text("headerTitle"), "All files");
    expectReset();
    EXPECT_EQ(ui.rowNames(), (QStringList{"March.pdf", "notes.txt", "photo.png"}));
    for (const QString& name : ui.rowNames())
        EXPECT_FALSE(ui.item("rowCheck", ui.row(name))->property("checked").toBool());
}

TEST_F(ShellSidebarReset, PressingTheCurrentPageResetsToo) {
    ui.typeInto("searchField", "photo");
    ui.choose("typePicker", "Images");
    ui.click("selectVisibleButton");
    ASSERT_EQ(ui.fileList().selectedCount(), 1);
    ui.pressSidebar("File health");
    expectReset();
}

}  // namespace
}  // namespace quorrin::testing
