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

    ColumnLayout {
        id: column
        width: settings.width
        spacing: 14

        // Connected folders.
        Panel {
            Layout.fillWidth: true
            Layout.preferredHeight: folders.implicitHeight + 36
            ColumnLayout {
                id: folders
                anchors.fill: parent
                anchors.margins: 18
                spacing: 8
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
                        Layout.preferredHeight: 48
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
            Layout.preferredHeight: cleanup.implicitHeight + 36
            ColumnLayout {
                id: cleanup
                anchors.fill: parent
                anchors.margins: 18
                spacing: 10
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
                    text: "If macOS blocks access, allow Documents, Downloads and Desktop in System Settings → Privacy & Security → Files and Folders. Protected projects and app data are skipped. Cloud-only files may download during content comparison."
                }
                Note {
                    text: "Quick scan reads names, sizes and dates without opening file content. Use Duplicates → Check duplicates and File health → Check health separately. Start still compares full content when automatic duplicate clearing is ON; switch it OFF for faster arrangement. Downloads → Check usage reads Spotlight history and can take longer. Local image/PDF health checks may open cloud files."
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
            Layout.preferredHeight: review.implicitHeight + 36
            ColumnLayout {
                id: review
                anchors.fill: parent
                anchors.margins: 18
                spacing: 12
                ReadText {
                    Accessible.role: Accessible.Heading
                    text: "Weekly Downloads review"
                    color: Theme.text
                    font.pixelSize: 16
                    font.weight: Font.DemiBold
                }
                Note {
                    text: "The app marks a review due every 7 days when you open it. Choose how many weeks old a file should be before it appears. No background process deletes your Downloads."
                }
                Stepper {
                    objectName: "settingsWeeksStepper"
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

        RowLayout {
            Layout.fillWidth: true
            spacing: 16
            AppButton {
                objectName: "openTrashButton"
                symbol: "trash"
                text: "Open Trash"
                onClicked: Desktop.openTrash()
            }
            Note {
                text: "File health is a limited readability and file-type check. QUORRIN does not certify that a file is safe or scan for viruses. Videos and audio are not fully decoded for damage."
            }
        }
    }
}
