import QtQuick

/// The address, the payment and the order.
Page {
    id: page

    property bool placed: false

    Empty {
        id: thanks

        visible: page.placed
        glyph: "check"
        title: qsTr("Thank you!")
        detail: qsTr("Your order is on its way to the packers.")
        action: qsTr("Track it")
        onClicked: page.open("parcel", { order: "latest" })
    }
    Empty {
        visible: !page.placed && Basket.count === 0
        glyph: "bag"
        title: qsTr("Your cart is empty")
        action: qsTr("See what is popular")
        onClicked: page.open("results", { sort: "popular" })
    }
    Card {
        visible: !page.placed && Basket.count > 0
        padding: 10
        spacing: 0

        ListRow {
            glyph: "pin"
            text: qsTr("Home")
            detail: qsTr("12 Linden Street, Haifa")
            onClicked: page.open("locations", {})
        }
        ListRow {
            glyph: "card"
            text: qsTr("Card ending in 4417")
            detail: qsTr("Charged when we ship")
            onClicked: page.open("wallet", {})
        }
        ListRow {
            glyph: "truck"
            text: qsTr("Standard delivery")
            detail: qsTr("Thursday to Friday")
            pressable: false
            last: true
        }
    }
    Sum { visible: !page.placed && Basket.count > 0 }
    PushButton {
        objectName: "placeOrder"
        visible: !page.placed && Basket.count > 0
        text: qsTr("Place order for %1").arg(Stock.money(Basket.total + Basket.delivery))
        onClicked: {
            page.placed = true
            Basket.clear()
            page.contentY = 0
            page.forceActiveFocus(Qt.TabFocusReason)
        }
    }
}
