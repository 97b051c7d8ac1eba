import QtQuick
import QtQuick.Layouts

/// What the cart comes to.
Card {
    id: sum

    component Line: RowLayout {
        id: line

        property string name
        property string amount
        property bool strong: false

        Accessible.role: Accessible.StaticText
        Accessible.name: name + ", " + amount

        Label {
            Layout.fillWidth: true
            text: line.name
            read: false
            soft: !line.strong
            font.weight: line.strong ? Font.DemiBold : Font.Normal
        }
        Label {
            text: line.amount
            read: false
            font.weight: line.strong ? Font.DemiBold : Font.Normal
        }
    }

    Line {
        name: qsTr("Products")
        amount: Stock.money(Basket.total)
    }
    Line {
        name: qsTr("Delivery")
        amount: Basket.delivery > 0 ? Stock.money(Basket.delivery) : qsTr("Free")
    }
    Rectangle {
        Layout.fillWidth: true
        implicitHeight: 1
        color: Theme.line
    }
    Line {
        name: qsTr("Total")
        amount: Stock.money(Basket.total + Basket.delivery)
        strong: true
    }
}
