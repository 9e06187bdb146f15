// The sidebar: the brand block, the nine pages, and the footer saying how the app works. The pages
// are a list of tabs: Tab reaches the selected one, Up and Down open the one above or below.
import QtQuick
import QtQuick.Layouts
import Quorrin

Rectangle {
    id: sidebar
    property string page
    signal pagePressed(string page)

    // The system symbol of each page, in sidebar order.
    readonly property var symbols: ({
        "Overview": "square.grid.2x2",
        "All files": "magnifyingglass",
        "FindOlder": "calendar.badge.clock",
        "Duplicates": "square.on.square",
        "Downloads review": "arrow.down.circle",
        "File health": "heart.text.square",
        "Kept files": "bookmark",
        "Folders & settings": "slider.horizontal.3",
        "Activity": "clock.arrow.circlepath"
    })

    color: Theme.sidebar
    clip: true

    // Opens the page at `index` from the keyboard and keeps the keyboard on its tab.
    function pressByKey(index) {
        const pages = Format.pages
        if (index < 0 || index >= pages.length)
            return
        // The tab takes the focus before and after the press, which gives the window the focus.
        const tab = tabs.itemAt(index)
        tab.forceActiveFocus(Qt.TabFocusReason)
        pagePressed(pages[index])
        tab.forceActiveFocus(Qt.TabFocusReason)
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.stroke
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 16
        anchors.topMargin: 24
        spacing: 0

        // Brand block.
        Column {
            Layout.leftMargin: 8
            spacing: 7
            Row {
                spacing: 9
                Symbol {
                    name: "sparkles"
                    color: Theme.accent
                    size: 24
                    anchors.verticalCenter: parent.verticalCenter
                }
                ReadText {
                    objectName: "brandName"
                    text: "QUORRIN"
                    color: Theme.text
                    font.pixelSize: 18
                    font.weight: Font.Bold
                    font.letterSpacing: 1.6
                    anchors.verticalCenter: parent.verticalCenter
                }
            }
            ReadText {
                objectName: "brandTagline"
                text: "LESS CLUTTER. MORE CLARITY."
                color: Theme.secondary
                font.pixelSize: 9
                font.letterSpacing: 1.8
            }
        }

        Item { Layout.preferredHeight: 28 }

        ColumnLayout {
            objectName: "pageTabs"
            Layout.fillWidth: true
            spacing: 0
            Accessible.role: Accessible.PageTabList
            Accessible.name: "Pages"

            Repeater {
                id: tabs
                model: Format.pages
                delegate: Rectangle {
                    id: item
                    required property string modelData
                    required property int index
                    readonly property bool current: sidebar.page === modelData
                    objectName: "sidebar:" + modelData
                    Layout.fillWidth: true
                    Layout.preferredHeight: 36
                    Layout.bottomMargin: 2
                    radius: 9
                    color: current ? Theme.panelColor : area.containsMouse ? "#171b1e" : "transparent"
                    border.width: current ? 1 : 0
                    border.color: Theme.stroke

                    // Only the selected page is a Tab stop; a mouse press never gives a tab the focus.
                    activeFocusOnTab: current
                    Keys.onUpPressed: sidebar.pressByKey(index - 1)
                    Keys.onDownPressed: sidebar.pressByKey(index + 1)
                    Keys.onSpacePressed: sidebar.pressByKey(index)
                    Keys.onReturnPressed: sidebar.pressByKey(index)
                    Keys.onEnterPressed: sidebar.pressByKey(index)
                    Accessible.role: Accessible.PageTab
                    Accessible.name: modelData
                    Accessible.selectable: true
                    Accessible.selected: current
                    Accessible.onPressAction: sidebar.pagePressed(modelData)

                    FocusRing {
                        visible: item.activeFocus
                        gap: 1
                        baseRadius: item.radius
                    }

                    Rectangle {
                        visible: item.current
                        width: 3
                        height: 16
                        radius: 1.5
                        color: Theme.accent
                        anchors.verticalCenter: parent.verticalCenter
                        x: 0
                    }

                    Row {
                        anchors.verticalCenter: parent.verticalCenter
                        x: 12
                        spacing: 11
                        Symbol {
                            name: sidebar.symbols[item.modelData]
                            color: item.current ? Theme.accent : Theme.secondary
                            size: 17
                            anchors.verticalCenter: parent.verticalCenter
                        }
                        Text {
                            text: item.modelData
                            color: item.current ? Theme.text : "#c5cdd1"
                            font.pixelSize: Theme.body
                            font.weight: item.current ? Font.DemiBold : Font.Normal
                            anchors.verticalCenter: parent.verticalCenter
                        }
                    }

                    MouseArea {
                        id: area
                        anchors.fill: parent
                        hoverEnabled: true
                        cursorShape: Qt.PointingHandCursor
                        onClicked: sidebar.pagePressed(item.modelData)
                    }
                }
            }
        }

        Item { Layout.fillHeight: true }

        // Footer.
        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: footer.implicitHeight + 24
            radius: 10
            color: Theme.panelColor
            border.width: 1
            border.color: Theme.stroke

            Column {
                id: footer
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                anchors.leftMargin: 14
                anchors.rightMargin: 14
                spacing: 3
                ReadText {
                    objectName: "footerTitle"
                    text: Store.busy ? "Working safely" : "LOCAL • PRIVATE"
                    color: Store.busy ? Theme.accent : Theme.text
                    font.pixelSize: 12
                    font.weight: Font.Medium
                    font.letterSpacing: Store.busy ? 0 : 0.8
                }
                ReadText {
                    objectName: "footerNote"
                    text: PlatformTexts.sidebarFooter
                    color: Theme.secondary
                    font.pixelSize: Theme.caption
                }
            }
        }
    }
}
