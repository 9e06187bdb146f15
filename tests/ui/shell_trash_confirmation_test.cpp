// The trash confirmation: its texts, "Cancel", and "Move to Trash" on the visible selection, with
// duplicates verified again only on the Duplicates page.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

namespace fs = std::filesystem;

class ShellTrashConfirmation : public ::testing::Test {
protected:
    void SetUp() override {
        ui.home.writeFile("Documents/old.txt", "old");
        ui.home.writeFile("Documents/draft.txt", "draft");
        ui.home.writeFile("Desktop/photo.png", "png");
        ui.open();
        ui.pressSidebar("All files");
        ui.runPageAction();
    }

    bool inTrash(const std::string& name) const {
        return fs::exists(ui.home.path(".local/share/Trash/files/" + name));
    }

    UiFixture ui;
};

TEST_F(ShellTrashConfirmation, AsksFirstWithItsTexts) {
    ui.clickIn(ui.row("old.txt"), "rowCheck");
    ASSERT_TRUE(ui.isEnabled("clearSelectedButton"));
    EXPECT_EQ(ui.text("clearSelectedButton"), "Clear selected…");
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("trashTitle"); }));
    EXPECT_EQ(ui.text("trashTitle"), "Move selected files to Trash?");
    EXPECT_EQ(ui.text("trashMessage"),
              "Kept files are protected. You can restore trashed files from the Trash. "
              "Duplicate originals are checked again before removal.");
    EXPECT_EQ(ui.text("moveToTrashButton"), "Move to Trash");
    EXPECT_EQ(ui.text("cancelTrashButton"), "Cancel");
}

TEST_F(ShellTrashConfirmation, CancelOnlyClosesTheDialog) {
    ui.clickIn(ui.row("old.txt"), "rowCheck");
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("cancelTrashButton"); }));
    ui.click("cancelTrashButton");
    ASSERT_TRUE(ui.waitFor([&] { return !ui.isShown("trashTitle"); }));
    EXPECT_TRUE(fs::exists(ui.home.path("Documents/old.txt")));
    EXPECT_EQ(ui.fileList().selectedCount(), 1);
}

TEST_F(ShellTrashConfirmation, MoveToTrashTakesTheVisibleSelectedFilesOnly) {
    ui.clickIn(ui.row("old.txt"), "rowCheck");
    ui.clickIn(ui.row("photo.png"), "rowCheck");
    ui.choose("typePicker", "Documents");  // photo.png is selected but hidden now
    ASSERT_EQ(ui.rowNames(), (QStringList{"draft.txt", "old.txt"}));
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("moveToTrashButton"); }));
    ui.click("moveToTrashButton");
    ui.settle();
    EXPECT_FALSE(fs::exists(ui.home.path("Documents/old.txt")));
    EXPECT_TRUE(inTrash("old.txt"));
    EXPECT_TRUE(fs::exists(ui.home.path("Desktop/photo.png")));
    EXPECT_EQ(ui.text("statusText"), "1 files moved to Trash");
    EXPECT_EQ(ui.fileList().selectedCount(), 0);
    EXPECT_EQ(ui.rowNames(), QStringList{"draft.txt"});
}

// A copy whose original changed after the scan: the Duplicates page verifies it again and keeps
// it; elsewhere it is trashed like any file.
TEST(ShellTrashDuplicates, OnlyTheDuplicatesPageVerifiesAgainstTheOriginal) {
    UiFixture ui;
    ui.home.writeFile("Desktop/a original.txt", "same content");
    ui.home.writeFile("Documents/b copy.txt", "same content");
    ui.open();
    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    ASSERT_EQ(ui.rowNames(), QStringList{"b copy.txt"});
    writeFileAt(ui.home.path("Desktop/a original.txt"), "edited since");

    ui.click("selectVisibleButton");
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("moveToTrashButton"); }));
    ui.click("moveToTrashButton");
    ui.settle();
    EXPECT_TRUE(fs::exists(ui.home.path("Documents/b copy.txt")));
    const auto& activity = ui.store().store().activity();
    ASSERT_GE(activity.size(), 2u);
    EXPECT_EQ(activity[0].text(), "0 files moved to Trash");
    EXPECT_TRUE(activity[1].text().starts_with("Kept b copy.txt: "));

    ui.pressSidebar("All files");
    ui.clickIn(ui.row("b copy.txt"), "rowCheck");
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("moveToTrashButton"); }));
    ui.click("moveToTrashButton");
    ui.settle();
    EXPECT_FALSE(fs::exists(ui.home.path("Documents/b copy.txt")));
    EXPECT_EQ(ui.text("statusText"), "1 files moved to Trash");
}

}  // namespace
}  // namespace quorrin::testing
