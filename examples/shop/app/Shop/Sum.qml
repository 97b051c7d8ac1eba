import QtQuick

/// What the cart comes to.
Card {
    id: sum

    Repeater {
        model: [
            { name: qsTr("Products"), amount: Stock.money(Basket.total) },
            { name: qsTr("Delivery"), amount: Basket.delivery > 0 ? Stock.money(Basket.delivery) : qsTr("Free") }
        ]

        Item {
            id: line

            required property var modelData

            width: parent.width
            height: 20

            Label {
                text: line.modelData.name
                soft: true
            }
            Label {
                anchors.right: parent.right
                text: line.modelData.amount
            }
        }
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Item {
        width: parent.width
        height: 24

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Total")
            font.weight: Font.DemiBold
        }
        Label {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: Stock.money(Basket.total + Basket.delivery)
            role: Label.Role.Heading
        }
    }
}
