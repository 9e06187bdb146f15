// FileListModel: presents `visible` for the view state, recomputed off the interface thread, with
// the roles a row needs and a selection that outlives the rows.
#include "ui/file_list_model.h"

#include "engine/calendar.h"
#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "ui/date_text.h"

#include <QSignalSpy>
#include <QTest>
#include <filesystem>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using testing::TempHome;
using Role = FileListModel::Role;

class FileListModelTest : public ::testing::Test {
protected:
    FileListModelTest() {
        for (const char* name : {"Documents", "Downloads", "Desktop"})
            home.makeDir(name);
        home.writeFile("Documents/Invoices/March.pdf", "march");
        home.writeFile("Documents/file10.txt", "ten");
        home.writeFile("Documents/file2.txt", "two");
        home.writeFile("Desktop/photo.png", "not really a picture");
        home.writeFile("Desktop/empty.txt", "");
    }

    // Makes the Store and the model, runs a scan of the given kind, and waits for the rows.
    void open(bool duplicates = false, bool health = false) {
        facade = std::make_unique<StoreFacade>();
        model = std::make_unique<FileListModel>();
        model->setStore(facade.get());
        model->setPage(QStringLiteral("All files"));
        facade->scan(false, duplicates, health, false);
        settle();
    }
    void settle() {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !facade->busy() && !model->computing(); }, 20000));
    }
    QStringList names() const {
        QStringList names;
        for (int row = 0; row < model->rowCount(); ++row)
            names.append(value(row, Role::name).toString());
        return names;
    }
    QVariant value(int row, Role role) const { return model->data(model->index(row), int(role)); }
    int rowOf(const QString& name) const { return int(names().indexOf(name)); }

    TempHome home;
    std::unique_ptr<StoreFacade> facade;
    std::unique_ptr<FileListModel> model;
};

TEST_F(FileListModelTest, RowsAreTheVisibleListOfTheStoreRules) {
    open();
    EXPECT_EQ(names(),
              (QStringList{"empty.txt", "file2.txt", "file10.txt", "March.pdf", "photo.png"}));
    EXPECT_EQ(model->count(), 5);
    EXPECT_EQ(model->totalBytes(), 5 + 3 + 3 + 20);
    // The search reads the whole path, ignoring case.
    model->setQuery(QStringLiteral("INVOICES"));
    settle();
    EXPECT_EQ(names(), (QStringList{"March.pdf"}));
    model->setQuery(QStringLiteral("file"));
    settle();
    EXPECT_EQ(names(), (QStringList{"file2.txt", "file10.txt"}));
    // The type filter, then a page whose base list is empty.
    model->setQuery(QString());
    model->setFilter(QStringLiteral("02 Images"));
    settle();
    EXPECT_EQ(names(), (QStringList{"photo.png"}));
    EXPECT_EQ(model->totalBytes(), 20);
    model->setFilter(QStringLiteral("All types"));
    model->setPage(QStringLiteral("Kept files"));
    settle();
    EXPECT_TRUE(names().isEmpty());
}

TEST_F(FileListModelTest, RolesGiveWhatARowShows) {
    open();
    const int march = rowOf(QStringLiteral("March.pdf"));
    EXPECT_EQ(value(march, Role::path).toString(),
              QString::fromStdString(home.path("Documents/Invoices/March.pdf")));
    EXPECT_EQ(value(march, Role::detail).toString(),
              QString::fromStdString(home.path("Documents/Invoices")));
    EXPECT_EQ(value(march, Role::detailKind).toString(), "folder");
    EXPECT_EQ(value(march, Role::size).toLongLong(), 5);
    EXPECT_EQ(value(march, Role::sizeText).toString(), "5 bytes");
    EXPECT_EQ(value(march, Role::iconSource).toString(), "image://fileicon/application/pdf");
    EXPECT_FALSE(value(march, Role::selected).toBool());
    EXPECT_FALSE(value(march, Role::kept).toBool());
    EXPECT_EQ(value(rowOf(QStringLiteral("empty.txt")), Role::sizeText).toString(), "Zero KB");
}

TEST_F(FileListModelTest, IssuesAndMatchesComeBeforeTheFolder) {
    home.writeFile("Desktop/copy of two.txt", "two");
    open(/*duplicates=*/true);
    const int copy = rowOf(QStringLiteral("file2.txt"));
    EXPECT_EQ(value(copy, Role::detailKind).toString(), "match");
    EXPECT_EQ(value(copy, Role::detail).toString(),
              "Matches: " + QString::fromStdString(home.path("Desktop/copy of two.txt")));

    facade->scan(false, false, true, false);
    settle();
    const int empty = rowOf(QStringLiteral("empty.txt"));
    EXPECT_EQ(value(empty, Role::detailKind).toString(), "issue");
    EXPECT_EQ(value(empty, Role::detail).toString(), "Empty file • review before clearing");
}

TEST_F(FileListModelTest, TheDateOfTheChosenBasisOnFindOlder) {
    const std::string old = home.path("Documents/file2.txt");
    const QDateTime june(QDate(2024, 6, 3), QTime(12, 0));
    testing::setModified(old, june.toSecsSinceEpoch());
    open();
    facade->scanOlder();
    model->setPage(QStringLiteral("FindOlder"));
    model->setDateBasis(QStringLiteral("Last modified date"));
    settle();
    const int row = rowOf(QStringLiteral("file2.txt"));
    ASSERT_GE(row, 0);
    EXPECT_EQ(value(row, Role::dateText).toString(), abbreviatedDate(june));
}

