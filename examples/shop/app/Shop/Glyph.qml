import QtQuick
import QtQuick.Layouts

/// A line drawing of the shop, in one colour.
Image {
    property string name
    property color color: Theme.ink
    property int size: 22

    width: size
    height: size
    Layout.preferredWidth: size
    Layout.preferredHeight: size
    sourceSize.width: size * Screen.devicePixelRatio
    sourceSize.height: size * Screen.devicePixelRatio
    source: name ? "image://glyphs/" + name + "/" + color.toString().slice(1) : ""
    Accessible.ignored: true
}
