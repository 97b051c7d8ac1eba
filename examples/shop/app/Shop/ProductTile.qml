import QtQuick
import QtQuick.Templates as T

/// A product among others: picture, name, price.
T.AbstractButton {
    id: tile

    property var product

    implicitHeight: implicitWidth * 0.92 + 74
    Accessible.name: product.name + ", " + Stock.money(product.price)
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()

    background: Item {}
    contentItem: Item {  // qmllint disable deferred-property-id
        Picture {
            id: picture

            width: parent.width
            height: width * 0.92
            art: tile.product.art
            hue: tile.product.hue
            opacity: tile.down ? 0.8 : 1
            border.width: tile.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
        Rectangle {
            visible: tile.product.before > 0
            x: 10
            y: 10
            width: saving.implicitWidth + 16
            height: 24
            radius: 12
            color: Theme.warm

            Label {
                id: saving

                anchors.centerIn: parent
                text: "−" + Math.round(100 - 100 * tile.product.price / tile.product.before) + " %"
                color: Theme.dark ? "#2A0E05" : "#FFFFFF"
                font.pixelSize: 12
                font.weight: Font.DemiBold
            }
        }
        Column {
            anchors.top: picture.bottom
            anchors.topMargin: 9
            width: parent.width
            spacing: 1

            Label {
                width: parent.width
                text: tile.product.name
                font.weight: Font.Medium
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
            }
            Label {
                text: tile.product.brand
                role: Label.Role.Small
                soft: true
            }
            Row {
                spacing: 6

                Label {
                    text: Stock.money(tile.product.price)
                    font.weight: Font.DemiBold
                    color: tile.product.before > 0 ? Theme.warm : Theme.ink
                }
                Label {
                    visible: tile.product.before > 0
                    anchors.baseline: parent.children[0].baseline
                    text: Stock.money(tile.product.before)
                    role: Label.Role.Small
                    soft: true
                    font.strikeout: true
                }
            }
        }
    }
}
