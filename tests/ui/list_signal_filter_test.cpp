// The signal filter of the File health page, and its lack of effect on every other page.
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class ListSignalFilter : public ::testing::Test {
protected:
    void SetUp() override {
        ui.home.writeFile("Documents/draft.txt", "");                      // Empty file
        ui.home.writeFile("Desktop/receipt.jpg", "not really a picture");  // Image could not…
        ui.home.writeFile("Downloads/setup.sh", "echo hi");                // Installer or…
        ui.home.writeFile("Documents/letter.txt", "dear");                 // no finding
        ui.open();
        ui.pressSidebar("File health");
        ui.runPageAction();
    }
    UiFixture ui;
};

TEST_F(ListSignalFilter, EmptyFilesListsTheEmptyFileNotTheUnreadableImage) {
    ASSERT_EQ(ui.rowNames(), (QStringList{"draft.txt", "receipt.jpg", "setup.sh"}));
    EXPECT_EQ(ui.text("rowDetail", ui.row("draft.txt")), "Empty file • review before clearing");
    EXPECT_EQ(ui.text("rowDetail", ui.row("receipt.jpg")), "Image could not be opened");
    EXPECT_TRUE(ui.isShown("healthPicker"));
    ui.choose("healthPicker", "Empty files");
    EXPECT_EQ(ui.rowNames(), QStringList{"draft.txt"});
    ui.choose("healthPicker", "Unreadable images / PDFs");
    EXPECT_EQ(ui.rowNames(), QStringList{"receipt.jpg"});
    ui.choose("healthPicker", "Installers / executables");
    EXPECT_EQ(ui.rowNames(), QStringList{"setup.sh"});
    ui.choose("healthPicker", "All signals");
    EXPECT_EQ(ui.rowNames().size(), 3);
}

TEST_F(ListSignalFilter, NoEffectOnAnyOtherPage) {
    ui.choose("healthPicker", "Empty files");
    ASSERT_EQ(ui.fileList().issueFilter(), "Empty");
    // A page change that keeps the filters, as the Overview's jumps do.
    for (const QString page : {"All files", "Kept files", "Downloads review", "Duplicates"}) {
        ui.window().setProperty("page", page);
        ui.settle();
        ASSERT_EQ(ui.fileList().issueFilter(), "Empty");
        EXPECT_FALSE(ui.isShown("healthPicker")) << page.toStdString();
        if (page == "All files") {
            EXPECT_EQ(ui.rowNames(),
                      (QStringList{"draft.txt", "letter.txt", "receipt.jpg", "setup.sh"}));
        }
    }
}

}  // namespace
}  // namespace quorrin::testing
