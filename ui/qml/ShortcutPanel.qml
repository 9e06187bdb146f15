// A panel that is one button over its whole area: symbol, title, caption and a trailing arrow.
import QtQuick
import QtQuick.Layouts
import Quorrin

Panel {
    id: shortcut
    property string symbol
    property string title
    property string caption
    signal pressed()

    implicitHeight: 44 + Math.max(content.implicitHeight, 24)
    color: area.pressed ? "#1e2427" : area.containsMouse ? "#1b2023" : Theme.panelColor

    // A mouse press never gives it the focus, so the ring shows for the keyboard only.
    activeFocusOnTab: true
    Keys.onSpacePressed: pressed()
    Keys.onReturnPressed: pressed()
    Keys.onEnterPressed: pressed()
    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.description: caption
    Accessible.onPressAction: pressed()

    FocusRing {
        visible: shortcut.activeFocus
        baseRadius: shortcut.radius
    }

    RowLayout {
        anchors.fill: parent
        anchors.margins: 22
        spacing: 14

        Rectangle {
            Layout.preferredWidth: 40
            Layout.preferredHeight: 40
            radius: 10
            color: Qt.rgba(0.67, 0.95, 0.42, 0.10)
            Symbol {
                anchors.centerIn: parent
                name: shortcut.symbol
                color: Theme.accent
                size: 20
            }
        }
        ColumnLayout {
            id: content
            Layout.fillWidth: true
            spacing: 3
            Text {
                objectName: "title"
                Layout.fillWidth: true
                text: shortcut.title
                color: Theme.text
                font.pixelSize: 15
                font.weight: Font.DemiBold
                wrapMode: Text.WordWrap
            }
            Text {
                objectName: "caption"
                Layout.fillWidth: true
                text: shortcut.caption
                color: Theme.secondary
                font.pixelSize: Theme.caption
                wrapMode: Text.WordWrap
            }
        }
        Symbol {
            name: "arrow.up.right"
            color: Theme.secondary
            size: 18
        }
    }

    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: shortcut.pressed()
    }
}
