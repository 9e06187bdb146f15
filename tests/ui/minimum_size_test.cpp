// Every page at the window's minimum size over the sample home: no fixed text is cut short and no
// two controls overlap; a PNG of each page is written for a look (run with QT_SCALE_FACTOR=1.5 for
// the enlarged desktop).
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QDir>
#include <QImage>
#include <QQuickItem>
#include <QRectF>
#include <QStringList>
#include <functional>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

// Texts that show file names, paths and statuses of any length: they are cut in the middle or at
// the end on purpose, and read whole by a screen reader.
const QStringList variableTexts = {"rowName",       "rowDetail",  "rootPath",    "rootName",
                                   "chooserFolder", "statusText", "activityText"};

class MinimumSize : public ::testing::Test {
protected:
    void SetUp() override {
        writeSampleHome(ui.home);
        ui.open();
        ui.window().resize(ui.window().minimumSize());
        ui.settle();
        ASSERT_TRUE(QDir().mkpath(QStringLiteral(QUORRIN_SCREENSHOT_DIR)));
    }

    // Visible items under `root` for which `test` holds, with where they are in the window.
    void visit(QQuickItem* item, const std::function<void(QQuickItem*)>& each) {
        if (!item->isVisible() || item->opacity() == 0)
            return;
        each(item);
        for (QQuickItem* child : item->childItems())
            visit(child, each);
    }

    // The fixed texts on show that are cut short: elided, or drawn beyond their own box or beyond
    // the window.
    QStringList cutTexts() {
        QStringList cut;
        const QRectF windowRect(0, 0, ui.window().width(), ui.window().height());
        visit(ui.window().contentItem(), [&](QQuickItem* item) {
            if (!item->inherits("QQuickText") || variableTexts.contains(item->objectName()))
                return;
            const QString text = item->property("text").toString();
            if (text.isEmpty())
                return;
            const bool truncated = item->property("truncated").toBool();
            const double contentWidth = item->property("contentWidth").toDouble();
            const double contentHeight = item->property("contentHeight").toDouble();
            const bool overflows = contentWidth > item->width() + 1 ||
                                   (item->height() > 0 && contentHeight > item->height() + 1);
            if (truncated || overflows)
                cut.append(text + (truncated ? " (elided)" : " (overflows)"));
        });
        return cut;
    }

    // Items laid out side by side or one under the other that overlap, and anything the window
    // cannot show because the page is taller than the window.
    QStringList overlaps() {
        QStringList found;
        for (QQuickItem* top : ui.window().contentItem()->childItems())
            if (top->isVisible() && top->height() > ui.window().height() + 0.5)
                found.append("the window's content is taller than the window");
        visit(ui.window().contentItem(), [&](QQuickItem* item) {
            // A row the list is still making or keeps for reuse has no size yet and is not drawn.
            if (!item->inherits("QQuickLayout") || item->width() <= 0 || item->height() <= 0)
                return;
            item->ensurePolished();
            std::vector<QQuickItem*> shown;
            for (QQuickItem* child : item->childItems())
                if (child->isVisible() && child->width() > 0 && child->height() > 0)
                    shown.push_back(child);
            for (std::size_t i = 0; i < shown.size(); ++i)
                for (std::size_t j = i + 1; j < shown.size(); ++j) {
                    const QRectF a(shown[i]->position(), shown[i]->size());
                    const QRectF b(shown[j]->position(), shown[j]->size());
                    if (a.intersected(b).width() > 0.5 && a.intersected(b).height() > 0.5)
                        found.append(shown[i]->objectName() + " / " + shown[j]->objectName() +
                                     " in " + item->objectName());
                }
        });
        return found;
    }

    void shoot(const QString& page) {
        ui.settle();
        QString name = page.toLower();
        name.replace(QStringLiteral(" & "), QStringLiteral("-"));
        name.replace(QLatin1Char(' '), QLatin1Char('-'));
        const QImage image = ui.grab();
        ASSERT_FALSE(image.isNull());
        const QString path = QStringLiteral(QUORRIN_SCREENSHOT_DIR) + QStringLiteral("/minimum-") +
                             name + QStringLiteral(".png");
        ASSERT_TRUE(image.save(path, "PNG", 0)) << path.toStdString();
    }

    UiFixture ui;
};

TEST_F(MinimumSize, NoFixedTextIsCutOnAnyPage) {
    const QStringList pages = {"Overview",   "All files",          "FindOlder",
                               "Duplicates", "Downloads review",   "File health",
                               "Kept files", "Folders & settings", "Activity"};
    for (const QString& page : pages) {
        ui.pressSidebar(page);
        if (page != "Overview" && page != "Folders & settings" && page != "Activity")
            ui.runPageAction();
        EXPECT_EQ(cutTexts(), QStringList{}) << page.toStdString();
        EXPECT_EQ(overlaps(), QStringList{}) << page.toStdString();
        shoot(page);
    }
    ui.pressSidebar("FindOlder");
    ui.choose("olderModePicker", "Custom dates");
    EXPECT_EQ(cutTexts(), QStringList{}) << "FindOlder, custom dates";
    EXPECT_EQ(overlaps(), QStringList{}) << "FindOlder, custom dates";
    shoot("FindOlder custom");
}

}  // namespace
}  // namespace quorrin::testing
