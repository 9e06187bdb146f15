// The Overview: three summary cards, the Start explanation with its switch, and the shortcuts to
// the weekly review and the folders.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

PageFlickable {
    id: overview
    signal jump(string page)

    contentHeight: column.implicitHeight + 8

    // The due state depends on the time; it is read again whenever the page is shown.
    onVisibleChanged: if (visible) Store.refreshReview()

    ColumnLayout {
        id: column
        width: overview.width
        spacing: 16

        RowLayout {
            Layout.fillWidth: true
            spacing: 16
            Card {
                objectName: "card:FILES INDEXED"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "FILES INDEXED"
                value: String(Store.fileCount)
                symbol: "doc.on.doc"
            }
            Card {
                objectName: "card:DUPLICATE SPACE"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "DUPLICATE SPACE"
                value: Store.duplicatesChecked ? Format.bytes(Store.duplicateBytes) : "Not checked"
                symbol: "square.on.square"
            }
            Card {
                objectName: "card:DOWNLOADS TO REVIEW"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                title: "DOWNLOADS TO REVIEW"
                value: String(Store.staleCount)
                symbol: "arrow.down.circle"
            }
        }

        // The hero panel.
        Panel {
            Layout.fillWidth: true
            Layout.preferredHeight: 132
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: 0; color: "#1b2419" }
                GradientStop { position: 0.55; color: Theme.panelColor }
            }
            RowLayout {
                anchors.fill: parent
                anchors.margins: 28
                spacing: 22
                Symbol {
                    name: "folder.badge.gearshape"
                    color: Theme.accent
                    size: 52
                }
                ReadText {
                    objectName: "heroText"
                    Accessible.role: Accessible.Heading
                    Layout.fillWidth: true
                    text: "Everything has its place."
                    color: Theme.text
                    font.pixelSize: 35
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                }
            }
        }

        // The Start panel.
        Panel {
            Layout.fillWidth: true
            Layout.preferredHeight: startColumn.implicitHeight + 44
            ColumnLayout {
                id: startColumn
                anchors.fill: parent
                anchors.margins: 22
                spacing: 14
                ReadText {
                    Layout.fillWidth: true
                    text: "Start sorts loose files into Videos, Images, Audio, Documents, Installers and Projects. Existing folder structures, project folders and system files are protected."
                    color: Theme.text
                    font.pixelSize: 14
                    lineHeight: 1.2
                    wrapMode: Text.WordWrap
                }
                RowLayout {
                    Layout.fillWidth: true
                    spacing: 16
                    AppSwitch {
                        objectName: "overviewDuplicatesSwitch"
                        Layout.fillWidth: true
                        text: "Send exact duplicates to Trash when I press Start"
                        checked: Store.autoDuplicates
                        onToggled: Store.autoDuplicates = checked
                    }
                    // Shows what Start would do, in a sheet that can then run exactly that.
                    AppButton {
                        objectName: "previewStartButton"
                        symbol: "magnifyingglass"
                        text: "Preview Start"
                        enabled: !Store.busy && Store.roots.length > 0
                        onClicked: Store.previewStart()
                    }
                }
                ReadText {
                    Layout.fillWidth: true
                    text: "Automatic duplicate cleaning covers loose files and QUORRIN category folders. Project files are organized but never automatically deduplicated. Existing nested folders are reviewed without automatic deletion. Keep protects a file from both arrangement and cleaning."
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                    lineHeight: 1.25
                    wrapMode: Text.WordWrap
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 16
            ShortcutPanel {
                objectName: "reviewShortcut"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "calendar"
                title: Store.reviewDue ? "Your weekly review is ready" : "Downloads review"
                caption: "Keep what matters. Clear what doesn’t."
                onPressed: overview.jump("Downloads review")
            }
            ShortcutPanel {
                objectName: "foldersShortcut"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                symbol: "folder"
                title: Store.roots.length + " folders connected"
                caption: "Manage your cleaning scope"
                onPressed: overview.jump("Folders & settings")
            }
        }
    }
}
