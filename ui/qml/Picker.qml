// A titled picker: the title, then a menu of {label, value} options bound to `value`.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

Row {
    id: picker
    property string title
    property var options: []
    property string value
    signal picked(string value)

    spacing: 8

    Text {
        Accessible.ignored: true  // the menu's name says it
        text: picker.title
        color: Theme.secondary
        font.pixelSize: Theme.body
        anchors.verticalCenter: parent.verticalCenter
    }

    ComboBox {
        id: combo
        objectName: picker.objectName.length > 0 ? picker.objectName + ".menu" : ""
        model: picker.options
        textRole: "label"
        valueRole: "value"
        implicitHeight: Theme.controlHeight
        implicitWidth: Math.max(150, contentWidthProbe.implicitWidth + 56)
        hoverEnabled: true
        anchors.verticalCenter: parent.verticalCenter
        Component.onCompleted: currentIndex = indexOfValue(picker.value)
        onActivated: picker.picked(currentValue)

        Accessible.name: picker.title + ": " + displayText

        Connections {
            target: picker
            function onValueChanged() { combo.currentIndex = combo.indexOfValue(picker.value) }
            function onOptionsChanged() { combo.currentIndex = combo.indexOfValue(picker.value) }
        }

        // The widest option sets the width, so the menu does not jump as the choice changes.
        Text {
            id: contentWidthProbe
            visible: false
            font.pixelSize: Theme.body
            text: {
                let widest = ""
                for (const option of picker.options)
                    if (option.label.length > widest.length)
                        widest = option.label
                return widest
            }
        }

        contentItem: Text {
            leftPadding: 12
            rightPadding: 30
            text: combo.displayText
            color: Theme.text
            font.pixelSize: Theme.body
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
        }

        indicator: Symbol {
            name: "chevron.down"
            color: Theme.secondary
            size: 14
            x: combo.width - width - 10
            y: (combo.height - height) / 2
        }

        background: Rectangle {
            radius: Theme.controlRadius
            color: combo.pressed ? Theme.strokeStrong : combo.hovered ? Theme.raisedHover : Theme.raised
            border.width: 1
            border.color: Theme.strokeStrong

            FocusRing {
                visible: combo.visualFocus
            }
        }

        delegate: ItemDelegate {
            id: option
            required property var modelData
            required property int index
            objectName: "option:" + modelData.label
            text: modelData.label  // drawn by the content item below; names the option
            width: combo.width
            height: 30
            hoverEnabled: true
            contentItem: Text {
                text: option.modelData.label
                color: combo.currentIndex === option.index ? Theme.accent : Theme.text
                font.pixelSize: Theme.body
                verticalAlignment: Text.AlignVCenter
            }
            background: Rectangle {
                radius: 6
                color: option.highlighted || option.hovered ? Theme.raisedHover : "transparent"
            }
            highlighted: combo.highlightedIndex === index
        }

        popup: Popup {
            y: combo.height + 4
            width: combo.width
            padding: 4
            implicitHeight: contentItem.implicitHeight + 8
            contentItem: ListView {
                clip: true
                implicitHeight: contentHeight
                model: combo.popup.visible ? combo.delegateModel : null
                currentIndex: combo.highlightedIndex
                interactive: false
            }
            background: Rectangle {
                radius: Theme.controlRadius
                color: Theme.raised
                border.width: 1
                border.color: Theme.strokeStrong
            }
        }
    }
}
