// A page that scrolls when it is taller than the window: a slim scroll bar in the margin to the
// right of the content, and a fade at the bottom edge while more content lies below.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

Item {
    id: page
    default property alias content: flick.flickableData
    property alias contentHeight: flick.contentHeight
    property alias contentY: flick.contentY

    Flickable {
        id: flick
        objectName: "pageFlickable"
        anchors.fill: parent
        anchors.rightMargin: -16  // the scroll bar sits in the page margin
        contentWidth: page.width
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        ScrollBar.vertical: ScrollBar {
            id: bar
            Accessible.ignored: true  // Tab scrolls the page to the control it reaches
            policy: flick.contentHeight > flick.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
            contentItem: Rectangle {
                implicitWidth: 4
                radius: 2
                color: bar.pressed ? Theme.secondary : Theme.strokeStrong
            }
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 36
        visible: flick.contentY < flick.contentHeight - flick.height - 1
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(0.047, 0.059, 0.063, 0) }
            GradientStop { position: 1; color: Theme.window }
        }
    }
}
