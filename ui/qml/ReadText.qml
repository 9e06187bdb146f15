// A text a screen reader reads: static text named by what it shows.
import QtQuick

Text {
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
