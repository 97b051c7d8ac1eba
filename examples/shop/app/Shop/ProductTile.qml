import QtQuick
import QtQuick.Layouts

/// A product among others: picture, name, price.
Pressable {
    id: tile

    property var product
    readonly property bool isCheaper: product.before > 0

    implicitHeight: implicitContentHeight
    corner: Theme.radius
    text: isCheaper ? qsTr("%1, %2, %3, before %4").arg(product.name).arg(product.brand).arg(Stock.money(product.price)).arg(Stock.money(product.before))
                    : qsTr("%1, %2, %3").arg(product.name).arg(product.brand).arg(Stock.money(product.price))

    contentItem: ColumnLayout {
        spacing: 1

        Picture {
            Layout.fillWidth: true
            Layout.preferredHeight: tile.width * 0.92
            Layout.bottomMargin: 8
            art: tile.product.art
            hue: tile.product.hue
            opacity: tile.down ? 0.8 : 1

            SavingTag {
                anchors { left: parent.left; top: parent.top; margins: 10 }
                visible: tile.isCheaper
                percent: Math.round(100 - 100 * tile.product.price / Math.max(1, tile.product.before))
            }
        }
        Label {
            Layout.fillWidth: true
            text: tile.product.name
            read: false
            font.weight: Font.Medium
        }
        Label {
            Layout.fillWidth: true
            text: tile.product.brand
            read: false
            role: Label.Role.Small
            soft: true
        }
        Flow {
            Layout.fillWidth: true
            spacing: 6

            Label {
                text: Stock.money(tile.product.price)
                read: false
                font.weight: Font.DemiBold
                color: tile.isCheaper ? Theme.warm : Theme.ink
            }
            Label {
                visible: tile.isCheaper
                topPadding: 2
                text: Stock.money(tile.product.before)
                read: false
                role: Label.Role.Small
                soft: true
                font.strikeout: true
            }
        }
    }
}
