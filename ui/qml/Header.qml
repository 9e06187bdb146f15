// The header above every page: title and subtitle, the page action and "Start", the busy bar, and
// the status line with "Undo arrangement".
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

Item {
    id: header
    property string page

    readonly property string title: page === "Overview" ? "Make room for what matters." : page
    readonly property string subtitle: {
        switch (page) {
        case "Overview":
            return PlatformTexts.overviewSubtitle
        case "FindOlder":
            return "Find personal files by their actual Created or Last modified date. Connected folders only."
        case "Duplicates":
            return Store.duplicatesChecked
                    ? "SHA-256 content matches. One original is always retained."
                    : "Not checked yet. Click Check duplicates to compare content; large files take longer."
        case "Downloads review":
            return "Weekly review • Last used over " + Store.weeks
                    + " weeks ago. Modified date is used when usage history is unavailable."
        case "File health":
            return Store.healthChecked
                    ? "Unreadable images / PDFs, empty files and executable files. Review signals, not a malware diagnosis."
                    : "Not checked yet. Click Check health to inspect readability and file types."
        case "Folders & settings":
            return "Choose personal folders and control how your clean-up works."
        default:
            return "Find, review and manage your files in one place."
        }
    }
    readonly property string actionLabel: {
        switch (page) {
        case "FindOlder": return "Find files"
        case "Duplicates": return "Check duplicates"
        case "File health": return "Check health"
        case "Downloads review": return "Check usage"
        default: return "Quick scan"
        }
    }
    readonly property bool canRun: !Store.busy && Store.roots.length > 0

    function runPageAction() {
        switch (page) {
        case "FindOlder":
            Store.scanOlder()
            break
        case "Duplicates":
            Store.scan(false, true, false, false)
            break
        case "File health":
            Store.scan(false, false, true, false)
            break
        case "Downloads review":
            Store.scan(false, false, false, true)
            break
        default:
            Store.scan(false, false, false, false)
        }
    }

    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 18

        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 5
                ReadText {
                    objectName: "headerTitle"
                    Accessible.role: Accessible.Heading
                    Layout.fillWidth: true
                    text: header.title
                    color: Theme.text
                    font.pixelSize: 26
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                }
                ReadText {
                    objectName: "headerSubtitle"
                    Layout.fillWidth: true
                    text: header.subtitle
                    color: Theme.secondary
                    font.pixelSize: Theme.body
                    wrapMode: Text.WordWrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                }
            }

            AppButton {
                objectName: "pageActionButton"
                Layout.alignment: Qt.AlignTop
                symbol: "arrow.clockwise"
                text: header.actionLabel
                enabled: header.canRun
                onClicked: header.runPageAction()
            }
            AppButton {
                objectName: "startButton"
                Layout.alignment: Qt.AlignTop
                visible: header.page !== "FindOlder"
                prominent: true
                symbol: "sparkles"
                text: "Start"
                enabled: header.canRun
                onClicked: Store.scan(true, false, false, false)
            }
        }

        // The status line: a status bar named by the status, so that every new line or progress
        // text is announced as the name changes.
        Rectangle {
            objectName: "statusBar"
            Accessible.role: Accessible.StatusBar
            Accessible.name: Store.status
            Layout.fillWidth: true
            Layout.preferredHeight: 40
            radius: 10
            color: Theme.panelColor
            border.width: 1
            border.color: Theme.stroke
            clip: true

            ProgressBar {
                id: busyBar
                objectName: "busyBar"
                visible: Store.busy
                // Indeterminate until the operation can say how far it is.
                indeterminate: Store.progress < 0
                value: Math.max(Store.progress, 0)
                Accessible.name: "Working safely"
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                height: 2
                background: Item {}
                contentItem: Item {
                    clip: true
                    Rectangle {
                        objectName: "busyBarFill"
                        visible: !busyBar.indeterminate
                        width: parent.width * busyBar.visualPosition
                        height: parent.height
                        color: Theme.accent
                    }
                    Rectangle {
                        id: runner
                        visible: busyBar.indeterminate
                        width: parent.width * 0.3
                        height: parent.height
                        color: Theme.accent
                        NumberAnimation on x {
                            running: busyBar.visible && busyBar.indeterminate
                            from: -runner.width
                            to: busyBar.width
                            duration: 1200
                            loops: Animation.Infinite
                        }
                    }
                }
            }

            RowLayout {
                anchors.fill: parent
                anchors.leftMargin: 12
                anchors.rightMargin: 5
                spacing: 9

                Symbol {
                    objectName: "statusIcon"
                    name: Store.busy ? "hourglass" : "checkmark.circle"
                    color: Theme.accent
                    size: 16
                }
                Text {
                    objectName: "statusText"
                    Layout.fillWidth: true
                    text: Store.status
                    color: Theme.text
                    font.pixelSize: 12
                    elide: Text.ElideRight
                }
                // Every operation that sets busy runs long enough to be worth stopping.
                AppButton {
                    objectName: "stopButton"
                    visible: Store.busy
                    quiet: true
                    implicitHeight: 30
                    text: "Stop"
                    textSize: 12
                    Accessible.name: "Stop"
                    onClicked: Store.stop()
                }
                AppButton {
                    objectName: "undoButton"
                    visible: Store.moveCount > 0
                    enabled: !Store.busy
                    quiet: true
                    implicitHeight: 30
                    text: "Undo arrangement"
                    textSize: 12
                    onClicked: Store.undo()
                }
            }
        }
    }
}
