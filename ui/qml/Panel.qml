// A card or panel: `panelColor` in a rounded rectangle with a faint edge.
import QtQuick
import Quorrin

Rectangle {
    color: Theme.panelColor
    radius: Theme.radius
    border.color: Theme.stroke
    border.width: 1
}
