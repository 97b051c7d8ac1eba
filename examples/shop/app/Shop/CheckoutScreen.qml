import QtQuick

/// Where it goes, how it is paid, and the order.
Page {
    id: page

    property bool placed: false

    Empty {
        width: parent.width
        visible: page.placed
        glyph: "check"
        title: qsTr("Thank you!")
        detail: qsTr("Your order is on its way to the packers.")
        action: qsTr("Track it")
        onClicked: page.open("parcel", { order: "latest" })
    }
    Card {
        width: parent.width
        visible: !page.placed
        padding: 10
        spacing: 0

        ListRow {
            width: parent.width
            glyph: "pin"
            text: qsTr("Home")
            detail: qsTr("12 Linden Street, Haifa")
            leads: true
            onClicked: page.open("locations", {})
        }
        ListRow {
            width: parent.width
            glyph: "card"
            text: qsTr("Card ending in 4417")
            detail: qsTr("Charged when we ship")
            leads: true
            onClicked: page.open("wallet", {})
        }
        ListRow {
            width: parent.width
            glyph: "truck"
            text: qsTr("Standard delivery")
            detail: qsTr("Thursday to Friday")
            last: true
        }
    }
    Sum {
        width: parent.width
        visible: !page.placed
    }
    PushButton {
        width: parent.width
        visible: !page.placed
        enabled: Basket.count > 0
        text: qsTr("Place order for %1").arg(Stock.money(Basket.total + Basket.delivery))
        onClicked: {
            Basket.clear()
            page.placed = true
        }
    }
}
