// The preview of Start: how many files go to each category folder and how many duplicates to the
// Trash, the full list grouped by action and searchable, and "Start" to carry out exactly that.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Quorrin

Dialog {
    id: sheet
    readonly property var plan: Store.startPlan

    objectName: "startPreviewSheet"
    modal: true
    anchors.centerIn: T.Overlay.overlay
    width: Math.min(760, T.Overlay.overlay ? T.Overlay.overlay.width - 80 : 760)
    height: Math.min(640, T.Overlay.overlay ? T.Overlay.overlay.height - 80 : 640)
    padding: 24
    topPadding: 22
    closePolicy: Popup.CloseOnEscape

    // Closing the sheet in any way but "Start" drops the plan.
    onClosed: {
        search.text = ""
        if (Store.hasStartPlan)
            Store.cancelStartPlan()
    }

    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.55) }

    background: Rectangle {
        radius: 16
        color: "#1b2023"
        border.width: 1
        border.color: Theme.strokeStrong
    }

    contentItem: ColumnLayout {
        spacing: 12

        RowLayout {
            spacing: 12
            Rectangle {
                Layout.preferredWidth: 36
                Layout.preferredHeight: 36
                radius: 10
                color: Qt.rgba(0.67, 0.95, 0.42, 0.12)
                Symbol {
                    anchors.centerIn: parent
                    name: "sparkles"
                    color: Theme.accent
                    size: 19
                }
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2
                Text {
                    objectName: "previewTitle"
                    Layout.fillWidth: true
                    text: "Preview of Start"
                    color: Theme.text
                    font.pixelSize: 17
                    font.weight: Font.DemiBold
                }
                Text {
                    objectName: "previewMessage"
                    Layout.fillWidth: true
                    text: "Nothing has changed yet. Start does exactly this, checking each file again first."
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                    wrapMode: Text.WordWrap
                }
            }
        }

        // The counts: one tile per category folder that receives files, and the duplicates.
        Flow {
            objectName: "previewCounts"
            Layout.fillWidth: true
            spacing: 8
            Repeater {
                model: sheet.plan.folderCounts
                delegate: CountTile {
                    required property var modelData
                    objectName: "previewCount:" + modelData.folder
                    count: modelData.count
                    label: modelData.folder
                }
            }
            CountTile {
                objectName: "previewCount:Duplicates to Trash"
                visible: sheet.plan.trashCount > 0
                count: sheet.plan.trashCount
                label: "Duplicates to Trash"
                destructive: true
            }
        }

        SearchField {
            id: search
            objectName: "previewSearch"
            Layout.fillWidth: true
            visible: sheet.plan.moveCount + sheet.plan.trashCount + sheet.plan.skipCount > 0
            onTextChanged: sheet.plan.query = text
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            Text {
                objectName: "previewEmptyText"
                anchors.fill: parent
                visible: list.count === 0
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: sheet.plan.query.length > 0 ? "No planned file matches your search."
                                                  : sheet.plan.summary
                color: Theme.secondary
                font.pixelSize: Theme.body
                wrapMode: Text.WordWrap
            }

            ListView {
                id: list
                objectName: "previewList"
                anchors.fill: parent
                model: sheet.plan
                clip: true
                spacing: 2
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar { policy: ScrollBar.AsNeeded }

                section.property: "group"
                section.delegate: Text {
                    required property string section
                    objectName: "previewSection"
                    width: list.width
                    topPadding: 10
                    bottomPadding: 4
                    text: section.toUpperCase()
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                    font.weight: Font.DemiBold
                    font.letterSpacing: 1.2
                }

                delegate: Rectangle {
                    id: row
                    required property string action
                    required property string name
                    required property string path
                    required property string detail
                    objectName: "previewRow"
                    width: list.width
                    height: rowContent.implicitHeight + 14
                    radius: 8
                    color: Theme.panelColor

                    RowLayout {
                        id: rowContent
                        anchors.left: parent.left
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        anchors.leftMargin: 12
                        anchors.rightMargin: 12
                        spacing: 10
                        Symbol {
                            Layout.alignment: Qt.AlignTop
                            name: row.action === "trash" ? "trash"
                                  : row.action === "move" ? "folder" : "exclamationmark.triangle"
                            color: row.action === "trash" ? Theme.destructive
                                   : row.action === "move" ? Theme.accent : Theme.orange
                            size: 16
                        }
                        ColumnLayout {
                            Layout.fillWidth: true
                            spacing: 1
                            Text {
                                objectName: "previewRowName"
                                Layout.fillWidth: true
                                text: row.name
                                color: Theme.text
                                font.pixelSize: Theme.body
                                elide: Text.ElideMiddle
                            }
                            Text {
                                Layout.fillWidth: true
                                text: row.path
                                color: Theme.grey
                                font.pixelSize: Theme.caption
                                elide: Text.ElideMiddle
                            }
                            Text {
                                objectName: "previewRowDetail"
                                Layout.fillWidth: true
                                text: row.detail
                                color: row.action === "skip" ? Theme.orange : Theme.secondary
                                font.pixelSize: Theme.caption
                                elide: Text.ElideMiddle
                            }
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.topMargin: 6
            Layout.fillWidth: true
            spacing: 8
            Item { Layout.fillWidth: true }
            AppButton {
                objectName: "cancelPreviewButton"
                text: "Cancel"
                onClicked: sheet.close()
            }
            AppButton {
                objectName: "runPreviewButton"
                prominent: true
                symbol: "sparkles"
                text: "Start"
                enabled: !Store.busy && Store.hasStartPlan
                onClicked: Store.runStartPlan()
            }
        }
    }

    // One count: the number large, the folder name under it.
    component CountTile: Rectangle {
        id: tile
        property int count
        property string label
        property bool destructive: false
        implicitWidth: Math.max(tileText.implicitWidth, tileCount.implicitWidth) + 26
        implicitHeight: 58
        radius: 10
        color: Theme.panelColor
        border.width: 1
        border.color: Theme.stroke
        Column {
            anchors.centerIn: parent
            spacing: 2
            Text {
                id: tileCount
                objectName: "value"
                text: String(tile.count)
                color: tile.destructive ? Theme.destructive : Theme.accent
                font.pixelSize: 20
                font.weight: Font.DemiBold
            }
            Text {
                id: tileText
                objectName: "label"
                text: tile.label
                color: Theme.secondary
                font.pixelSize: Theme.caption
            }
        }
    }
}
