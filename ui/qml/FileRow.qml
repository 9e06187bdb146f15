// One row of the file list: checkbox, icon, name and detail, the date on FindOlder, size, the kept
// mark and the row buttons; a right click opens "Open", "Show in Folder" and "Copy path".
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Quorrin

Rectangle {
    id: row
    required property int index
    required property string name
    required property string path
    required property string detail
    required property string detailKind
    required property string sizeText
    required property bool selected
    required property bool kept
    required property string dateText
    required property string iconSource
    property var list  // the FileListModel
    property bool showDate: false
    property string basis
    // The list has the keyboard and this is its current row: the row's controls are Tab stops.
    property bool focusShown: false

    // What a screen reader says for the row: name, the finding, "Matches: …" or the folder, the
    // date on FindOlder, the size, and "kept".
    readonly property string spokenText: {
        const parts = [name, detail]
        if (showDate)
            parts.push(dateText, basis)
        parts.push(sizeText)
        if (kept)
            parts.push("kept")
        return parts.join(", ")
    }

    // A button's text with the file's name after its first word: "Show in Folder" reads
    // "Show Report.pdf in Folder".
    function forFile(label) {
        const space = label.indexOf(" ")
        return space < 0 ? label + " " + name
                         : label.substring(0, space) + " " + name + label.substring(space)
    }

    objectName: "fileRow:" + name
    height: 54
    color: selected ? Theme.selection : hover.hovered ? "#161b1d" : "transparent"

    Accessible.role: Accessible.ListItem
    Accessible.name: spokenText
    Accessible.selectable: true
    Accessible.selected: selected

    HoverHandler { id: hover }

    // Space selects, Enter opens, the Menu key or Shift+F10 opens the context menu.
    Keys.onSpacePressed: list.setSelected(index, !selected)
    Keys.onReturnPressed: list.open(index)
    Keys.onEnterPressed: list.open(index)
    Keys.onMenuPressed: openMenu()
    Keys.onPressed: (event) => {
        if (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier) {
            openMenu()
            event.accepted = true
        }
    }

    function openMenu() {
        menu.popup(row, 48, row.height / 2)
    }

    // Only the keyboard gives the row itself the focus (a click focuses the checkbox at most).
    FocusRing {
        visible: row.activeFocus
        gap: -2
        baseRadius: 8
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: (point) => menu.popup()
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        height: 1
        color: Theme.stroke
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 12
        spacing: 12

        CheckMark {
            objectName: "rowCheck"
            focusPolicy: row.focusShown ? Qt.StrongFocus : Qt.ClickFocus
            checked: row.selected
            onToggled: row.list.setSelected(row.index, checked)
            Accessible.name: "Select " + row.name
        }

        Image {
            Accessible.ignored: true
            Layout.preferredWidth: 28
            Layout.preferredHeight: 28
            sourceSize.width: 56
            sourceSize.height: 56
            source: row.iconSource
            asynchronous: true
            smooth: true
            mipmap: true
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3
            Text {
                objectName: "rowName"
                Layout.fillWidth: true
                text: row.name
                color: Theme.text
                font.pixelSize: 13
                font.weight: Font.Medium
                elide: Text.ElideMiddle
            }
            Text {
                objectName: "rowDetail"
                Layout.fillWidth: true
                text: row.detail
                color: row.detailKind === "issue" ? Theme.orange : Theme.grey
                font.pixelSize: 10
                elide: Text.ElideMiddle
            }
        }

        ColumnLayout {
            visible: row.showDate
            Layout.preferredWidth: 120
            spacing: 3
            Text {
                objectName: "rowDate"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignRight
                text: row.dateText
                color: Theme.text
                font.pixelSize: 12
            }
            Text {
                objectName: "rowBasis"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignRight
                text: row.basis
                color: Theme.secondary
                font.pixelSize: 11
            }
        }

        Text {
            objectName: "rowSize"
            Layout.preferredWidth: 72
            horizontalAlignment: Text.AlignRight
            text: row.sizeText
            color: Theme.secondary
            font.pixelSize: 10
        }

        Item {
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
            Symbol {
                objectName: "rowKeptMark"
                visible: row.kept
                name: "bookmark.fill"
                color: Theme.accent
                size: 16
            }
        }

        AppButton {
            objectName: "rowKeepButton"
            focusPolicy: row.focusShown ? Qt.TabFocus : Qt.NoFocus
            text: "Keep / unkeep"
            quiet: true
            implicitHeight: 28
            textSize: 12
            onClicked: row.list.toggleKeep(row.index)
            Accessible.name: (row.kept ? "Unkeep " : "Keep ") + row.name
        }
        AppButton {
            objectName: "rowRevealButton"
            focusPolicy: row.focusShown ? Qt.TabFocus : Qt.NoFocus
            text: PlatformTexts.showInFileManager
            quiet: true
            implicitHeight: 28
            textSize: 12
            onClicked: row.list.reveal(row.index)
            Accessible.name: row.forFile(text)
        }
    }

    // One entry of the row's context menu.
    component MenuEntry: MenuItem {
        id: entry
        implicitHeight: 30
        contentItem: Text {
            text: entry.text
            color: Theme.text
            font.pixelSize: Theme.body
            leftPadding: 8
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            radius: 6
            color: entry.highlighted ? Theme.raisedHover : "transparent"
        }
    }

    Menu {
        id: menu
        objectName: "rowMenu"
        padding: 4
        background: Rectangle {
            implicitWidth: 180
            radius: Theme.controlRadius
            color: Theme.raised
            border.width: 1
            border.color: Theme.strokeStrong
        }
        MenuEntry { objectName: "menuOpen"; text: "Open"; onTriggered: row.list.open(row.index) }
        MenuEntry { objectName: "menuReveal"; text: PlatformTexts.showInFileManager; onTriggered: row.list.reveal(row.index) }
        MenuEntry { objectName: "menuCopyPath"; text: "Copy path"; onTriggered: row.list.copyPath(row.index) }
    }
}
