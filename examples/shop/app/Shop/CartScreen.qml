import QtQuick

/// What is in the cart, and what it comes to.
Page {
    id: page

    Empty {
        width: parent.width
        visible: Basket.count === 0
        glyph: "bag"
        title: qsTr("Your cart is empty")
        detail: qsTr("Say “show me shoes”, or look around.")
        action: qsTr("See what is popular")
        onClicked: page.open("results", { sort: "popular" })
    }
    Card {
        width: parent.width
        visible: Basket.count > 0
        spacing: 4

        Repeater {
            model: Basket.lines

            ProductLine {
                id: line

                required property var modelData

                width: parent.width
                product: Stock.find(modelData.id)

                GlyphButton {
                    implicitWidth: 36
                    glyph: "minus"
                    text: qsTr("One less")
                    onClicked: Basket.add(line.modelData.id, -1)
                }
                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 16
                    horizontalAlignment: Text.AlignHCenter
                    text: line.modelData.count
                    font.weight: Font.DemiBold
                }
                GlyphButton {
                    implicitWidth: 36
                    glyph: "plus"
                    text: qsTr("One more")
                    onClicked: Basket.add(line.modelData.id, 1)
                }
            }
        }
    }
    Sum {
        width: parent.width
        visible: Basket.count > 0
    }
    PushButton {
        width: parent.width
        visible: Basket.count > 0
        text: qsTr("Check out")
        onClicked: page.open("purchase_flow", {})
    }
}
