// The header by page: titles, subtitles and the page action; FindOlder has no "Start"; the
// Downloads review subtitle follows the weeks setting at once.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

TEST(ShellHeader, FindOlderShowsFindFilesAndNoStart) {
    UiFixture ui;
    ui.open();
    ui.pressSidebar("FindOlder");
    EXPECT_EQ(ui.text("headerTitle"), "FindOlder");
    EXPECT_EQ(ui.text("headerSubtitle"),
              "Find personal files by their actual Created or Last modified date. Connected "
              "folders only.");
    EXPECT_EQ(ui.text("pageActionButton"), "Find files");
    EXPECT_FALSE(ui.isShown("startButton"));
    EXPECT_FALSE(ui.isShown("clearSelectedButton"));
}

TEST(ShellHeader, ActionAndSubtitleOfEveryPage) {
    UiFixture ui;
    ui.open();
    const struct {
        const char* page;
        const char* action;
        const char* subtitle;
    } pages[] = {
        {"All files", "Quick scan", "Find, review and manage your files in one place."},
        {"Duplicates", "Check duplicates",
         "Not checked yet. Click Check duplicates to compare content; large files take longer."},
        {"Downloads review", "Check usage",
         "Weekly review • Last used over 4 weeks ago. Modified date is used when usage history is "
         "unavailable."},
        {"File health", "Check health",
         "Not checked yet. Click Check health to inspect readability and file types."},
        {"Kept files", "Quick scan", "Find, review and manage your files in one place."},
        {"Folders & settings", "Quick scan",
         "Choose personal folders and control how your clean-up works."},
        {"Activity", "Quick scan", "Find, review and manage your files in one place."},
    };
    for (const auto& expected : pages) {
        ui.pressSidebar(expected.page);
        EXPECT_EQ(ui.text("headerTitle"), expected.page);
        EXPECT_EQ(ui.text("pageActionButton"), expected.action) << expected.page;
        EXPECT_EQ(ui.text("headerSubtitle"), expected.subtitle) << expected.page;
        EXPECT_TRUE(ui.isShown("startButton")) << expected.page;
    }
}

TEST(ShellHeader, SubtitlesChangeOnceTheCheckHasRun) {
    UiFixture ui;
    ui.home.writeFile("Documents/a.txt", "a");
    ui.open();
    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    EXPECT_EQ(ui.text("headerSubtitle"),
              "SHA-256 content matches. One original is always retained.");
    ui.pressSidebar("File health");
    ui.runPageAction();
    EXPECT_EQ(ui.text("headerSubtitle"),
              "Unreadable images / PDFs, empty files and executable files. Review signals, not a "
              "malware diagnosis.");
}

TEST(ShellHeader, TheDownloadsReviewSubtitleFollowsTheWeeksAtOnce) {
    UiFixture ui;
    ui.writeSettings(R"({"weeks": 7})");
    ui.open();
    ui.pressSidebar("Downloads review");
    QQuickItem* stepper = ui.item("reviewWeeksStepper");
    ui.clickIn(stepper, "increment");
    EXPECT_EQ(ui.store().weeks(), 8);
    EXPECT_EQ(ui.text("headerSubtitle"),
              "Weekly review • Last used over 8 weeks ago. Modified date is used when usage "
              "history is unavailable.");
    EXPECT_EQ(ui.text("label", stepper), "Unused for 8 weeks");
}

TEST(ShellHeader, AByteCountOfZeroShowsTheZeroText) {
    UiFixture ui;
    ui.home.writeFile("Documents/empty.txt", "");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    EXPECT_EQ(ui.text("selectionCaption"), "1 files • Zero KB");
    EXPECT_EQ(ui.text("rowSize", ui.row("empty.txt")), "Zero KB");
}

}  // namespace
}  // namespace quorrin::testing
