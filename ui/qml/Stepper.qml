// A stepper: its label, then a minus and a plus button that change `value` by one within
// `from`…`to`. A screen reader reads it as a group named by its label, holding the two named
// buttons.
import QtQuick
import Quorrin

Row {
    id: stepper
    property string label
    property int value
    property int from: 1
    property int to: 52
    property string decreaseName
    property string increaseName
    signal modified(int value)

    spacing: 12

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Text {
        objectName: "label"
        Accessible.ignored: true  // the group's name
        text: stepper.label
        color: Theme.text
        font.pixelSize: Theme.body
        anchors.verticalCenter: parent.verticalCenter
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        AppButton {
            objectName: "decrement"
            symbol: "minus"
            width: 34
            leftPadding: 9
            enabled: stepper.value > stepper.from
            Accessible.name: stepper.decreaseName
            onClicked: stepper.modified(Math.max(stepper.from, stepper.value - 1))
        }
        AppButton {
            objectName: "increment"
            symbol: "plus"
            width: 34
            leftPadding: 9
            enabled: stepper.value < stepper.to
            Accessible.name: stepper.increaseName
            onClicked: stepper.modified(Math.min(stepper.to, stepper.value + 1))
        }
    }
}
