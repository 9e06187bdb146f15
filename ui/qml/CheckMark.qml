// A square checkbox without a label, filled with `accent` when on.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

CheckBox {
    id: control
    padding: 0
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
    implicitWidth: 18
    implicitHeight: 18

    indicator: Rectangle {
        width: 18
        height: 18
        radius: 5
        anchors.centerIn: parent
        color: control.checked ? Theme.accent : "transparent"
        border.width: control.checked ? 0 : 1.5
        border.color: control.hovered ? Theme.secondary : Theme.strokeStrong

        FocusRing {
            visible: control.visualFocus
            baseRadius: parent.radius
        }

        Symbol {
            anchors.centerIn: parent
            visible: control.checked
            name: "checkmark"
            color: Theme.accentInk
            size: 14
        }
    }
    contentItem: Item {}
}
