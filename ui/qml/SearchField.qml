// The search field of the file lists, with its magnifying glass.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

TextField {
    id: field
    implicitHeight: Theme.controlHeight
    leftPadding: 34
    rightPadding: 10
    color: Theme.text
    placeholderText: "Search by filename or folder…"
    placeholderTextColor: Theme.grey
    selectionColor: Qt.rgba(0.67, 0.95, 0.42, 0.35)
    selectedTextColor: Theme.text
    font.pixelSize: Theme.body
    verticalAlignment: TextInput.AlignVCenter

    Accessible.name: placeholderText
    Accessible.searchEdit: true

    Symbol {
        name: "magnifyingglass"
        color: Theme.secondary
        size: 15
        x: 11
        anchors.verticalCenter: parent.verticalCenter
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.raised
        border.width: 1
        border.color: field.activeFocus ? Theme.accent : Theme.strokeStrong
    }
}
