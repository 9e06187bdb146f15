// Folders & settings: the connected folders, the two clean-up switches, the weekly review's age,
// "Open Trash" and the note on what the health check is.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

PageFlickable {
    id: settings
    signal addFolderRequested()

    contentHeight: column.implicitHeight + 8

    component Note: ReadText {
        Layout.fillWidth: true
        color: Theme.secondary
        font.pixelSize: Theme.caption
        lineHeight: 1.25
        wrapMode: Text.WordWrap
    }

    // Compact enough that every control shows at the default window size (1180 × 800) with
    // three connected folders.
    ColumnLayout {
        id: column
        width: settings.width
        spacing: 10

        // Connected folders.
        Panel {
            Layout.fillWidth: true
            Layout.preferredHeight: folders.implicitHeight + 28
            ColumnLayout {
                id: folders
                anchors.fill: parent
                anchors.margins: 14
                spacing: 6
                RowLayout {
                    Layout.fillWidth: true
                    ReadText {
                        Layout.fillWidth: true
                        Accessible.role: Accessible.Heading
                        text: "Connected folders"
                        color: Theme.text
                        font.pixelSize: 16
                        font.weight: Font.DemiBold
                    }
                    AppButton {
                        objectName: "addFolderButton"
                        symbol: "plus"
                        text: "Add folder"
                        enabled: !Store.busy
                        onClicked: settings.addFolderRequested()
                    }
                }
                Repeater {
                    model: Store.roots
                    delegate: Rectangle {
                        id: folderRow
                        required property string modelData
                        required property int index
                        objectName: "rootRow:" + index
                        Layout.fillWidth: true
                        Layout.preferredHeight: 42
                        radius: 10
                        color: "#14181a"
                        border.width: 1
                        border.color: Theme.stroke
                        RowLayout {
                            anchors.fill: parent
                            anchors.leftMargin: 14
                            anchors.rightMargin: 10
                            spacing: 12
                            Symbol {
                                name: "folder.fill"
                                color: Theme.accent
                                size: 18
                            }
                            ColumnLayout {
                                Layout.fillWidth: true
                                spacing: 2
                                ReadText {
                                    objectName: "rootName"
                                    Layout.fillWidth: true
                                    text: Store.rootNames[folderRow.index] ?? ""
                                    color: Theme.text
                                    font.pixelSize: 13
                                    font.weight: Font.Medium
                                    elide: Text.ElideRight
                                }
                                ReadText {
                                    objectName: "rootPath"
                                    Layout.fillWidth: true
                                    text: folderRow.modelData
                                    color: Theme.secondary
                                    font.pixelSize: Theme.caption
                                    elide: Text.ElideMiddle
                                }
                            }
                            AppButton {
                                objectName: "removeFolderButton"
                                text: "Remove"
                                quiet: true
                                destructive: true
                                implicitHeight: 28
                                textSize: 12
                                enabled: !Store.busy
                                onClicked: Store.removeFolderAt(folderRow.index)
                                Accessible.name: "Remove " + (Store.rootNames[folderRow.index] ?? "")
                            }
                        }
                    }
                }
                ReadText {
                    visible: Store.roots.length === 0
                    text: "No folder is connected. Add one to start."
                    color: Theme.secondary
                    font.pixelSize: 12
                }
            }
        }

        // Clean-up.
        Panel {
            Layout.fillWidth: true
            Layout.preferredHeight: cleanup.implicitHeight + 28
            ColumnLayout {
                id: cleanup
                anchors.fill: parent
                anchors.margins: 14
                spacing: 8
                AppSwitch {
                    objectName: "autoDuplicatesSwitch"
                    Layout.fillWidth: true
                    text: "Automatically clear exact duplicates on Start"
                    checked: Store.autoDuplicates
                    onToggled: Store.autoDuplicates = checked
                }
                AppSwitch {
                    objectName: "inspectSwitch"
                    Layout.fillWidth: true
                    text: "Enable image / PDF checks when I click Check health"
                    checked: Store.inspect
                    onToggled: Store.inspect = checked
                }
                Note {
                    objectName: "accessNote"
                    text: PlatformTexts.accessNote
                }
                Note {
                    objectName: "scanNote"
                    text: PlatformTexts.scanNote
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            color: Theme.stroke
        }

        // The weekly review.
        Panel {
            Layout.fillWidth: true
            Layout.preferredHeight: review.implicitHeight + 28
            ColumnLayout {
                id: review
                anchors.fill: parent
                anchors.margins: 14
                spacing: 8
                ReadText {
                    Accessible.role: Accessible.Heading
                    text: "Weekly Downloads review"
                    color: Theme.text
                    font.pixelSize: 16
                    font.weight: Font.DemiBold
                }
                // The note, and the stepper at its trailing edge.
                RowLayout {
                    Layout.fillWidth: true
                    spacing: 24
                    Note {
                        text: "The app marks a review due every 7 days when you open it. Choose how many weeks old a file should be before it appears. No background process deletes your Downloads."
                    }
                    Stepper {
                        objectName: "settingsWeeksStepper"
                        Layout.alignment: Qt.AlignVCenter
                        label: "Unused for " + Store.weeks + " weeks"
                        decreaseName: "Fewer weeks"
                        increaseName: "More weeks"
                        value: Store.weeks
                        from: 1
                        to: 52
                        onModified: (value) => Store.weeks = value
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 16
            AppButton {
                objectName: "openTrashButton"
                symbol: "trash"
                text: "Open Trash"
                onClicked: Desktop.openTrash()
            }
            AppButton {
                objectName: "forgetCacheButton"
                text: "Forget cached results"
                onClicked: Store.forgetCachedResults()
            }
            Note {
                text: "File health is a limited readability and file-type check. QUORRIN does not certify that a file is safe or scan for viruses. Videos and audio are not fully decoded for damage."
            }
        }
    }
}