TEST_F(FileListModelTest, AChangeIsComputedInTheBackgroundWhileTheRowsStay) {
    open();
    QSignalSpy reset(model.get(), &QAbstractItemModel::modelReset);
    model->setQuery(QStringLiteral("file"));
    // The setter returns at once: the work is queued, the old rows are still shown.
    EXPECT_TRUE(model->computing());
    EXPECT_EQ(model->rowCount(), 5);
    EXPECT_EQ(reset.count(), 0);
    settle();
    EXPECT_EQ(names(), (QStringList{"file2.txt", "file10.txt"}));
    EXPECT_EQ(reset.count(), 1);
}

TEST_F(FileListModelTest, SeveralChangesInOneTurnMakeOneRecompute) {
    open();
    QSignalSpy rows(model.get(), &FileListModel::rowsChanged);
    model->setQuery(QStringLiteral("f"));
    model->setFilter(QStringLiteral("04 Documents"));
    model->setQuery(QStringLiteral("file"));
    settle();
    EXPECT_EQ(rows.count(), 1);
    EXPECT_EQ(names(), (QStringList{"file2.txt", "file10.txt"}));
}

TEST_F(FileListModelTest, KeepingChangesTheMarkWithoutRebuildingTheRows) {
    open();
    QSignalSpy reset(model.get(), &QAbstractItemModel::modelReset);
    QSignalSpy data(model.get(), &QAbstractItemModel::dataChanged);
    const int row = rowOf(QStringLiteral("photo.png"));
    model->toggleKeep(row);
    settle();
    EXPECT_TRUE(value(row, Role::kept).toBool());
    EXPECT_EQ(reset.count(), 0) << "the same rows stay, so a list keeps its scroll position";
    EXPECT_GE(data.count(), 1);
    model->toggleKeep(row);
    settle();
    EXPECT_FALSE(value(row, Role::kept).toBool());
    EXPECT_TRUE(facade->store().kept().empty());
}

TEST_F(FileListModelTest, TheSelectionOutlivesTheRowsAndSelectVisibleReplacesIt) {
    open();
    model->setSelected(rowOf(QStringLiteral("photo.png")), true);
    model->setQuery(QStringLiteral("file"));
    settle();
    EXPECT_EQ(model->selectedCount(), 1);  // hidden, still selected
    model->selectVisible();
    EXPECT_EQ(model->selectedCount(), 2);
    EXPECT_FALSE(model->isSelected(home.path("Desktop/photo.png")));
    EXPECT_TRUE(value(0, Role::selected).toBool());
}

TEST_F(FileListModelTest, KeepSelectedKeepsOnlyTheSelectedRowsShown) {
    open();
    model->setSelected(rowOf(QStringLiteral("photo.png")), true);
    model->setSelected(rowOf(QStringLiteral("file2.txt")), true);
    model->setFilter(QStringLiteral("04 Documents"));
    settle();
    model->keepSelected();
    settle();
    EXPECT_EQ(facade->store().kept(), (std::set<std::string>{home.path("Documents/file2.txt")}));
    EXPECT_EQ(model->selectedCount(), 0);
}

TEST_F(FileListModelTest, MovingToTrashNeedsAnIdleStoreAndEmptiesTheSelection) {
    open();
    model->setSelected(rowOf(QStringLiteral("file2.txt")), true);
    model->moveSelectedToTrash();
    EXPECT_EQ(model->selectedCount(), 0);
    settle();
    EXPECT_FALSE(std::filesystem::exists(home.path("Documents/file2.txt")));
    EXPECT_EQ(facade->status(), "1 files moved to Trash");

    model->setSelected(rowOf(QStringLiteral("file10.txt")), true);
    facade->scan(false, false, false, false);  // busy now
    model->moveSelectedToTrash();
    EXPECT_EQ(model->selectedCount(), 0);
    settle();
    EXPECT_TRUE(std::filesystem::exists(home.path("Documents/file10.txt")));
}

TEST_F(FileListModelTest, ASidebarResetClearsTheSearchFiltersAndSelection) {
    open();
    model->setQuery(QStringLiteral("file"));
    model->setFilter(QStringLiteral("04 Documents"));
    model->setIssueFilter(QStringLiteral("Empty"));
    settle();
    model->selectVisible();
    model->resetView();
    EXPECT_EQ(model->query(), "");
    EXPECT_EQ(model->filter(), "All types");
    EXPECT_EQ(model->issueFilter(), "All signals");
    EXPECT_EQ(model->selectedCount(), 0);
    settle();
    EXPECT_EQ(model->rowCount(), 5);
}

TEST_F(FileListModelTest, TheFindOlderInputsStartAsTheControlsDo) {
    FileListModel fresh;
    EXPECT_EQ(fresh.ageMonths(), 24);
    EXPECT_EQ(fresh.dateBasis(), "Created date");
    EXPECT_EQ(fresh.olderMode(), "Older than");
    const QDateTime now = QDateTime::currentDateTime();
    EXPECT_LE(fresh.throughDate(), now);
    EXPECT_GT(fresh.throughDate().secsTo(now), -1);
    EXPECT_EQ(fresh.fromDate().date(), fresh.throughDate().date().addYears(-2));
    EXPECT_EQ(fresh.listView().olderQuery.months, 24);
    fresh.setAgeMonths(6.9);
    EXPECT_EQ(fresh.listView().olderQuery.months, 6);
}

}  // namespace
}  // namespace quorrin::ui
