// Loads the real window over a temporary HOME and drives it with clicks, keys and waits.
#include "tests/support/ui/ui_fixture.h"

#include "ui/app_setup.h"

#include <QCoreApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include <QtQuickTest/quicktest.h>
#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

void collect(QObject* object, const QString& name, std::vector<QQuickItem*>& found,
             std::set<QObject*>& seen) {
    if (!object || !seen.insert(object).second)
        return;
    if (auto* item = qobject_cast<QQuickItem*>(object)) {
        if (item->objectName() == name)
            found.push_back(item);
        for (QQuickItem* child : item->childItems())
            collect(child, name, found, seen);
    }
    for (QObject* child : object->children())
        collect(child, name, found, seen);
}

}  // namespace

UiFixture::UiFixture() {
    for (const char* name : {"Documents", "Downloads", "Desktop"})
        home.makeDir(name);
}

UiFixture::~UiFixture() {
    close();
}

void UiFixture::writeSettings(const std::string& json) const {
    std::filesystem::create_directories(home.path(".config/QUORRIN"));
    writeFileAt(home.path(".config/QUORRIN/settings.json"), json);
}

QQuickWindow& UiFixture::open() {
    close();
    engine_ = std::make_unique<QQmlApplicationEngine>();
    ui::prepareEngine(*engine_);
    engine_->load(ui::mainWindowUrl());
    if (engine_->rootObjects().isEmpty())
        throw std::runtime_error("The window could not be loaded");
    window_ = qobject_cast<QQuickWindow*>(engine_->rootObjects().first());
    if (!window_)
        throw std::runtime_error("The root object is not a window");
    window_->show();
    if (!QTest::qWaitForWindowExposed(window_))
        throw std::runtime_error("The window was never shown");
    settle();
    return *window_;
}

