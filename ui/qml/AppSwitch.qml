// A switch tinted `accent`, its label to the left.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

Switch {
    id: control
    hoverEnabled: true

    // A screen reader's press or toggle is a click (the control alone does not act on it).
    function toggleByAccessibility() {
        if (!enabled)
            return
        toggle()
        toggled()
    }
    Accessible.onPressAction: toggleByAccessibility()
    Accessible.onToggleAction: toggleByAccessibility()
    spacing: 12
    leftPadding: 0
    rightPadding: 0

    indicator: Rectangle {
        implicitWidth: 40
        implicitHeight: 22
        x: control.width - width - control.rightPadding
        y: (control.height - height) / 2
        radius: height / 2
        color: control.checked ? Theme.accent : Theme.raised
        border.width: control.checked ? 0 : 1
        border.color: Theme.strokeStrong
        Behavior on color { ColorAnimation { duration: 120 } }

        FocusRing {
            visible: control.visualFocus
            baseRadius: parent.radius
        }

        Rectangle {
            width: 18
            height: 18
            radius: 9
            y: 2
            x: control.checked ? parent.width - width - 2 : 2
            color: control.checked ? Theme.accentInk : Theme.text
            Behavior on x { NumberAnimation { duration: 120 } }
        }
    }

    contentItem: Text {
        text: control.text
        color: Theme.text
        font.pixelSize: Theme.body
        verticalAlignment: Text.AlignVCenter
        rightPadding: control.indicator.width + control.spacing
        wrapMode: Text.WordWrap
    }
}
