// What a screen reader hears: the title as a heading, the subtitle, the cards, the notes, the
// empty states, the activity rows and each file row as one item with controls named for the file.
#include "tests/support/sample_files.h"
#include "tests/support/ui/accessible_tree.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QQuickItem>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

class AccessibleTexts : public ::testing::Test {
protected:
    const AccessibleNode* node(QAccessible::Role role, const QString& name) {
        nodes = showingNodes(ui.window());
        return findNode(nodes, role, name);
    }
    // The names of the nodes under the row of this file.
    QStringList rowChildren(const QString& fileName) {
        nodes = showingNodes(ui.window());
        const AccessibleNode* row = nodeOf(nodes, ui.row(fileName));
        QStringList names;
        if (!row)
            return names;
        for (const AccessibleNode& child : nodes)
            if (child.parent >= 0 && &nodes[child.parent] == row)
                names.append(child.name);
        return names;
    }

    UiFixture ui;
    std::vector<AccessibleNode> nodes;
};

TEST_F(AccessibleTexts, TheHeaderAndTheOverviewAreRead) {
    ui.open();
    EXPECT_NE(node(QAccessible::Heading, "Make room for what matters."), nullptr);
    EXPECT_NE(node(QAccessible::StaticText, "A calmer computer begins with a cleaner space."),
              nullptr);
    EXPECT_NE(node(QAccessible::StaticText, "FILES INDEXED: 0"), nullptr);
    EXPECT_NE(node(QAccessible::StaticText, "DUPLICATE SPACE: Not checked"), nullptr);
    EXPECT_NE(node(QAccessible::StaticText, "DOWNLOADS TO REVIEW: 0"), nullptr);
    EXPECT_NE(node(QAccessible::Heading, "Everything has its place."), nullptr);
    EXPECT_NE(node(QAccessible::StaticText,
                   "Start sorts loose files into Videos, Images, Audio, Documents, Installers and "
                   "Projects. Existing folder structures, project folders and system files are "
                   "protected."),
              nullptr);
    const AccessibleNode* review = node(QAccessible::Button, "Your weekly review is ready");
    ASSERT_NE(review, nullptr);
    EXPECT_EQ(review->description, "Keep what matters. Clear what doesn’t.");
    EXPECT_NE(node(QAccessible::Button, "3 folders connected"), nullptr);
    EXPECT_NE(node(QAccessible::StaticText, "LOCAL • PRIVATE"), nullptr);

    ui.pressSidebar("Duplicates");
    EXPECT_NE(node(QAccessible::Heading, "Duplicates"), nullptr);
    EXPECT_NE(node(QAccessible::StaticText,
                   "Not checked yet. Click Check duplicates to compare content; large files take "
                   "longer."),
              nullptr);
    EXPECT_NE(node(QAccessible::StaticText,
                   "Click Check duplicates. Quick scan does not compare file content."),
              nullptr);
}

TEST_F(AccessibleTexts, TheStatusBarReadsTheStatusAfterAScan) {
    ui.home.writeFile("Documents/Report.pdf", "report");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    EXPECT_NE(node(QAccessible::StatusBar, "Quick scan complete • 1 files • 0 notes"), nullptr);
    EXPECT_NE(node(QAccessible::StaticText, "1 files • 6 bytes"), nullptr);
}

TEST_F(AccessibleTexts, AFileRowReadsAsOneItemWithControlsNamedForTheFile) {
    ui.home.writeFile("Documents/Report.pdf", "report");
    ui.open();
    ui.pressSidebar("All files");
    ui.runPageAction();
    const QString folder = QString::fromStdString(ui.home.path("Documents"));
    EXPECT_NE(node(QAccessible::List, "All files"), nullptr);
    const AccessibleNode* row = node(QAccessible::ListItem, "Report.pdf, " + folder + ", 6 bytes");
    ASSERT_NE(row, nullptr);
    EXPECT_FALSE(row->state.selected);
    const QString reveal = ui.text("rowRevealButton", ui.row("Report.pdf"));
    QString revealName = reveal;
    revealName.insert(reveal.indexOf(' '), " Report.pdf");
    EXPECT_EQ(rowChildren("Report.pdf"),
              (QStringList{"Select Report.pdf", "Keep Report.pdf", revealName}));

    ui.clickIn(ui.row("Report.pdf"), "rowCheck");
    ui.clickIn(ui.row("Report.pdf"), "rowKeepButton");
    row = node(QAccessible::ListItem, "Report.pdf, " + folder + ", 6 bytes, kept");
    ASSERT_NE(row, nullptr);
    EXPECT_TRUE(row->state.selected);
    EXPECT_EQ(rowChildren("Report.pdf"),
              (QStringList{"Select Report.pdf", "Unkeep Report.pdf", revealName}));
}

TEST_F(AccessibleTexts, RowsReadTheFindingOrTheMatchingOriginal) {
    ui.home.writeFile("Documents/a.txt", "same");
    ui.home.writeFile("Downloads/b.txt", "same");
    ui.home.writeFile("Documents/empty.txt", "");
    ui.open();
    ui.pressSidebar("Duplicates");
    ui.runPageAction();
    const QString original = QString::fromStdString(ui.home.path("Documents/a.txt"));
    EXPECT_NE(node(QAccessible::ListItem, "b.txt, Matches: " + original + ", 4 bytes"), nullptr);

    ui.pressSidebar("File health");
    ui.runPageAction();
    const QString detail = ui.text("rowDetail", ui.row("empty.txt"));
    EXPECT_FALSE(detail.isEmpty());
    EXPECT_NE(node(QAccessible::ListItem, "empty.txt, " + detail + ", Zero KB"), nullptr);
}

TEST_F(AccessibleTexts, FindOlderRowsReadTheirDate) {
    setModified(ui.home.writeFile("Documents/old.txt", "old"), daysAgo(400));
    ui.home.writeFile("Documents/new.txt", "new");
    ui.open();
    ui.pressSidebar("FindOlder");
    EXPECT_NE(node(QAccessible::StaticText, "Choose a timeline, then click Find files."), nullptr);
    ui.choose("dateBasisPicker", "Last modified date");
    ui.click("preset:1y");
    ui.runPageAction();
    EXPECT_NE(node(QAccessible::Heading, "Older than 1 year"), nullptr);
    EXPECT_EQ(ui.rowNames(), QStringList{"old.txt"});
    const QString date = ui.text("rowDate", ui.row("old.txt"));
    ASSERT_FALSE(date.isEmpty());
    const QString folder = QString::fromStdString(ui.home.path("Documents"));
    EXPECT_NE(node(QAccessible::ListItem,
                   "old.txt, " + folder + ", " + date + ", Last modified date, 3 bytes"),
              nullptr);
}

TEST_F(AccessibleTexts, ActivityRowsAreRead) {
    ui.open();
    ui.pressSidebar("Activity");
    EXPECT_NE(node(QAccessible::StaticText, "Your scan and clean-up history will appear here."),
              nullptr);
    ui.pressSidebar("Downloads review");
    ui.click("markReviewDoneButton");
    ui.pressSidebar("Activity");
    const QString time = ui.text("activityTime");
    EXPECT_NE(node(QAccessible::ListItem, "Weekly Downloads review completed, " + time), nullptr);
}

}  // namespace
}  // namespace quorrin::testing
