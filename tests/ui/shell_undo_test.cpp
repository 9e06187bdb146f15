// "Undo arrangement": shown once Start has moved files, it puts them back and goes away.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

namespace fs = std::filesystem;

TEST(ShellUndo, StartThenUndoArrangement) {
    UiFixture ui;
    ui.home.writeFile("Documents/report.pdf", "report");
    ui.home.writeFile("Desktop/song.mp3", "song");
    ui.open();
    EXPECT_FALSE(ui.isShown("undoButton"));
    ui.pressStart();
    EXPECT_TRUE(fs::exists(ui.home.path("Documents/04 Documents/report.pdf")));
    EXPECT_TRUE(fs::exists(ui.home.path("Desktop/03 Audio/song.mp3")));
    EXPECT_EQ(ui.text("statusText"), "Done • 2 files arranged • 0 duplicates sent to Trash");
    ASSERT_TRUE(ui.isShown("undoButton"));
    EXPECT_EQ(ui.text("undoButton"), "Undo arrangement");
    EXPECT_TRUE(ui.isEnabled("undoButton"));

    ui.click("undoButton");
    ui.settle();
    EXPECT_TRUE(fs::exists(ui.home.path("Documents/report.pdf")));
    EXPECT_TRUE(fs::exists(ui.home.path("Desktop/song.mp3")));
    EXPECT_EQ(ui.text("statusText"),
              "Restored 2 arranged files. Trashed files can be restored from the Trash.");
    EXPECT_FALSE(ui.isShown("undoButton"));
}

TEST(ShellUndo, TheButtonComesBackAtTheNextLaunch) {
    UiFixture ui;
    ui.home.writeFile("Documents/report.pdf", "report");
    ui.open();
    ui.pressStart();
    ui.open();  // a relaunch reads the undo history
    EXPECT_TRUE(ui.isShown("undoButton"));
}

}  // namespace
}  // namespace quorrin::testing
