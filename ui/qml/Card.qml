// One summary card of the Overview: the symbol in `accent`, the value large, the title small.
import QtQuick
import QtQuick.Layouts
import Quorrin

Panel {
    id: card
    property string title
    property string value
    property string symbol

    implicitHeight: content.implicitHeight + 44

    Accessible.role: Accessible.StaticText
    Accessible.name: title + ": " + value

    ColumnLayout {
        id: content
        anchors.fill: parent
        anchors.margins: 22
        spacing: 6

        Symbol {
            name: card.symbol
            color: Theme.accent
            size: 22
        }
        Item { Layout.preferredHeight: 6 }
        Text {
            objectName: "value"
            Layout.fillWidth: true
            text: card.value
            color: Theme.text
            font.pixelSize: 30
            font.weight: Font.DemiBold
            // A narrow window draws a long value smaller rather than cutting it.
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 16
        }
        Text {
            objectName: "title"
            Layout.fillWidth: true
            text: card.title
            color: Theme.secondary
            font.pixelSize: Theme.caption
            font.weight: Font.Medium
            font.letterSpacing: 1
            elide: Text.ElideRight
        }
    }
}
