// The list actions act on the rows of the current view state, also while those are being computed.
#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "ui/file_list_model.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using testing::TempHome;

class ListActionsCurrentView : public ::testing::Test {
protected:
    ListActionsCurrentView() {
        for (const char* name : {"Documents", "Downloads", "Desktop"})
            home.makeDir(name);
        home.writeFile("Documents/Invoices/March.pdf", "march");
        home.writeFile("Documents/file10.txt", "ten");
        home.writeFile("Documents/file2.txt", "two");
        home.writeFile("Desktop/photo.png", "not really a picture");
        facade = std::make_unique<StoreFacade>();
        model = std::make_unique<FileListModel>();
        model->setStore(facade.get());
        model->setPage(QStringLiteral("All files"));
        facade->scan(false, false, false, false);
        settle();
        EXPECT_EQ(model->count(), 4);
    }
    void settle() {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !facade->busy() && !model->computing(); }, 20000));
    }
    std::set<std::string> kept() const { return facade->store().kept(); }

    TempHome home;
    std::unique_ptr<StoreFacade> facade;
    std::unique_ptr<FileListModel> model;
};

TEST_F(ListActionsCurrentView, SelectVisibleRightAfterASearchSelectsWhatTheSearchShows) {
    model->setQuery(QStringLiteral("file"));
    ASSERT_TRUE(model->computing());
    model->selectVisible();
    EXPECT_EQ(model->selectedCount(), 2);
    EXPECT_TRUE(model->isSelected(home.path("Documents/file2.txt")));
    EXPECT_TRUE(model->isSelected(home.path("Documents/file10.txt")));
    // The rows acted on are the rows shown.
    EXPECT_EQ(model->count(), 2);
    settle();
    EXPECT_EQ(model->count(), 2);
    EXPECT_EQ(model->selectedCount(), 2);
}

TEST_F(ListActionsCurrentView, KeepRightAfterAFilterChangeKeepsOnlyWhatTheFilterShows) {
    model->selectVisible();
    ASSERT_EQ(model->selectedCount(), 4);
    model->setFilter(QStringLiteral("02 Images"));
    ASSERT_TRUE(model->computing());
    model->keepSelected();
    EXPECT_EQ(kept(), (std::set<std::string>{home.path("Desktop/photo.png")}));
    EXPECT_EQ(model->selectedCount(), 0);
    settle();
}

TEST_F(ListActionsCurrentView, MoveToTrashRightAfterASearchTrashesOnlyWhatTheSearchShows) {
    model->selectVisible();
    model->setQuery(QStringLiteral("march"));
    ASSERT_TRUE(model->computing());
    model->moveSelectedToTrash();
    settle();
    EXPECT_FALSE(testing::existsNoFollow(home.path("Documents/Invoices/March.pdf")));
    EXPECT_TRUE(testing::existsNoFollow(home.path(".local/share/Trash/files/March.pdf")));
    for (const char* name : {"Documents/file10.txt", "Documents/file2.txt", "Desktop/photo.png"})
        EXPECT_TRUE(testing::existsNoFollow(home.path(name))) << name;
}

TEST_F(ListActionsCurrentView, WithNothingPendingTheRowsShownAreUsed) {
    model->setQuery(QStringLiteral("file"));
    settle();
    model->selectVisible();
    EXPECT_EQ(model->selectedCount(), 2);
}

}  // namespace
}  // namespace quorrin::ui
