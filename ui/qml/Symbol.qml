// One bundled icon, named by its symbol name and drawn in one colour.
import QtQuick
import Quorrin

Image {
    id: symbol
    property string name
    property color color: Theme.text
    property int size: 16

    width: size
    height: size
    sourceSize.width: size * 2
    sourceSize.height: size * 2
    fillMode: Image.PreserveAspectFit
    smooth: true
    mipmap: true
    Accessible.ignored: true

    source: name.length > 0 ? "image://symbol/" + name + "/" + Theme.hex(color) : ""
}
