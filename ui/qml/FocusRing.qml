// The ring drawn around a control that has the keyboard focus: `accent`, just outside its edge.
import QtQuick
import Quorrin

Rectangle {
    objectName: "focusRing"
    property real gap: 3
    property real baseRadius: Theme.controlRadius

    anchors.fill: parent
    anchors.margins: -gap
    radius: baseRadius + gap
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    z: 10
}
