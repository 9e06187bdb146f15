// The window speaks Linux: the texts that name the desktop's facilities are the Linux ones, and no
// text the window holds, on any page or in any dialog, or in its QML and desktop files, names
// another platform.
#include "store/platform_texts.h"
#include "tests/support/platform_words.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/sample_home.h"
#include "tests/support/ui/ui_fixture.h"

#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QQuickItem>
#include <set>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

// Every text property of every object in the window now: items, their children and whatever the
// open popups show, each as "<object name or class>.<property>: <text>".
QStringList textsShown(QQuickWindow& window) {
    std::set<QObject*> objects;
    std::function<void(QQuickItem*)> visit = [&](QQuickItem* item) {
        objects.insert(item);
        for (QQuickItem* child : item->childItems())
            visit(child);
    };
    visit(window.contentItem());
    for (QObject* object : window.findChildren<QObject*>())
        objects.insert(object);
    for (QObject* object : std::set<QObject*>(objects))
        for (QObject* child : object->findChildren<QObject*>())
            objects.insert(child);

    QStringList texts;
    for (QObject* object : objects) {
        const QMetaObject* meta = object->metaObject();
        for (int i = 0; i < meta->propertyCount(); ++i) {
            const QMetaProperty property = meta->property(i);
            if (property.metaType().id() != QMetaType::QString)
                continue;
            const QString text = property.read(object).toString();
            if (text.isEmpty())
                continue;
            const QString name = object->objectName().isEmpty()
                                     ? QString::fromLatin1(meta->className())
                                     : object->objectName();
            texts.append(name + QLatin1Char('.') + QString::fromLatin1(property.name()) +
                         QStringLiteral(": ") + text);
        }
    }
    return texts;
}

QStringList withPlatformWords(const QStringList& texts) {
    QStringList found;
    for (const QString& text : texts)
        if (!platformWordIn(text.toStdString()).empty())
            found.append(text);
    return found;
}

TEST(PlatformTextsWindow, TheSettingsNotesReadTheLinuxTexts) {
    UiFixture ui;
    ui.open();
    ui.pressSidebar("Folders & settings");
    EXPECT_EQ(ui.text("accessNote"),
              "If a folder cannot be read, check its permissions; an app installed in a sandbox "
              "needs access to your home folder. Protected projects and app data are skipped. "
              "Files in network or cloud-synced folders may be downloaded during content "
              "comparison.");
    EXPECT_EQ(ui.text("scanNote"),
              "Quick scan reads names, sizes and dates without opening file content. Use "
              "Duplicates → Check duplicates and File health → Check health separately. Start "
              "still compares full content when automatic duplicate clearing is ON; switch it OFF "
              "for faster arrangement. Downloads → Check usage reads your desktop's "
              "recently-used history and can take longer. Local image/PDF health checks may open "
              "cloud files.");
    EXPECT_EQ(ui.text("accessNote"), qtText(store::linuxTexts.accessNote));
}

TEST(PlatformTextsWindow, NoPageOrDialogNamesAnotherPlatform) {
    UiFixture ui;
    writeSampleHome(ui.home);
    QQuickWindow& window = ui.open();
    QStringList shown = textsShown(window);

    for (const char* page : {"Overview", "All files", "FindOlder", "Duplicates", "Downloads review",
                             "File health", "Kept files", "Folders & settings", "Activity"}) {
        ui.pressSidebar(page);
        ui.runPageAction();
        shown += textsShown(window);
    }
    // A row with its context menu open, then the trash confirmation, then undo's summary.
    ui.pressSidebar("All files");
    QQuickItem* row = ui.row("Flight tickets.pdf");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(ui.text("rowRevealButton", row), "Show in Folder");
    ui.click(row, Qt::RightButton);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("menuReveal"); }));
    EXPECT_EQ(ui.text("menuReveal"), "Show in Folder");
    shown += textsShown(window);
    QTest::keyClick(&window, Qt::Key_Escape);
    ui.clickIn(ui.row("Flight tickets.pdf"), "rowCheck");
    ui.click("clearSelectedButton");
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("trashMessage"); }));
    shown += textsShown(window);
    ui.click("cancelTrashButton");
    ui.pressStart();
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("undoButton"); }));
    ui.click("undoButton");
    EXPECT_TRUE(ui.text("statusText")
                    .endsWith(" arranged files. Trashed files can be restored from the Trash."))
        << ui.text("statusText").toStdString();
    shown += textsShown(window);

    // The walk reaches the sidebar, the rows, the context menu and the dialog.
    for (const QString& expected :
         {QStringLiteral("footerNote.text: Files stay on this computer."),
          QStringLiteral("menuReveal.text: Show in Folder"),
          QStringLiteral("trashMessage.text: ") + qtText(store::linuxTexts.trashConfirmation)})
        EXPECT_TRUE(shown.contains(expected)) << expected.toStdString();
    const QStringList found = withPlatformWords(shown);
    EXPECT_TRUE(found.isEmpty()) << found.join(QLatin1Char('\n')).toStdString();
}

// The texts of the window's source files, comments included, and of its desktop entry and
// AppStream description, which software centres show.
TEST(PlatformTextsWindow, NoQmlOrDesktopFileNamesAnotherPlatform) {
    const QDir source(QStringLiteral(QUORRIN_SOURCE_DIR "/ui"));
    QStringList files;
    for (const QString& name : QDir(source.filePath("qml")).entryList({"*.qml"}, QDir::Files))
        files.append(source.filePath("qml/" + name));
    for (const QString& name : QDir(source.filePath("desktop")).entryList(QDir::Files))
        files.append(source.filePath("desktop/" + name));
    ASSERT_GT(files.size(), 20);
    for (const QString& path : files) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        const QByteArray text = file.readAll();
        EXPECT_EQ(platformWordIn(std::string_view(text.constData(), size_t(text.size()))), "")
            << path.toStdString();
    }
}

}  // namespace
}  // namespace quorrin::testing
