// A stepper: its label, then a minus and a plus button that change `value` by one within
// `from`…`to`.
import QtQuick
import Quorrin

Row {
    id: stepper
    property string label
    property int value
    property int from: 1
    property int to: 52
    signal modified(int value)

    spacing: 12

    Text {
        objectName: "label"
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
            onClicked: stepper.modified(Math.max(stepper.from, stepper.value - 1))
        }
        AppButton {
            objectName: "increment"
            symbol: "plus"
            width: 34
            leftPadding: 9
            enabled: stepper.value < stepper.to
            onClicked: stepper.modified(Math.min(stepper.to, stepper.value + 1))
        }
    }
}