void UiFixture::close() {
    if (!engine_)
        return;
    engine_.reset();
    window_ = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

QQuickWindow& UiFixture::window() const {
    if (!window_)
        throw std::logic_error("open() the window first");
    return *window_;
}

ui::StoreFacade& UiFixture::store() const {
    const int type = qmlTypeId("Quorrin", 1, 0, "Store");
    auto* store = engine_ ? engine_->singletonInstance<ui::StoreFacade*>(type) : nullptr;
    if (!store)
        throw std::logic_error("open() the window first");
    return *store;
}

ui::FileListModel& UiFixture::fileList() const {
    auto* list = window().findChild<ui::FileListModel*>(QStringLiteral("fileList"));
    if (!list)
        throw std::logic_error("The window has no file list");
    return *list;
}

QQuickItem* UiFixture::find(const QString& name, QQuickItem* parent) const {
    std::vector<QQuickItem*> found;
    std::set<QObject*> seen;
    if (parent) {
        collect(parent, name, found, seen);
    } else {
        collect(window().contentItem(), name, found, seen);
        collect(&window(), name, found, seen);
    }
    for (QQuickItem* item : found)
        if (item->isVisible())
            return item;
    return found.empty() ? nullptr : found.front();
}

QQuickItem* UiFixture::item(const QString& name, QQuickItem* parent) const {
    QQuickItem* found = find(name, parent);
    if (!found)
        ADD_FAILURE() << "No item named " << name.toStdString();
    return found;
}

QString UiFixture::text(const QString& name, QQuickItem* parent) const {
    QQuickItem* found = item(name, parent);
    return found ? found->property("text").toString() : QString();
}

bool UiFixture::isShown(const QString& name, QQuickItem* parent) const {
    QQuickItem* found = find(name, parent);
    return found && found->isVisible();
}

bool UiFixture::isEnabled(const QString& name, QQuickItem* parent) const {
    QQuickItem* found = item(name, parent);
    return found && found->isEnabled();
}

void UiFixture::scrollIntoView(QQuickItem* item) {
    for (QQuickItem* parent = item->parentItem(); parent; parent = parent->parentItem()) {
        if (!parent->inherits("QQuickFlickable"))
            continue;
        // A list's own rows are scrolled by the list; pages scroll as a whole.
        auto* content = qvariant_cast<QQuickItem*>(parent->property("contentItem"));
        if (!content)
            continue;
        const QRectF inContent = item->mapRectToItem(content, item->boundingRect());
        const double top = parent->property("contentY").toDouble();
        const double height = parent->height();
        const double contentHeight = parent->property("contentHeight").toDouble();
        double target = top;
        if (inContent.top() < top)
            target = inContent.top() - 8;
        else if (inContent.bottom() > top + height)
            target = inContent.bottom() - height + 8;
        target = std::clamp(target, 0.0, std::max(0.0, contentHeight - height));
        if (target != top) {
            parent->setProperty("contentY", target);
            QQuickTest::qWaitForPolish(&window());
        }
    }
}

void UiFixture::click(QQuickItem* item, Qt::MouseButton button) {
    if (!item)
        return;
    QQuickTest::qWaitForPolish(&window());
    scrollIntoView(item);
    EXPECT_TRUE(item->isVisible())
        << "Clicking a hidden item: " << item->objectName().toStdString();
    const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    QTest::mouseClick(&window(), button, Qt::NoModifier, centre.toPoint());
    QCoreApplication::processEvents();
    // A click may change the list state: wait for the rows built from it (not for the Store,
    // which may be held busy on purpose).
    EXPECT_TRUE(waitFor([&] { return !fileList().computing(); })) << "The list never settled";
    QQuickTest::qWaitForPolish(&window());
}

void UiFixture::click(const QString& name) {
    click(item(name));
}

void UiFixture::clickIn(QQuickItem* parent, const QString& name) {
    if (!parent) {
        ADD_FAILURE() << "No item to click " << name.toStdString() << " in";
        return;
    }
    click(item(name, parent));
}

void UiFixture::typeInto(const QString& name, const QString& text) {
    QQuickItem* field = item(name);
    click(field);
    EXPECT_TRUE(field && field->hasActiveFocus()) << name.toStdString() << " took no focus";
    QTest::keyClick(&window(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&window(), Qt::Key_Backspace);
    for (QChar c : text)
        QTest::keyClick(&window(), c.toLatin1());
    settle();
}

void UiFixture::choose(const QString& picker, const QString& label) {
    click(picker + QStringLiteral(".menu"));
    const QString option = QStringLiteral("option:") + label;
    EXPECT_TRUE(waitFor([&] { return isShown(option); })) << "No option " << label.toStdString();
    click(option);
    settle();
}

void UiFixture::pressSidebar(const QString& page) {
    click(QStringLiteral("sidebar:") + page);
    settle();
}

void UiFixture::runPageAction() {
    click(QStringLiteral("pageActionButton"));
    settle();
}

void UiFixture::pressStart() {
    click(QStringLiteral("startButton"));
    settle();
}

bool UiFixture::waitFor(const std::function<bool()>& done, int timeoutMs) {
    return QTest::qWaitFor(done, timeoutMs);
}

void UiFixture::settle() {
    EXPECT_TRUE(waitFor([&] { return !store().busy() && !fileList().computing(); }))
        << "The Store or the list never became idle";
    QQuickTest::qWaitForPolish(&window());
    QCoreApplication::processEvents();
}

QQuickItem* UiFixture::row(const QString& fileName) const {
    if (!hasRow(fileName)) {
        ADD_FAILURE() << "No row shows " << fileName.toStdString();
        return nullptr;
    }
    return find(QStringLiteral("fileRow:") + fileName);
}

bool UiFixture::hasRow(const QString& fileName) const {
    return rowNames().contains(fileName);
}

QStringList UiFixture::rowNames() const {
    QQuickItem* view = find(QStringLiteral("fileListView"));
    if (!view || !view->isVisible())
        return {};
    // The list makes its rows when it lays itself out; have it do so now.
    QMetaObject::invokeMethod(view, "forceLayout");
    QQuickTest::qWaitForPolish(view);
    auto* content = qvariant_cast<QQuickItem*>(view->property("contentItem"));
    if (!content)
        return {};
    std::vector<QQuickItem*> rows;
    for (QQuickItem* child : content->childItems())
        if (child->isVisible() && child->objectName().startsWith(QStringLiteral("fileRow:")))
            rows.push_back(child);
    std::sort(rows.begin(), rows.end(),
              [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
    QStringList names;
    for (QQuickItem* row : rows)
        names.append(row->objectName().mid(8));
    return names;
}

QImage UiFixture::grab() {
    QQuickTest::qWaitForPolish(&window());
    return window().grabWindow();
}

}  // namespace quorrin::testing
