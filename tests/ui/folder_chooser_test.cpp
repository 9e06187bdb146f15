// "Add folder": a chooser of folders only, several at once, confirmed with "Add folder".
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class FolderChooser : public ::testing::Test {
protected:
    void SetUp() override {
        ui.home.makeDir("Music");
        ui.home.makeDir("Pictures/Holidays");
        ui.home.writeFile("notes.txt", "not a folder");
        ui.home.writeFile("Documents/a.txt", "a");
        ui.open();
        ui.pressSidebar("All files");
        ui.runPageAction();
        ui.pressSidebar("Folders & settings");
        ui.click("addFolderButton");
        ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserConfirmButton"); }));
        ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserRow:Music"); }));
    }
    QString path(const char* relative) const {
        return QString::fromStdString(ui.home.path(relative));
    }
    QStringList rows() {
        QStringList names;
        for (const char* name :
             {"Desktop", "Documents", "Downloads", "Music", "Pictures", "notes.txt"})
            if (ui.isShown(QStringLiteral("chooserRow:") + name))
                names.append(name);
        return names;
    }

    UiFixture ui;
};

TEST_F(FolderChooser, ShowsFoldersOnlyAndConfirmsWithAddFolder) {
    EXPECT_EQ(ui.text("chooserConfirmButton"), "Add folder");
    EXPECT_EQ(ui.text("chooserFolder"), QString::fromStdString(ui.home.home()));
    EXPECT_EQ(rows(), (QStringList{"Desktop", "Documents", "Downloads", "Music", "Pictures"}));
}

TEST_F(FolderChooser, SeveralFoldersAreAddedAtOnce) {
    ui.clickIn(ui.item("chooserRow:Music"), "chooserCheck");
    // Into Pictures, and tick Holidays there too.
    ui.clickIn(ui.item("chooserRow:Pictures"), "chooserOpenButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserRow:Holidays"); }));
    ui.clickIn(ui.item("chooserRow:Holidays"), "chooserCheck");
    EXPECT_EQ(ui.text("chooserSummary"), "2 folders ticked");
    ui.click("chooserConfirmButton");
    ASSERT_TRUE(ui.waitFor([&] { return !ui.isShown("chooserConfirmButton"); }));
    ui.settle();
    EXPECT_EQ(ui.store().roots(),
              (QStringList{path("Documents"), path("Downloads"), path("Desktop"), path("Music"),
                           path("Pictures/Holidays")}));
    EXPECT_EQ(ui.text("rootName", ui.item("rootRow:4")), "Holidays");
    // A confirmed choice saves the folders, which empties the scan results.
    EXPECT_EQ(ui.store().fileCount(), 0);
}

TEST_F(FolderChooser, WithNothingTickedTheOpenFolderIsAdded) {
    ui.clickIn(ui.item("chooserRow:Music"), "chooserOpenButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.text("chooserFolder") == path("Music"); }));
    // With nothing ticked, "Add folder" waits for the opened folder to be listed.
    ASSERT_TRUE(ui.waitFor([&] { return ui.isEnabled("chooserConfirmButton"); }));
    ui.click("chooserConfirmButton");
    ui.settle();
    EXPECT_EQ(ui.store().roots().last(), path("Music"));
}

TEST_F(FolderChooser, AFolderInsideAConnectedOneChangesNothing) {
    ui.clickIn(ui.item("chooserRow:Documents"), "chooserOpenButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.text("chooserFolder") == path("Documents"); }));
    ASSERT_TRUE(ui.waitFor([&] { return ui.isEnabled("chooserConfirmButton"); }));
    ui.click("chooserConfirmButton");
    ASSERT_TRUE(ui.waitFor([&] { return !ui.isShown("chooserConfirmButton"); }));
    ui.settle();
    EXPECT_EQ(ui.store().roots().size(), 3);
}

TEST_F(FolderChooser, CancelChangesNothing) {
    ui.clickIn(ui.item("chooserRow:Music"), "chooserCheck");
    ui.click("chooserCancelButton");
    ASSERT_TRUE(ui.waitFor([&] { return !ui.isShown("chooserConfirmButton"); }));
    ui.settle();
    EXPECT_EQ(ui.store().roots().size(), 3);
    EXPECT_EQ(ui.store().fileCount(), 1) << "the scan results stay";
}

TEST_F(FolderChooser, UpGoesToTheParentFolder) {
    ui.clickIn(ui.item("chooserRow:Pictures"), "chooserOpenButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserRow:Holidays"); }));
    ui.click("chooserUpButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserRow:Music"); }));
    EXPECT_EQ(ui.text("chooserFolder"), QString::fromStdString(ui.home.home()));
}

}  // namespace
}  // namespace quorrin::testing
