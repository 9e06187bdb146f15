// UiFixture: the real window (Main.qml over a real Store) on a temporary HOME, driven like a user:
// items are found by objectName, clicked, typed into, and read.
#pragma once

#include "tests/support/temp_home.h"
#include "tests/support/ui/qt_printing.h"
#include "ui/file_list_model.h"
#include "ui/store_facade.h"

#include <QPointF>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <string>

class QQmlApplicationEngine;
class QImage;

namespace quorrin::testing {

class UiFixture {
public:
    // A HOME with Documents, Downloads and Desktop, as in a real home. Nothing is loaded yet.
    UiFixture();
    ~UiFixture();
    UiFixture(const UiFixture&) = delete;
    UiFixture& operator=(const UiFixture&) = delete;

    TempHome home;

    // Writes the settings file as the given JSON text; do this before open().
    void writeSettings(const std::string& json) const;

    // Loads the window (again, as a relaunch would: the Store is made anew) and shows it.
    QQuickWindow& open();
    // Closes the window and drops its Store, waiting for work still running in the background.
    void close();

    QQuickWindow& window() const;
    ui::StoreFacade& store() const;
    ui::FileListModel& fileList() const;

    // The first visible item with this objectName (any item when none is visible), searched
    // under `parent` or the whole window, open popups included; nullptr when there is none.
    QQuickItem* find(const QString& name, QQuickItem* parent = nullptr) const;
    // Like find(), failing the current test when the item is missing.
    QQuickItem* item(const QString& name, QQuickItem* parent = nullptr) const;
    // The item's "text" property.
    QString text(const QString& name, QQuickItem* parent = nullptr) const;
    bool isShown(const QString& name, QQuickItem* parent = nullptr) const;
    bool isEnabled(const QString& name, QQuickItem* parent = nullptr) const;

    // Scrolls the pages and lists that hold the item until it is inside the window.
    void scrollIntoView(QQuickItem* item);
    // A left click in the middle of the item, after the window has laid itself out and the item
    // has been scrolled into view; returns once the file list shows the rows for what changed.
    void click(QQuickItem* item, Qt::MouseButton button = Qt::LeftButton);
    void click(const QString& name);
    // Clicks the item with this name inside `parent`; fails the test when `parent` is missing.
    void clickIn(QQuickItem* parent, const QString& name);
    // Clicks the field, selects what it holds and types `text` over it.
    void typeInto(const QString& name, const QString& text);
    // Opens the titled picker and chooses the option with this label.
    void choose(const QString& picker, const QString& label);
    // Presses the sidebar button of the page.
    void pressSidebar(const QString& page);
    // The header's page action, then waits until the Store is idle and the list is shown.
    void runPageAction();
    void pressStart();

    // Processes events until `done` is true; false when it never became true.
    bool waitFor(const std::function<bool()>& done, int timeoutMs = 20000);
    // Waits for the Store to be idle, the list to be rebuilt and the window to be laid out.
    void settle();

    // The row of the file list showing the file with this name; fails the test (and gives
    // nullptr) when no such row is shown.
    QQuickItem* row(const QString& fileName) const;
    bool hasRow(const QString& fileName) const;
    // The file names of the rows shown, top to bottom (only rows within the list's view).
    QStringList rowNames() const;

    // The window as drawn now.
    QImage grab();

private:
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;
};

}  // namespace quorrin::testing
