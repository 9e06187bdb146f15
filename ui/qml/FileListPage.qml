// The shared file list of All files, FindOlder, Duplicates, Downloads review, File health and Kept
// files: the page's own controls, the toolbar, the selection bar, and the rows or the empty state.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

ColumnLayout {
    id: page
    property var list  // the FileListModel
    property string name  // the page shown
    signal clearRequested()

    readonly property bool findOlder: name === "FindOlder"
    readonly property string emptyText: {
        if (name === "Duplicates" && !Store.duplicatesChecked)
            return "Click Check duplicates. Quick scan does not compare file content."
        if (name === "File health" && !Store.healthChecked)
            return "Click Check health. Quick scan does not decode images or PDFs."
        if (name === "FindOlder")
            return Store.olderScanned
                    ? "No files match these dates. Try Last modified date or a different range."
                    : "Choose a timeline, then click Find files."
        return Store.fileCount > 0 ? "Nothing here needs your attention."
                                   : "Scan your folders to get started."
    }

    spacing: 12

    readonly property bool canClear: !findOlder && list.selectedCount > 0 && !Store.busy

    // The keyboard's ways in: Ctrl+F, Ctrl+A and Delete (the window's shortcuts).
    function focusSearch() {
        search.forceActiveFocus(Qt.ShortcutFocusReason)
        search.selectAll()
    }

    FindOlderControls {
        visible: page.findOlder
        Layout.fillWidth: true
        list: page.list
    }

    // The weekly review's own controls.
    Panel {
        visible: page.name === "Downloads review"
        Layout.fillWidth: true
        Layout.preferredHeight: 56
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 16
            anchors.rightMargin: 12
            spacing: 12
            Stepper {
                objectName: "reviewWeeksStepper"
                label: "Unused for " + Store.weeks + " weeks"
                decreaseName: "Fewer weeks"
                increaseName: "More weeks"
                value: Store.weeks
                from: 1
                to: 52
                onModified: (value) => Store.weeks = value
            }
            Item { Layout.fillWidth: true }
            AppButton {
                objectName: "markReviewDoneButton"
                symbol: "checkmark"
                text: "Mark weekly review done"
                onClicked: Store.markReviewDone()
            }
        }
    }

    // Toolbar: search and pickers on one row; in a narrow window the health filter goes under
    // them.
    GridLayout {
        Layout.fillWidth: true
        columns: page.width >= 820 ? 3 : 2
        columnSpacing: 16
        rowSpacing: 10
        SearchField {
            id: search
            objectName: "searchField"
            Layout.fillWidth: true
            text: page.list.query
            onTextEdited: page.list.query = text
        }
        Picker {
            objectName: "typePicker"
            title: "Type"
            options: Format.typeOptions
            value: page.list.filter
            onPicked: (value) => page.list.filter = value
        }
        Picker {
            objectName: "healthPicker"
            visible: page.name === "File health"
            title: "Health filter"
            options: Format.signalOptions
            value: page.list.issueFilter
            onPicked: (value) => page.list.issueFilter = value
        }
    }

    // Selection bar.
    RowLayout {
        Layout.fillWidth: true
        spacing: 8
        ReadText {
            objectName: "selectionCaption"
            Layout.fillWidth: true
            text: page.list.count + " files • " + Format.bytes(page.list.totalBytes)
            color: Theme.secondary
            font.pixelSize: 12
        }
        AppButton {
            objectName: "selectVisibleButton"
            text: "Select visible"
            onClicked: page.list.selectVisible()
        }
        AppButton {
            objectName: "keepSelectedButton"
            symbol: "bookmark"
            text: "Keep selected"
            enabled: page.list.selectedCount > 0 && !Store.busy
            onClicked: page.list.keepSelected()
        }
        AppButton {
            objectName: "clearSelectedButton"
            visible: !page.findOlder
            destructive: true
            symbol: "trash"
            text: "Clear selected…"
            enabled: page.canClear
            onClicked: page.clearRequested()
        }
    }

    // The rows, or the empty state.
    Panel {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 160
        clip: true

        ListView {
            id: rows
            objectName: "fileListView"
            anchors.fill: parent
            anchors.topMargin: 4
            anchors.bottomMargin: 4
            visible: page.list.count > 0
            model: page.list
            reuseItems: true
            cacheBuffer: 540
            boundsBehavior: Flickable.StopAtBounds
            // One Tab stop, the current row: Up and Down walk the rows, the view following the
            // focused one.
            keyNavigationEnabled: true
            highlightMoveDuration: 0
            onCountChanged: if (count > 0 && currentIndex < 0) currentIndex = 0
            onCurrentIndexChanged: if (activeFocus) positionViewAtIndex(currentIndex, ListView.Contain)
            // Shown whenever there are more rows than fit, not only while scrolling.
            ScrollBar.vertical: ScrollBar {
                id: rowsBar
                objectName: "fileListScrollBar"
                Accessible.ignored: true  // the list scrolls itself to the focused row
                policy: rows.contentHeight > rows.height ? ScrollBar.AlwaysOn
                                                         : ScrollBar.AlwaysOff
                contentItem: Rectangle {
                    implicitWidth: 4
                    radius: 2
                    color: rowsBar.pressed ? Theme.secondary : Theme.strokeStrong
                }
            }
            Accessible.role: Accessible.List
            Accessible.name: page.name
            delegate: FileRow {
                width: rows.width
                focus: ListView.isCurrentItem
                activeFocusOnTab: ListView.isCurrentItem
                focusShown: rows.activeFocus && ListView.isCurrentItem
                list: page.list
                showDate: page.findOlder
                basis: page.list.dateBasis
            }
        }

        Column {
            visible: page.list.count === 0
            anchors.centerIn: parent
            width: parent.width - 80
            spacing: 14
            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "sparkles"
                color: Theme.secondary
                size: 34
            }
            ReadText {
                objectName: "emptyStateText"
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: page.emptyText
                color: Theme.secondary
                font.pixelSize: 14
                wrapMode: Text.WordWrap
            }
        }
    }
}
