import QtQuick

/// A product in a line: picture, words, and what stands at the end.
Item {
    id: line

    property var product
    property string detail: product.brand
    default property alias trailing: end.data

    implicitHeight: 88

    Picture {
        id: picture

        anchors.verticalCenter: parent.verticalCenter
        width: 72
        height: 72
        radius: 16
        art: line.product.art
        hue: line.product.hue
    }
    Column {
        anchors.left: picture.right
        anchors.leftMargin: 14
        anchors.right: end.left
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: line.product.name
            font.weight: Font.Medium
        }
        Label {
            width: parent.width
            text: line.detail
            role: Label.Role.Small
            soft: true
        }
        Label {
            text: Stock.money(line.product.price)
            font.weight: Font.DemiBold
        }
    }
    Row {
        id: end

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4
    }
}
