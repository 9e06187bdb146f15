// Activity: the history of scans, clean-ups and reviews, newest first, read-only.
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

Item {
    id: activityPage

    ReadText {
        objectName: "activityEmptyText"
        visible: Store.activity.count === 0
        anchors.centerIn: parent
        text: "Your scan and clean-up history will appear here."
        color: Theme.secondary
        font.pixelSize: 14
    }

    ListView {
        id: list
        objectName: "activityList"
        anchors.fill: parent
        visible: Store.activity.count > 0
        model: Store.activity
        spacing: 8
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {
            policy: ScrollBar.AsNeeded
            Accessible.ignored: true
        }
        Accessible.role: Accessible.List
        Accessible.name: "Activity"

        delegate: Panel {
            id: entry
            required property string activityId
            required property string text
            required property string time
            objectName: "activityRow"
            Accessible.role: Accessible.ListItem
            Accessible.name: text + ", " + time
            width: list.width
            height: content.implicitHeight + 26
            radius: 11

            RowLayout {
                id: content
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.top: parent.top
                anchors.margins: 13
                anchors.leftMargin: 16
                spacing: 12
                Symbol {
                    Layout.alignment: Qt.AlignTop
                    name: "checkmark.circle"
                    color: Theme.accent
                    size: 18
                }
                ColumnLayout {
                    Layout.fillWidth: true
                    spacing: 3
                    Text {
                        objectName: "activityText"
                        Layout.fillWidth: true
                        text: entry.text
                        color: Theme.text
                        font.pixelSize: 13
                        wrapMode: Text.Wrap
                    }
                    Text {
                        objectName: "activityTime"
                        text: entry.time
                        color: Theme.secondary
                        font.pixelSize: Theme.caption
                    }
                }
            }
        }
    }
}
