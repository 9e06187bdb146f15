// "Preview Start" on the Overview: the sheet with the counts and the grouped, searchable list;
// "Start" there runs exactly the plan shown, "Cancel" changes nothing.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QDir>
#include <QImage>
#include <QQuickItem>
#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

namespace fs = std::filesystem;

class OverviewPreviewStart : public ::testing::Test {
protected:
    void SetUp() override {
        ui.home.writeFile("Documents/report.pdf", "report");
        ui.home.writeFile("Documents/photo.jpg", "photo");
        ui.home.writeFile("Documents/02 Images/photo.jpg", "an older photo");
        ui.home.writeFile("Desktop/clip.mov", "clip");
        ui.home.writeFile("Desktop/clip copy.mov", "clip");
        ui.open();
    }

    // Presses "Preview Start" and waits for the sheet.
    void preview() {
        ASSERT_TRUE(ui.isEnabled("previewStartButton"));
        ui.click("previewStartButton");
        ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("previewTitle"); }));
        ui.settle();
    }
    QString count(const QString& tile) { return ui.text("value", ui.item("previewCount:" + tile)); }
    int rows() { return ui.item("previewList")->property("count").toInt(); }
    std::string in(const std::string& relative) const { return ui.home.path(relative); }

    UiFixture ui;
};

TEST_F(OverviewPreviewStart, ShowsTheCountsAndTheListAndChangesNothing) {
    EXPECT_EQ(ui.text("previewStartButton"), "Preview Start");
    preview();
    EXPECT_EQ(ui.text("previewTitle"), "Preview of Start");
    EXPECT_EQ(count("01 Videos"), "1");
    EXPECT_EQ(count("02 Images"), "1");
    EXPECT_EQ(count("04 Documents"), "1");
    EXPECT_EQ(count("Duplicates to Trash"), "1");
    EXPECT_FALSE(ui.isShown("previewCount:03 Audio"));
    EXPECT_EQ(rows(), 4);
    // Nothing moved, nothing trashed, no history: only the plan exists.
    EXPECT_TRUE(fs::exists(in("Documents/photo.jpg")));
    EXPECT_TRUE(fs::exists(in("Desktop/clip copy.mov")));
    EXPECT_FALSE(fs::exists(in("Desktop/01 Videos")));
    EXPECT_FALSE(fs::exists(in(".local/share/QUORRIN/last-organization.json")));
    EXPECT_FALSE(ui.store().busy());

    ui.typeInto("previewSearch", "clip");
    EXPECT_EQ(rows(), 2);
    ui.typeInto("previewSearch", "nothing like it");
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(ui.text("previewEmptyText"), "No planned file matches your search.");
    ui.typeInto("previewSearch", "02 images/photo (2)");
    ASSERT_EQ(rows(), 1);
    EXPECT_EQ(ui.text("previewRowName"), "photo.jpg");
    EXPECT_EQ(ui.text("previewRowDetail"),
              QString::fromStdString("→ " + in("Documents/02 Images/photo (2).jpg")));
}

TEST_F(OverviewPreviewStart, CancelClosesTheSheetAndChangesNothing) {
    preview();
    ui.click("cancelPreviewButton");
    ASSERT_TRUE(ui.waitFor([&] { return !ui.isShown("previewTitle"); }));
    EXPECT_FALSE(ui.store().hasStartPlan());
    EXPECT_TRUE(fs::exists(in("Documents/photo.jpg")));
    EXPECT_TRUE(fs::exists(in("Desktop/clip copy.mov")));
    EXPECT_FALSE(fs::exists(in("Desktop/01 Videos")));
    EXPECT_FALSE(fs::exists(in(".local/share/QUORRIN/last-organization.json")));
    EXPECT_FALSE(fs::exists(in(".local/share/Trash")));
    EXPECT_EQ(ui.store().moveCount(), 0);
}

TEST_F(OverviewPreviewStart, StartRunsExactlyThePlanShown) {
    preview();
    // A file that appears after the preview is left for the next Start.
    ui.home.writeFile("Desktop/later.pdf", "later");
    EXPECT_EQ(ui.text("runPreviewButton"), "Start");
    ui.click("runPreviewButton");
    ui.settle();
    EXPECT_FALSE(ui.isShown("previewTitle"));
    EXPECT_EQ(ui.text("statusText"), "Done • 3 files arranged • 1 duplicates sent to Trash");
    EXPECT_TRUE(fs::exists(in("Documents/02 Images/photo (2).jpg")));
    EXPECT_TRUE(fs::exists(in("Documents/04 Documents/report.pdf")));
    // One clip went to the Trash as a copy, the other into its category folder.
    EXPECT_NE(fs::exists(in("Desktop/01 Videos/clip.mov")),
              fs::exists(in("Desktop/01 Videos/clip copy.mov")));
    EXPECT_FALSE(fs::exists(in("Desktop/clip.mov")));
    EXPECT_FALSE(fs::exists(in("Desktop/clip copy.mov")));
    EXPECT_TRUE(fs::exists(in("Desktop/later.pdf")));
    EXPECT_EQ(ui.store().moveCount(), 3);
}

TEST_F(OverviewPreviewStart, TheHeaderStartNeedsNoPreview) {
    ui.pressStart();
    EXPECT_EQ(ui.text("statusText"), "Done • 3 files arranged • 1 duplicates sent to Trash");
    EXPECT_FALSE(ui.isShown("previewTitle"));
}

// The sheet over the sample home, saved beside the page screenshots.
TEST(OverviewPreviewStartScreenshot, TheSheet) {
    UiFixture ui;
    writeSampleHome(ui.home);
    ui.open();
    ui.click("previewStartButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("previewTitle"); }));
    ui.settle();
    EXPECT_GT(ui.item("previewList")->property("count").toInt(), 0);
    const QImage image = ui.grab();
    ASSERT_FALSE(image.isNull());
    ASSERT_TRUE(QDir().mkpath(QStringLiteral(QUORRIN_SCREENSHOT_DIR)));
    EXPECT_TRUE(image.save(QStringLiteral(QUORRIN_SCREENSHOT_DIR "/preview-start.png"), "PNG", 0));
}

}  // namespace
}  // namespace quorrin::testing
