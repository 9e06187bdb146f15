// The colours, sizes and fonts every page shares: the dark theme around `panelColor` and `accent`.
pragma Singleton
import QtQuick
import Quorrin

QtObject {
    // The two global colours.
    readonly property color accent: Qt.rgba(0.67, 0.95, 0.42, 1)
    readonly property color panelColor: Qt.rgba(0.095, 0.11, 0.12, 1)

    // Surfaces, from the window's back to controls drawn on panels.
    readonly property color window: "#0c0f10"
    readonly property color sidebar: "#101315"
    readonly property color raised: "#232a2e"
    readonly property color raisedHover: "#2c353a"
    readonly property color stroke: "#262d31"
    readonly property color strokeStrong: "#3a4449"
    readonly property color selection: Qt.rgba(0.67, 0.95, 0.42, 0.10)

    // Text.
    readonly property color text: "#eef2f3"
    readonly property color secondary: "#9aa4aa"
    readonly property color grey: "#838d93"
    readonly property color orange: "#f0a04b"
    readonly property color destructive: "#ff7b72"
    readonly property color accentInk: "#13200b"

    // Sizes.
    readonly property int caption: 11
    readonly property int body: 13
    readonly property int radius: 14
    readonly property int controlRadius: 8
    readonly property int controlHeight: 32
    readonly property int pagePadding: 28

    // A colour as the symbol images take it: hex digits without "#".
    function hex(c) {
        return String(c).substring(1)
    }
}
