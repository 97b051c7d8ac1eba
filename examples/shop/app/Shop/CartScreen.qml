pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// What is in the cart, and what it comes to.
Page {
    id: page

    Empty {
        visible: Basket.count === 0
        glyph: "bag"
        title: qsTr("Your cart is empty")
        detail: qsTr("Say “show me shoes”, or look around.")
        action: qsTr("See what is popular")
        onClicked: page.open("results", { sort: "popular" })
    }
    Card {
        visible: Basket.count > 0

        Repeater {
            model: Basket.lines.map(line => line.id)

            ProductLine {
                id: line

                required property string modelData
                readonly property int count: Basket.countOf(modelData)

                room: page.innerWidth
                product: Stock.find(modelData)
                Accessible.name: qsTr("%1, %2 each, %n pieces", "", count).arg(product.name).arg(Stock.money(product.price))

                GlyphButton {
                    glyph: "minus"
                    text: line.count > 1 ? qsTr("One %1 less").arg(line.product.name) : qsTr("Take %1 out of the cart").arg(line.product.name)
                    onClicked: Basket.add(line.modelData, -1)
                }
                Label {
                    Layout.minimumWidth: 16
                    horizontalAlignment: Text.AlignHCenter
                    text: line.count
                    read: false
                    font.weight: Font.DemiBold
                }
                GlyphButton {
                    glyph: "plus"
                    text: qsTr("One %1 more").arg(line.product.name)
                    onClicked: Basket.add(line.modelData, 1)
                }
            }
        }
    }
    Sum { visible: Basket.count > 0 }
    PushButton {
        objectName: "checkOut"
        visible: Basket.count > 0
        text: qsTr("Check out")
        onClicked: page.open("purchase_flow", {})
    }
}
