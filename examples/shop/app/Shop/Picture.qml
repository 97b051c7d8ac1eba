import QtQuick

/// The picture of a product, on a ground of its own hue.
Rectangle {
    id: picture

    property string art
    property real hue: 0.4

    color: Theme.tint(hue)
    radius: Theme.radius

    Art {
        anchors.centerIn: parent
        name: picture.art
        side: Math.min(picture.width, picture.height) * 0.8
    }
}
