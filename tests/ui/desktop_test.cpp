// The desktop actions: Open, Show in Folder with its fallback, Copy path, Open Trash.
#include "ui/desktop.h"

#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/recording_launcher.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace quorrin::ui {
namespace {

using testing::RecordingLauncher;
using testing::TempHome;

TEST(Desktop, OpenGivesTheFileToItsDefaultApplication) {
    RecordingLauncher desktop;
    openFile(QStringLiteral("/home/someone/Documents/a b.pdf"));
    EXPECT_EQ(desktop.opened, QList<QUrl>{QUrl::fromLocalFile("/home/someone/Documents/a b.pdf")});
}

TEST(Desktop, ShowInFolderAsksTheFileManagerToSelectTheFile) {
    RecordingLauncher desktop;
    revealFile(QStringLiteral("/home/someone/Documents/a.pdf"));
    EXPECT_EQ(desktop.shown, QList<QUrl>{QUrl::fromLocalFile("/home/someone/Documents/a.pdf")});
    EXPECT_TRUE(desktop.opened.isEmpty());
}

TEST(Desktop, ShowInFolderOpensTheFolderWhenNoFileManagerAnswers) {
    RecordingLauncher desktop;
    desktop.showsItems = false;
    revealFile(QStringLiteral("/home/someone/Documents/a.pdf"));
    EXPECT_EQ(desktop.opened, QList<QUrl>{QUrl::fromLocalFile("/home/someone/Documents")});
}

TEST(Desktop, CopyPathPutsThePathOnTheClipboard) {
    RecordingLauncher desktop;
    copyPathText(QStringLiteral("/home/someone/a.pdf"));
    EXPECT_EQ(desktop.clipboard, QStringList{"/home/someone/a.pdf"});
}

TEST(Desktop, TheSystemClipboardTakesThePathAsPlainText) {
    launcher().setClipboardText(QStringLiteral("/home/someone/b.pdf"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "/home/someone/b.pdf");
}

TEST(Desktop, OpenTrashOpensTheTrashLocation) {
    TempHome home;
    RecordingLauncher desktop;
    openTrash();
    EXPECT_EQ(desktop.opened, QList<QUrl>{QUrl(QStringLiteral("trash:///"))});
}

TEST(Desktop, OpenTrashFallsBackToTheTrashFilesFolder) {
    TempHome home;
    RecordingLauncher desktop;
    desktop.opensTrash = false;
    openTrash();
    ASSERT_EQ(desktop.opened.size(), 2);
    EXPECT_EQ(desktop.opened[1],
              QUrl::fromLocalFile(QString::fromStdString(home.path(".local/share/Trash/files"))));
}

}  // namespace
}  // namespace quorrin::ui
