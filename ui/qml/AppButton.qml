// A button in the window's style: plain, prominent (filled with `accent`), destructive, or quiet
// (no fill until hovered), with an optional leading symbol.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

Button {
    id: control
    property string symbol
    property bool prominent: false
    property bool destructive: false
    property bool quiet: false
    property int textSize: Theme.body

    readonly property color foreground: prominent ? Theme.accentInk
                                                  : destructive ? Theme.destructive : Theme.text

    implicitHeight: Theme.controlHeight
    leftPadding: symbol.length > 0 ? 11 : 13
    rightPadding: 13
    topPadding: 0
    bottomPadding: 0
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.4

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    // A screen reader's press is a click (the control alone does not click on it).
    Accessible.onPressAction: if (enabled) clicked()

    contentItem: Item {
        implicitWidth: content.implicitWidth
        implicitHeight: content.implicitHeight
        Row {
            id: content
            anchors.centerIn: parent
            spacing: 7
            Symbol {
                visible: control.symbol.length > 0
                name: control.symbol
                color: control.foreground
                size: 15
                anchors.verticalCenter: parent.verticalCenter
            }
            Text {
                visible: control.text.length > 0
                text: control.text
                color: control.foreground
                font.pixelSize: control.textSize
                font.weight: control.prominent ? Font.DemiBold : Font.Medium
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: {
            if (control.prominent)
                return control.down ? Qt.darker(Theme.accent, 1.15)
                                    : control.hovered ? Qt.lighter(Theme.accent, 1.06) : Theme.accent
            if (control.quiet && !control.hovered && !control.down)
                return "transparent"
            return control.down ? Theme.strokeStrong : control.hovered ? Theme.raisedHover : Theme.raised
        }
        border.width: control.prominent || control.quiet ? 0 : 1
        border.color: Theme.strokeStrong

        FocusRing {
            visible: control.visualFocus
        }
    }
}
