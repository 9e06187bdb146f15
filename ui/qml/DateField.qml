// A date picker showing the date only: a button with the abbreviated date that opens a month grid.
// From the keyboard the arrows move a day cursor (a week up and down, a month with Page Up and Page
// Down) and Enter picks the day under it.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

Row {
    id: field
    property string title
    property date date
    signal picked(date date)

    spacing: 8

    Text {
        Accessible.ignored: true  // the button's name says it
        text: field.title
        color: Theme.secondary
        font.pixelSize: Theme.body
        anchors.verticalCenter: parent.verticalCenter
    }

    AppButton {
        id: button
        objectName: "button"
        symbol: "calendar"
        text: Format.abbreviatedDate(field.date)
        Accessible.name: field.title + ": " + text
        anchors.verticalCenter: parent.verticalCenter
        onClicked: {
            popup.shown = Format.addMonths(field.date, 0)
            popup.cursor = field.date
            // Opened from the keyboard, the cursor is on the chosen day at once; opened with the
            // mouse, it shows at the first arrow key.
            popup.cursorShown = button.visualFocus
            popup.open()
        }
    }

    Popup {
        id: popup
        objectName: "popup"
        property date shown: field.date
        property date cursor: field.date
        property bool cursorShown: false

        function moveCursor(days, months) {
            const moved = new Date(cursor.getFullYear(), cursor.getMonth() + months,
                                   cursor.getDate() + days)
            cursor = Format.withDay(field.date, moved.getFullYear(), moved.getMonth() + 1,
                                    moved.getDate())
            shown = cursor
            cursorShown = true
        }
        function pickCursor() {
            field.picked(Format.withDay(field.date, cursor.getFullYear(), cursor.getMonth() + 1,
                                        cursor.getDate()))
            close()
        }

        y: button.height + 6
        x: button.x
        padding: 12
        modal: false
        focus: true

        background: Rectangle {
            radius: Theme.radius
            color: Theme.raised
            border.width: 1
            border.color: Theme.strokeStrong
        }

        contentItem: Column {
            spacing: 8
            focus: true
            Keys.onLeftPressed: popup.moveCursor(-1, 0)
            Keys.onRightPressed: popup.moveCursor(1, 0)
            Keys.onUpPressed: popup.moveCursor(-7, 0)
            Keys.onDownPressed: popup.moveCursor(7, 0)
            Keys.onPressed: (event) => {
                if (event.key === Qt.Key_PageUp)
                    popup.moveCursor(0, -1)
                else if (event.key === Qt.Key_PageDown)
                    popup.moveCursor(0, 1)
                else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
                    popup.pickCursor()
                else
                    return
                event.accepted = true
            }

            Row {
                width: grid.width
                AppButton {
                    objectName: "popup.previous"
                    symbol: "chevron.left"
                    quiet: true
                    width: 30
                    leftPadding: 7
                    onClicked: popup.shown = Format.addMonths(popup.shown, -1)
                    Accessible.name: "Previous month"
                }
                ReadText {
                    width: grid.width - 60
                    horizontalAlignment: Text.AlignHCenter
                    text: Format.monthAndYear(popup.shown)
                    color: Theme.text
                    font.pixelSize: Theme.body
                    font.weight: Font.DemiBold
                    anchors.verticalCenter: parent.verticalCenter
                }
                AppButton {
                    objectName: "popup.next"
                    symbol: "chevron.right"
                    quiet: true
                    width: 30
                    leftPadding: 7
                    onClicked: popup.shown = Format.addMonths(popup.shown, 1)
                    Accessible.name: "Next month"
                }
            }

            DayOfWeekRow {
                width: grid.width
                delegate: Text {
                    required property string shortName
                    text: shortName
                    color: Theme.grey
                    font.pixelSize: Theme.caption
                    horizontalAlignment: Text.AlignHCenter
                }
            }

            MonthGrid {
                id: grid
                objectName: "grid"
                width: 7 * 34
                month: popup.shown.getMonth()
                year: popup.shown.getFullYear()
                delegate: Rectangle {
                    id: day
                    required property var model
                    readonly property bool current: model.year === field.date.getFullYear()
                                                    && model.month === field.date.getMonth()
                                                    && model.day === field.date.getDate()
                    // The keyboard's cursor is here: the day takes the focus, so a screen reader
                    // says it, and shows the ring.
                    readonly property bool isCursor: popup.cursorShown
                                                     && model.year === popup.cursor.getFullYear()
                                                     && model.month === popup.cursor.getMonth()
                                                     && model.day === popup.cursor.getDate()
                    onIsCursorChanged: if (isCursor) forceActiveFocus(Qt.TabFocusReason)
                    Component.onCompleted: if (isCursor) forceActiveFocus(Qt.TabFocusReason)
                    objectName: (model.month === grid.month ? "day:" : "otherDay:") + model.day
                    implicitWidth: 34
                    implicitHeight: 30
                    Accessible.role: Accessible.Button
                    Accessible.name: Format.abbreviatedDate(Format.withDay(field.date, model.year, model.month + 1, model.day))
                    Accessible.onPressAction: pick()
                    function pick() {
                        field.picked(Format.withDay(field.date, day.model.year,
                                                    day.model.month + 1, day.model.day))
                        popup.close()
                    }
                    radius: 7
                    color: current ? Theme.accent : dayArea.containsMouse ? Theme.raisedHover : "transparent"
                    FocusRing {
                        visible: day.activeFocus
                        gap: 1
                        baseRadius: day.radius
                    }
                    Text {
                        anchors.centerIn: parent
                        text: day.model.day
                        color: day.current ? Theme.accentInk
                                           : day.model.month === grid.month ? Theme.text : Theme.grey
                        font.pixelSize: Theme.body
                    }
                    MouseArea {
                        id: dayArea
                        anchors.fill: parent
                        hoverEnabled: true
                        onClicked: day.pick()
                    }
                }
            }
        }
    }
}
