// The folder chooser of "Add folder": folders only, several may be ticked; the confirm button
// reads "Add folder". Double-click (or the arrow) opens a folder.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Quorrin

Dialog {
    id: chooser
    signal chosen(var paths)

    objectName: "folderChooser"
    modal: true
    anchors.centerIn: T.Overlay.overlay
    width: 620
    height: 520
    padding: 0
    closePolicy: Popup.CloseOnEscape
    // The chooser takes the keyboard, so Escape closes it and Tab walks its controls.
    focus: true
    // The title names the dialog for a screen reader; it is drawn in the content below.
    title: "Choose folders to connect"
    header: null

    onAboutToShow: browser.reset()

    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.55) }

    FolderBrowser { id: browser }

    background: Rectangle {
        radius: 16
        color: "#1b2023"
        border.width: 1
        border.color: Theme.strokeStrong
    }

    contentItem: ColumnLayout {
        spacing: 0

        // Title and where we are.
        ColumnLayout {
            Layout.fillWidth: true
            Layout.margins: 20
            Layout.bottomMargin: 12
            spacing: 12
            ReadText {
                Accessible.role: Accessible.Heading
                text: "Choose folders to connect"
                color: Theme.text
                font.pixelSize: 17
                font.weight: Font.DemiBold
            }
            RowLayout {
                Layout.fillWidth: true
                spacing: 6
                AppButton {
                    objectName: "chooserUpButton"
                    symbol: "arrow.up"
                    width: 34
                    leftPadding: 9
                    enabled: browser.canGoUp
                    onClicked: browser.goUp()
                    Accessible.name: "Enclosing folder"
                }
                AppButton {
                    objectName: "chooserHomeButton"
                    symbol: "house"
                    width: 34
                    leftPadding: 9
                    onClicked: browser.folder = browser.home()
                    Accessible.name: "Home folder"
                }
                Rectangle {
                    Layout.fillWidth: true
                    Layout.preferredHeight: Theme.controlHeight
                    radius: Theme.controlRadius
                    color: Theme.raised
                    border.width: 1
                    border.color: Theme.strokeStrong
                    ReadText {
                        objectName: "chooserFolder"
                        anchors.fill: parent
                        anchors.leftMargin: 12
                        anchors.rightMargin: 12
                        text: browser.folder
                        color: Theme.text
                        font.pixelSize: 12
                        verticalAlignment: Text.AlignVCenter
                        elide: Text.ElideLeft
                    }
                }
            }
        }

        Rectangle { Layout.fillWidth: true; Layout.preferredHeight: 1; color: Theme.stroke }

        ListView {
            id: folders
            objectName: "chooserList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: browser
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {
                policy: ScrollBar.AsNeeded
                Accessible.ignored: true
            }
            Accessible.role: Accessible.List
            Accessible.name: browser.folderName

            delegate: Rectangle {
                id: folderRow
                required property int index
                required property string name
                required property bool chosen
                objectName: "chooserRow:" + name
                Accessible.role: Accessible.ListItem
                Accessible.name: name
                Accessible.selectable: true
                Accessible.selected: chosen
                width: folders.width
                height: 40
                color: chosen ? Theme.selection : rowHover.hovered ? "#20272a" : "transparent"

                HoverHandler { id: rowHover }
                TapHandler {
                    onTapped: browser.setChosen(folderRow.index, !folderRow.chosen)
                    onDoubleTapped: browser.enter(folderRow.index)
                }

                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: 20
                    anchors.rightMargin: 12
                    spacing: 12
                    CheckMark {
                        objectName: "chooserCheck"
                        checked: folderRow.chosen
                        onToggled: browser.setChosen(folderRow.index, checked)
                        Accessible.name: "Select " + folderRow.name
                    }
                    Symbol {
                        name: "folder.fill"
                        color: Theme.accent
                        size: 18
                    }
                    Text {
                        Layout.fillWidth: true
                        text: folderRow.name
                        color: Theme.text
                        font.pixelSize: 13
                        elide: Text.ElideRight
                    }
                    AppButton {
                        objectName: "chooserOpenButton"
                        symbol: "chevron.right"
                        quiet: true
                        implicitHeight: 28
                        width: 30
                        leftPadding: 7
                        onClicked: browser.enter(folderRow.index)
                        Accessible.name: "Open " + folderRow.name
                    }
                }
            }

            ReadText {
                anchors.centerIn: parent
                visible: !browser.loading && browser.count === 0
                text: "No folders here"
                color: Theme.secondary
                font.pixelSize: 13
            }
        }

        Rectangle { Layout.fillWidth: true; Layout.preferredHeight: 1; color: Theme.stroke }

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 16
            Layout.leftMargin: 20
            spacing: 8
            ReadText {
                objectName: "chooserSummary"
                Layout.fillWidth: true
                text: browser.chosen.length === 0
                      ? "Nothing ticked: “Add folder” connects " + browser.folderName
                      : browser.chosen.length === 1 ? "1 folder ticked"
                                                     : browser.chosen.length + " folders ticked"
                color: Theme.secondary
                font.pixelSize: 12
                elide: Text.ElideRight
            }
            AppButton {
                objectName: "chooserCancelButton"
                text: "Cancel"
                onClicked: chooser.close()
            }
            AppButton {
                objectName: "chooserConfirmButton"
                text: "Add folder"
                prominent: true
                enabled: !browser.loading || browser.chosen.length > 0
                onClicked: {
                    const paths = browser.result()
                    chooser.close()
                    chooser.chosen(paths)
                }
            }
        }
    }
}
