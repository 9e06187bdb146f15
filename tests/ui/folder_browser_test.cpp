// FolderBrowser: the chooser's folders, read in the background, and the folders ticked.
#include "ui/folder_browser.h"

#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"

#include <QTest>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using Role = FolderBrowser::Role;

class FolderBrowserTest : public ::testing::Test {
protected:
    FolderBrowserTest() {
        for (const char* name : {"Music", "Album 10", "Album 2", "album 3", ".hidden"})
            home.makeDir(name);
        home.writeFile("notes.txt", "not a folder");
        home.makeDir("Music/Live");
    }

    QStringList names() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !browser.loading(); }, 10000));
        QStringList names;
        for (int row = 0; row < browser.rowCount(); ++row)
            names.append(browser.data(browser.index(row), int(Role::name)).toString());
        return names;
    }
    QString path(const std::string& relative) const {
        return QString::fromStdString(home.path(relative));
    }

    testing::TempHome home;
    FolderBrowser browser;
};

TEST_F(FolderBrowserTest, OpensAtHomeWithVisibleFoldersInNameOrder) {
    browser.reset();
    EXPECT_EQ(browser.folder(), QString::fromStdString(home.home()));
    EXPECT_EQ(names(), (QStringList{"Album 2", "album 3", "Album 10", "Music"}));
    EXPECT_TRUE(browser.canGoUp());
}

TEST_F(FolderBrowserTest, EntersAndGoesUp) {
    browser.reset();
    names();
    browser.enter(int(names().indexOf(QStringLiteral("Music"))));
    EXPECT_EQ(browser.folder(), path("Music"));
    EXPECT_EQ(browser.folderName(), "Music");
    EXPECT_EQ(names(), QStringList{"Live"});
    browser.goUp();
    EXPECT_EQ(browser.folder(), QString::fromStdString(home.home()));
    browser.setFolder(QStringLiteral("/"));
    EXPECT_FALSE(browser.canGoUp());
}

TEST_F(FolderBrowserTest, TicksAcrossFoldersInTheOrderTicked) {
    browser.reset();
    browser.setChosen(int(names().indexOf(QStringLiteral("Music"))), true);
    browser.setChosen(int(names().indexOf(QStringLiteral("Album 2"))), true);
    browser.enter(int(names().indexOf(QStringLiteral("Music"))));
    ASSERT_EQ(names(), QStringList{"Live"});
    browser.setChosen(0, true);
    EXPECT_EQ(browser.result(), (QStringList{path("Music"), path("Album 2"), path("Music/Live")}));
    browser.setChosen(0, false);
    EXPECT_EQ(browser.chosen(), (QStringList{path("Music"), path("Album 2")}));
    browser.goUp();
    names();
    EXPECT_TRUE(
        browser
            .data(browser.index(int(names().indexOf(QStringLiteral("Music")))), int(Role::chosen))
            .toBool());
}

TEST_F(FolderBrowserTest, WithNothingTickedTheFolderShownIsTheResult) {
    browser.reset();
    browser.enter(int(names().indexOf(QStringLiteral("Music"))));
    EXPECT_EQ(browser.result(), QStringList{path("Music")});
}

TEST_F(FolderBrowserTest, ResetUnticksAndGoesHome) {
    browser.reset();
    browser.setChosen(0, true);
    browser.enter(int(names().indexOf(QStringLiteral("Music"))));
    browser.reset();
    EXPECT_TRUE(browser.chosen().isEmpty());
    EXPECT_EQ(browser.folder(), QString::fromStdString(home.home()));
    EXPECT_EQ(names().size(), 4);
}

}  // namespace
}  // namespace quorrin::ui
