// The find-older controls above the FindOlder list: date basis and match, the age slider with its
// presets and hint, or the custom day range; every change re-filters the list at once.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

Panel {
    id: controls
    property var list  // the FileListModel, which holds the find-older inputs

    readonly property bool custom: list.olderMode === "Custom dates"
    readonly property int months: Format.wholeMonths(list.ageMonths)

    implicitHeight: column.implicitHeight + 32

    function asOptions(names) {
        return names.map(name => ({ label: name, value: name }))
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 16
        spacing: 12

        Row {
            spacing: 20
            Picker {
                objectName: "dateBasisPicker"
                title: "File date"
                options: controls.asOptions(Format.dateBases)
                value: controls.list.dateBasis
                onPicked: (value) => controls.list.dateBasis = value
            }
            Picker {
                objectName: "olderModePicker"
                title: "Match"
                options: controls.asOptions(Format.olderModes)
                value: controls.list.olderMode
                onPicked: (value) => controls.list.olderMode = value
            }
        }

        // Custom dates: the day range.
        Row {
            visible: controls.custom
            spacing: 20
            DateField {
                objectName: "fromDateField"
                title: "From"
                date: controls.list.fromDate
                onPicked: (date) => controls.list.fromDate = date
            }
            DateField {
                objectName: "throughDateField"
                title: "Through"
                date: controls.list.throughDate
                onPicked: (date) => controls.list.throughDate = date
            }
        }
        RowLayout {
            visible: controls.custom && controls.list.fromDate > controls.list.throughDate
            spacing: 7
            Symbol {
                name: "exclamationmark.triangle"
                color: Theme.orange
                size: 15
            }
            ReadText {
                objectName: "dateRangeWarning"
                text: "From date must be before or equal to Through date."
                color: Theme.orange
                font.pixelSize: 12
            }
        }

        // Older than / During that month: the age.
        ColumnLayout {
            visible: !controls.custom
            Layout.fillWidth: true
            spacing: 8

            RowLayout {
                Layout.fillWidth: true
                ReadText {
                    objectName: "ageHeading"
                    Accessible.role: Accessible.Heading
                    text: Format.ageHeading(controls.list.olderMode, controls.list.ageMonths)
                    color: Theme.text
                    font.pixelSize: 16
                    font.weight: Font.DemiBold
                }
                Item { Layout.fillWidth: true }
                ReadText {
                    objectName: "ageRangeCaption"
                    text: "1 month – 5 years"
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                }
            }

            Slider {
                id: slider
                objectName: "ageSlider"
                Layout.fillWidth: true
                from: 1
                to: 60
                stepSize: 1
                snapMode: Slider.SnapAlways
                Accessible.name: Format.ageHeading(controls.list.olderMode, controls.list.ageMonths)
                value: controls.list.ageMonths
                onMoved: controls.list.ageMonths = value
                leftPadding: 0
                rightPadding: 0

                background: Rectangle {
                    x: slider.leftPadding
                    y: slider.topPadding + slider.availableHeight / 2 - height / 2
                    width: slider.availableWidth
                    height: 4
                    radius: 2
                    color: Theme.raised
                    Rectangle {
                        width: slider.visualPosition * parent.width
                        height: parent.height
                        radius: 2
                        color: Theme.accent
                    }
                }
                handle: Rectangle {
                    x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
                    y: slider.topPadding + slider.availableHeight / 2 - height / 2
                    width: 18
                    height: 18
                    radius: 9
                    color: slider.pressed ? Qt.darker(Theme.accent, 1.1) : Theme.accent
                    border.width: 3
                    border.color: Theme.panelColor

                    FocusRing {
                        visible: slider.visualFocus
                        baseRadius: parent.radius
                    }
                }
            }

            Row {
                spacing: 6
                Repeater {
                    model: Format.agePresets
                    delegate: AppButton {
                        required property int modelData
                        readonly property bool current: controls.months === modelData
                        objectName: "preset:" + Format.presetLabel(modelData)
                        text: Format.presetLabel(modelData)
                        prominent: current
                        implicitHeight: 28
                        implicitWidth: 46
                        leftPadding: 0
                        rightPadding: 0
                        textSize: 12
                        onClicked: controls.list.ageMonths = modelData
                    }
                }
            }

            ReadText {
                objectName: "olderHint"
                Layout.fillWidth: true
                text: Format.olderHint(controls.list.olderMode, controls.list.ageMonths, Store)
                color: Theme.text
                font.pixelSize: 12
                wrapMode: Text.WordWrap
            }
        }

        ReadText {
            objectName: "olderNote"
            Layout.fillWidth: true
            text: PlatformTexts.findOlderNote
            color: Theme.secondary
            font.pixelSize: Theme.caption
            lineHeight: 1.2
            wrapMode: Text.WordWrap
        }
    }
}
