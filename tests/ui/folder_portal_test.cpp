// "Add folder" through the desktop's folder chooser: the request a portal receives, the folders it
// answers with, a cancel, and the built-in chooser when no portal answers. The portal is a fake
// one on a private session bus of the test's own.
#include "ui/folder_portal.h"

#include "tests/support/ui/private_session_bus.h"
#include "tests/support/ui/qt_printing.h"
#include "tests/support/ui/ui_fixture.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QQmlEngine>
#include <QQuickItem>
#include <QUrl>

#include <gtest/gtest.h>

namespace quorrin::testing {
namespace {

// org.freedesktop.portal.FileChooser as a portal serves it: OpenFile returns the request's handle
// at once, and the answer comes later as the Response signal of that handle.
class FakePortal : public QDBusVirtualObject {
public:
    explicit FakePortal(QDBusConnection bus) : bus_(std::move(bus)) {}

    struct Request {
        QString parentWindow;
        QString title;
        QVariantMap options;
        QString handle;
    };
    QList<Request> requests;

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != QStringLiteral("org.freedesktop.portal.FileChooser") ||
            message.member() != QStringLiteral("OpenFile"))
            return false;
        const QList<QVariant> arguments = message.arguments();
        Request request{.parentWindow = arguments.value(0).toString(),
                        .title = arguments.value(1).toString(),
                        .options = qdbus_cast<QVariantMap>(arguments.value(2))};
        QString sender = message.service().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        request.handle = QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender +
                         QLatin1Char('/') + request.options.value("handle_token").toString();
        requests.append(request);
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request.handle))));
        return true;
    }
    QString introspect(const QString&) const override { return {}; }

    // The user's answer to the last request: 0 with the chosen folders, or 1 for a cancel.
    void answer(uint response, const QStringList& folders = {}) {
        QStringList uris;
        for (const QString& folder : folders)
            uris.append(QUrl::fromLocalFile(folder).toString(QUrl::FullyEncoded));
        QDBusMessage signal = QDBusMessage::createSignal(
            requests.last().handle, QStringLiteral("org.freedesktop.portal.Request"),
            QStringLiteral("Response"));
        signal << response << QVariantMap{{QStringLiteral("uris"), uris}};
        ASSERT_TRUE(bus_.send(signal));
    }

private:
    QDBusConnection bus_;
};

class FolderPortalTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(sessionBus.start()) << sessionBus.failure().toStdString();
        app = sessionBus.connect(QStringLiteral("app"));
        ASSERT_TRUE(app.isConnected());
        ui::setPortalBus(app);
        ui.home.makeDir("Music");
        ui.home.makeDir("Pictures/Holidays");
        ui.home.makeDir("Library");
    }
    void TearDown() override { ui::setPortalBus(std::nullopt); }

    // A portal service on its own connection to the private bus, as the desktop runs it.
    void startPortal() {
        portalBus = sessionBus.connect(QStringLiteral("portal"));
        ASSERT_TRUE(portalBus.isConnected());
        portal = std::make_unique<FakePortal>(portalBus);
        ASSERT_TRUE(portalBus.registerVirtualObject(
            QStringLiteral("/org/freedesktop/portal/desktop"), portal.get()));
        ASSERT_TRUE(portalBus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    void addFolder() {
        ui.open();
        ui.pressSidebar("Folders & settings");
        ui.click("addFolderButton");
    }
    QString path(const char* relative) const {
        return QString::fromStdString(ui.home.path(relative));
    }
    // The window's FolderPortal, the singleton its QML calls.
    ui::FolderPortal& folderPortal() {
        QQmlEngine* engine = qmlEngine(&ui.window());
        const int type = qmlTypeId("Quorrin", 1, 0, "FolderPortal");
        return *engine->singletonInstance<ui::FolderPortal*>(type);
    }
    QStringList defaultRoots() const {
        return {path("Documents"), path("Downloads"), path("Desktop")};
    }

    PrivateSessionBus sessionBus;
    QDBusConnection app{QString()};
    QDBusConnection portalBus{QString()};
    std::unique_ptr<FakePortal> portal;
    UiFixture ui;
};

TEST_F(FolderPortalTest, AsksForSeveralFoldersWithTheAddFolderLabel) {
    startPortal();
    addFolder();
    ASSERT_TRUE(ui.waitFor([&] { return portal->requests.size() == 1; }));
    const FakePortal::Request& request = portal->requests.first();
    EXPECT_EQ(request.options.value("directory"), QVariant(true));
    EXPECT_EQ(request.options.value("multiple"), QVariant(true));
    EXPECT_EQ(request.options.value("accept_label").toString(), "Add folder");
    EXPECT_EQ(request.options.value("modal"), QVariant(true));
    EXPECT_FALSE(request.options.value("handle_token").toString().isEmpty());
    EXPECT_EQ(request.title, "Choose folders to connect");
    // Offscreen there is no window id the portal could use; on X11 the window's own is sent.
    EXPECT_EQ(request.parentWindow,
              ui::portalParentWindow(&ui.window(), QGuiApplication::platformName()));
    // The desktop's chooser is showing: ours stays closed, and a second press asks nothing more.
    EXPECT_FALSE(ui.isShown("chooserConfirmButton"));
    ui.click("addFolderButton");
    ui.settle();
    EXPECT_EQ(portal->requests.size(), 1);
}

TEST(FolderPortalParent, OnX11TheWindowIdInHexadecimal) {
    QWindow window;
    window.create();
    EXPECT_EQ(ui::portalParentWindow(&window, "xcb"),
              QStringLiteral("x11:") + QString::number(window.winId(), 16));
    EXPECT_EQ(ui::portalParentWindow(&window, "wayland"), "");
    EXPECT_EQ(ui::portalParentWindow(nullptr, "xcb"), "");
}

TEST_F(FolderPortalTest, BothChosenFoldersGoThroughTheFolderRules) {
    startPortal();
    addFolder();
    ASSERT_TRUE(ui.waitFor([&] { return portal->requests.size() == 1; }));
    portal->answer(0, {path("Music"), path("Pictures/Holidays")});
    ASSERT_TRUE(ui.waitFor([&] { return ui.store().roots().size() == 5; }));
    const QStringList expected =
        defaultRoots() + QStringList{path("Music"), path("Pictures/Holidays")};
    EXPECT_EQ(ui.store().roots(), expected);
    EXPECT_EQ(ui.text("rootName", ui.item("rootRow:4")), "Holidays");
    EXPECT_FALSE(ui.isShown("chooserConfirmButton"));

    // A protected folder is refused by the same rules, whichever chooser picked it.
    ui.click("addFolderButton");
    ASSERT_TRUE(ui.waitFor([&] { return portal->requests.size() == 2; }));
    portal->answer(0, {path("Library"), path("Documents/Inside")});
    ASSERT_TRUE(ui.waitFor([&] {
        return ui.text("statusText") ==
               "Choose a personal folder outside protected app and project folders.";
    }));
    EXPECT_EQ(ui.store().roots().size(), 5);
}

TEST_F(FolderPortalTest, ACancelChangesNothing) {
    startPortal();
    addFolder();
    ASSERT_TRUE(ui.waitFor([&] { return portal->requests.size() == 1; }));
    const QString status = ui.text("statusText");
    ASSERT_TRUE(folderPortal().pending());
    portal->answer(1);
    ASSERT_TRUE(ui.waitFor([&] { return !folderPortal().pending(); }));
    ui.settle();
    EXPECT_EQ(ui.store().roots(), defaultRoots());
    EXPECT_EQ(ui.text("statusText"), status);
    EXPECT_FALSE(ui.isShown("chooserConfirmButton"));
    // The portal can be asked again.
    ui.click("addFolderButton");
    EXPECT_TRUE(ui.waitFor([&] { return portal->requests.size() == 2; }));
}

// A portal whose chooser ended in some other way than a choice or a cancel (response 2) failed:
// the built-in chooser takes over.
TEST_F(FolderPortalTest, WhenThePortalsChooserFailsTheBuiltInChooserOpens) {
    startPortal();
    addFolder();
    ASSERT_TRUE(ui.waitFor([&] { return portal->requests.size() == 1; }));
    EXPECT_FALSE(ui.isShown("chooserConfirmButton"));
    portal->answer(2);
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserConfirmButton"); }));
    EXPECT_EQ(ui.store().roots(), defaultRoots());
}

TEST_F(FolderPortalTest, WithoutAPortalTheBuiltInChooserOpens) {
    addFolder();
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserConfirmButton"); }));
    ui.click("chooserCancelButton");
    ui.settle();
    EXPECT_EQ(ui.store().roots(), defaultRoots());
}

TEST_F(FolderPortalTest, WithoutASessionBusTheBuiltInChooserOpens) {
    ui::setPortalBus(QDBusConnection(QStringLiteral("never connected")));
    addFolder();
    ASSERT_TRUE(ui.waitFor([&] { return ui.isShown("chooserConfirmButton"); }));
}

}  // namespace
}  // namespace quorrin::testing
