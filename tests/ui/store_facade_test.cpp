// StoreFacade: the Store's published properties as Qt properties with change signals, and its
// operations, over a temporary HOME.
#include "ui/store_facade.h"

#include "store/locations.h"
#include "store/settings.h"
#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using testing::TempHome;

class StoreFacadeTest : public ::testing::Test {
protected:
    StoreFacadeTest() {
        for (const char* name : {"Documents", "Downloads", "Desktop"})
            home.makeDir(name);
    }

    QString path(const std::string& relative) const {
        return QString::fromStdString(home.path(relative));
    }
    bool idle(StoreFacade& facade) {
        return QTest::qWaitFor([&] { return !facade.busy(); }, 20000);
    }

    TempHome home;
};

TEST_F(StoreFacadeTest, PublishesTheStoresStateAtStart) {
    StoreFacade facade;
    EXPECT_EQ(facade.roots(), (QStringList{path("Documents"), path("Downloads"), path("Desktop")}));
    EXPECT_EQ(facade.rootNames(), (QStringList{"Documents", "Downloads", "Desktop"}));
    EXPECT_EQ(facade.status(), "Your space. In order.");
    EXPECT_EQ(facade.weeks(), 4);
    EXPECT_TRUE(facade.autoDuplicates());
    EXPECT_TRUE(facade.inspect());
    EXPECT_FALSE(facade.busy());
    EXPECT_FALSE(facade.duplicatesChecked());
    EXPECT_FALSE(facade.healthChecked());
    EXPECT_FALSE(facade.olderScanned());
    EXPECT_EQ(facade.fileCount(), 0);
    EXPECT_EQ(facade.olderFileCount(), 0);
    EXPECT_EQ(facade.keptCount(), 0);
    EXPECT_EQ(facade.moveCount(), 0);
    EXPECT_EQ(facade.activity()->count(), 0);
    EXPECT_TRUE(facade.reviewDue());
}

TEST_F(StoreFacadeTest, WritesGoToTheStoreAndAreSignalled) {
    StoreFacade facade;
    QSignalSpy weeks(&facade, &StoreFacade::weeksChanged);
    QSignalSpy autoDuplicates(&facade, &StoreFacade::autoDuplicatesChanged);
    QSignalSpy inspect(&facade, &StoreFacade::inspectChanged);
    facade.setWeeks(8);
    facade.setAutoDuplicates(false);
    facade.setInspect(false);
    EXPECT_EQ(weeks.count(), 1);
    EXPECT_EQ(autoDuplicates.count(), 1);
    EXPECT_EQ(inspect.count(), 1);
    EXPECT_EQ(facade.store().weeks(), 8);
    EXPECT_FALSE(facade.store().autoDuplicates());
    EXPECT_FALSE(facade.store().inspect());
    // Only the weeks are saved.
    EXPECT_EQ(store::Settings(store::settingsPath()).read().weeks, 8);
}

TEST_F(StoreFacadeTest, LogShowsInStatusAndActivity) {
    StoreFacade facade;
    QSignalSpy status(&facade, &StoreFacade::statusChanged);
    QSignalSpy activity(&facade, &StoreFacade::activityChanged);
    QSignalSpy rows(facade.activity(), &ActivityModel::countChanged);
    facade.log(QStringLiteral("a"));
    facade.log(QStringLiteral("b"));
    EXPECT_EQ(facade.status(), "b");
    EXPECT_EQ(status.count(), 2);
    EXPECT_EQ(activity.count(), 2);
    EXPECT_EQ(rows.count(), 2);
    EXPECT_EQ(facade.activity()->count(), 2);
}

