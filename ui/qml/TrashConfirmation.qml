// The confirmation before selected files go to the Trash.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Quorrin

Dialog {
    id: dialog
    signal moveToTrash()

    objectName: "trashConfirmation"
    modal: true
    anchors.centerIn: T.Overlay.overlay
    width: 440
    padding: 24
    topPadding: 22
    closePolicy: Popup.CloseOnEscape
    // The dialog takes the keyboard, so Escape closes it and Tab walks its buttons.
    focus: true
    // The title names the dialog for a screen reader; it is drawn in the content below.
    title: "Move selected files to Trash?"
    header: null

    T.Overlay.modal: Rectangle { color: Qt.rgba(0, 0, 0, 0.55) }

    background: Rectangle {
        radius: 16
        color: "#1b2023"
        border.width: 1
        border.color: Theme.strokeStrong
    }

    contentItem: ColumnLayout {
        spacing: 10
        RowLayout {
            spacing: 12
            Rectangle {
                Layout.preferredWidth: 36
                Layout.preferredHeight: 36
                radius: 10
                color: Qt.rgba(1, 0.48, 0.45, 0.12)
                Symbol {
                    anchors.centerIn: parent
                    name: "trash"
                    color: Theme.destructive
                    size: 19
                }
            }
            ReadText {
                objectName: "trashTitle"
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
                text: "Move selected files to Trash?"
                color: Theme.text
                font.pixelSize: 17
                font.weight: Font.DemiBold
                wrapMode: Text.WordWrap
            }
        }
        ReadText {
            objectName: "trashMessage"
            Layout.fillWidth: true
            Layout.topMargin: 4
            text: PlatformTexts.trashConfirmation
            color: Theme.secondary
            font.pixelSize: 13
            lineHeight: 1.2
            wrapMode: Text.WordWrap
        }
        RowLayout {
            Layout.topMargin: 14
            Layout.fillWidth: true
            spacing: 8
            Item { Layout.fillWidth: true }
            AppButton {
                objectName: "cancelTrashButton"
                text: "Cancel"
                onClicked: dialog.close()
            }
            AppButton {
                objectName: "moveToTrashButton"
                text: "Move to Trash"
                destructive: true
                onClicked: {
                    dialog.close()
                    dialog.moveToTrash()
                }
            }
        }
    }
}
