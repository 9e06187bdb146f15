// The window: the sidebar of nine pages, the header, the selected page, the trash confirmation and
// the folder chooser, and the keyboard shortcuts. It owns the view state; the Store owns
// everything else.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

ApplicationWindow {
    id: window
    objectName: "mainWindow"

    // The selected sidebar page; page identity is compared on its title.
    property string page: "Overview"

    width: 1180
    height: 800
    minimumWidth: 980
    minimumHeight: 640
    visible: true
    title: "Quorrin"
    color: Theme.window

    palette.window: Theme.window
    palette.windowText: Theme.text
    palette.base: Theme.raised
    palette.text: Theme.text
    palette.button: Theme.raised
    palette.buttonText: Theme.text
    palette.highlight: Theme.accent
    palette.highlightedText: Theme.accentInk
    palette.mid: Theme.strokeStrong
    palette.dark: Theme.strokeStrong

    // A sidebar press: the page, then nothing selected, empty search, "All types", "All signals";
    // also when the page pressed is the one shown.
    function pressSidebar(name) {
        // Whatever had the keyboard (the search field, a sidebar tab) gives it up first; the next
        // Tab starts again at the sidebar.
        focusSink.forceActiveFocus()
        page = name
        fileList.resetView()
    }

    // The Overview's shortcuts change the page only.
    function jump(name) {
        page = name
    }

    // The keyboard shortcuts; none acts while a dialog is open, and in the search field Ctrl+A and
    // Delete keep their text-editing meaning.
    readonly property bool dialogOpen: trashConfirmation.opened || folderChooser.opened
    readonly property bool listShown: fileListPage.visible

    Shortcut {
        sequences: [StandardKey.Find]
        enabled: !window.dialogOpen && window.listShown
        onActivated: fileListPage.focusSearch()
    }
    Shortcut {
        sequence: "F5"
        enabled: !window.dialogOpen && header.canRun
        onActivated: header.runPageAction()
    }
    Shortcut {
        sequences: [StandardKey.SelectAll]
        enabled: !window.dialogOpen && window.listShown
        onActivated: fileList.selectVisible()
    }
    Shortcut {
        sequences: [StandardKey.Delete]
        enabled: !window.dialogOpen && window.listShown && fileListPage.canClear
        onActivated: trashConfirmation.open()
    }

    FileListModel {
        id: fileList
        objectName: "fileList"
        store: Store
        page: window.page
    }

    // Holds the keyboard focus after a sidebar press; first in the Tab order, so Tab goes on to
    // the sidebar.
    Item {
        id: focusSink
        objectName: "focusSink"
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Sidebar {
            Layout.preferredWidth: 248
            Layout.fillHeight: true
            page: window.page
            onPagePressed: (name) => window.pressSidebar(name)
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: Theme.pagePadding
            Layout.topMargin: 26
            spacing: 20

            Header {
                id: header
                Layout.fillWidth: true
                page: window.page
            }

            StackLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                currentIndex: {
                    switch (window.page) {
                    case "Overview": return 0
                    case "Folders & settings": return 2
                    case "Activity": return 3
                    default: return 1
                    }
                }

                OverviewPage {
                    objectName: "overviewPage"
                    onJump: (name) => window.jump(name)
                }
                // The list fills the page; a window too short for the page's controls and a few
                // rows scrolls the whole page instead.
                PageFlickable {
                    id: listPageScroll
                    contentHeight: Math.max(height, fileListPage.implicitHeight)
                    FileListPage {
                        id: fileListPage
                        objectName: "fileListPage"
                        width: listPageScroll.width
                        height: listPageScroll.contentHeight
                        list: fileList
                        name: window.page
                        onClearRequested: trashConfirmation.open()
                    }
                }
                FoldersSettingsPage {
                    objectName: "foldersSettingsPage"
                    onAddFolderRequested: FolderPortal.choose(window)
                }
                ActivityPage {
                    objectName: "activityPage"
                }
            }
        }
    }

    TrashConfirmation {
        id: trashConfirmation
        onMoveToTrash: fileList.moveSelectedToTrash()
    }

    StartPreviewSheet {
        id: startPreview
    }

    // A preview that finished opens its sheet; a plan run or dropped closes it.
    Connections {
        target: Store
        function onStartPlanChanged() {
            if (Store.hasStartPlan)
                startPreview.open()
            else
                startPreview.close()
        }
    }

    FolderChooser {
        id: folderChooser
        onChosen: (paths) => Store.addFolders(paths)
    }

    // The desktop's own chooser answers through the portal; ours opens when no portal answers.
    Connections {
        target: FolderPortal
        function onChosen(paths) { Store.addFolders(paths) }
        function onUnavailable() { folderChooser.open() }
    }
}
