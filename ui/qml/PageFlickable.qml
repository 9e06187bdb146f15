// A page that scrolls when it is taller than the window: a slim scroll bar in the margin to the
// right of the content, and a fade at the bottom edge while more content lies below. A control
// that takes the keyboard focus is scrolled into view.
import QtQuick
import QtQuick.Controls.Basic
import Quorrin

Item {
    id: page
    default property alias content: flick.flickableData
    property alias contentHeight: flick.contentHeight
    property alias contentY: flick.contentY

    function reveal(item) {
        if (!item || !page.visible)
            return
        let inside = false
        for (let parent = item.parent; parent; parent = parent.parent)
            if (parent === flick.contentItem)
                inside = true
        if (!inside)
            return
        const top = item.mapToItem(flick.contentItem, 0, 0).y - 8
        const bottom = top + item.height + 16
        if (top < flick.contentY)
            flick.contentY = Math.max(0, top)
        else if (bottom > flick.contentY + flick.height)
            flick.contentY = Math.min(flick.contentHeight - flick.height, bottom - flick.height)
    }

    Connections {
        target: page.Window
        function onActiveFocusItemChanged() { page.reveal(page.Window.activeFocusItem) }
    }

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
