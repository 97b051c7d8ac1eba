import QtQuick
import QtQuick.Layouts

/// A drawing of a product, sharp on every screen.
Image {
    property string name
    property int side: 88

    width: side
    height: side
    Layout.preferredWidth: side
    Layout.preferredHeight: side
    sourceSize.width: side * Screen.devicePixelRatio
    sourceSize.height: side * Screen.devicePixelRatio
    source: name ? Qt.resolvedUrl("art/" + name + ".svg") : ""
    Accessible.ignored: true
}