TEST_F(StoreFacadeTest, AScanWorksInTheBackgroundAndPublishesHere) {
    home.writeFile("Documents/a.txt", "alpha");
    home.writeFile("Desktop/b.txt", "beta");
    StoreFacade facade;
    QSignalSpy busy(&facade, &StoreFacade::busyChanged);
    QSignalSpy files(&facade, &StoreFacade::filesChanged);
    QSignalSpy source(&facade, &StoreFacade::listSourceChanged);
    facade.scan(false, false, false, false);
    EXPECT_TRUE(facade.busy()) << "busy is set before the work starts";
    EXPECT_EQ(files.count(), 0) << "results arrive through the event loop";
    ASSERT_TRUE(idle(facade));
    EXPECT_EQ(busy.count(), 2);
    EXPECT_GE(files.count(), 1);
    EXPECT_GE(source.count(), 1);
    EXPECT_EQ(facade.fileCount(), 2);
    EXPECT_EQ(facade.snapshot().files->size(), 2u);
}

TEST_F(StoreFacadeTest, DuplicateBytesAddUpTheCopies) {
    const std::string content(5000, 'x');
    home.writeFile("Documents/a.bin", content);
    home.writeFile("Documents/b.bin", content);
    home.writeFile("Desktop/c.bin", content);
    home.writeFile("Desktop/other.bin", std::string(700, 'y'));
    StoreFacade facade;
    facade.scan(false, true, false, false);
    ASSERT_TRUE(idle(facade));
    EXPECT_TRUE(facade.duplicatesChecked());
    // One original is retained; the two copies count.
    EXPECT_EQ(facade.duplicateBytes(), 10000);
}

TEST_F(StoreFacadeTest, TheStaleCountFollowsTheWeeks) {
    const std::string file = home.writeFile("Downloads/old.zip", "zip");
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    testing::setModified(
        file, std::chrono::duration_cast<std::chrono::seconds>(now).count() - 20 * 86400);
    StoreFacade facade;
    facade.scan(false, false, false, true);
    ASSERT_TRUE(idle(facade));
    EXPECT_EQ(facade.staleCount(), 0);  // 20 days is not over 4 weeks
    QSignalSpy stale(&facade, &StoreFacade::staleChanged);
    facade.setWeeks(2);
    EXPECT_EQ(facade.staleCount(), 1);
    EXPECT_EQ(stale.count(), 1);
}

TEST_F(StoreFacadeTest, RemovingAFolderRemovesEveryEqualEntry) {
    home.writeFile(".config/QUORRIN/settings.json", "{\"roots\": [\"" + home.path("Documents") +
                                                        "\", \"" + home.path("Downloads") +
                                                        "\", \"" + home.path("Documents") + "\"]}");
    StoreFacade facade;
    ASSERT_EQ(facade.roots().size(), 3);
    QSignalSpy roots(&facade, &StoreFacade::rootsChanged);
    facade.removeFolderAt(2);
    EXPECT_EQ(facade.roots(), QStringList{path("Downloads")});
    EXPECT_EQ(roots.count(), 1);
    facade.removeFolderAt(5);  // no such row: nothing happens
    EXPECT_EQ(roots.count(), 1);
}

TEST_F(StoreFacadeTest, AddedFoldersFollowTheRulesOfAddFolder) {
    home.makeDir("Music");
    home.makeDir("Documents/Projects");
    StoreFacade facade;
    facade.addFolders({path("Documents/Projects"), path("Music")});
    EXPECT_EQ(facade.roots(),
              (QStringList{path("Documents"), path("Downloads"), path("Desktop"), path("Music")}));
    EXPECT_EQ(store::Settings(store::settingsPath()).read().roots->size(), 4u);
}

TEST_F(StoreFacadeTest, MarkingTheReviewDoneLogsItAndEndsTheDueState) {
    StoreFacade facade;
    ASSERT_TRUE(facade.reviewDue());
    QSignalSpy due(&facade, &StoreFacade::reviewDueChanged);
    facade.markReviewDone();
    EXPECT_FALSE(facade.reviewDue());
    EXPECT_EQ(due.count(), 1);
    EXPECT_EQ(facade.status(), "Weekly Downloads review completed");
}

}  // namespace
}  // namespace quorrin::ui
