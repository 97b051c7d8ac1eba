pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// What was ordered before.
Page {
    id: page

    Repeater {
        model: Stock.orders

        Card {
            id: order

            required property var modelData

            RowLayout {
                spacing: 14
                Accessible.role: Accessible.StaticText
                Accessible.name: [order.modelData.items, order.modelData.state, order.modelData.when, Stock.money(order.modelData.total)].join(", ")

                Picture {
                    implicitWidth: 72
                    implicitHeight: 72
                    radius: 16
                    art: order.modelData.art
                    hue: order.modelData.hue
                }
                ColumnLayout {
                    spacing: 2

                    Label {
                        Layout.fillWidth: true
                        text: order.modelData.state
                        read: false
                        role: Label.Role.Small
                        font.weight: Font.DemiBold
                        color: order.modelData.underWay ? Theme.accent : Theme.soft
                    }
                    Label {
                        Layout.fillWidth: true
                        text: order.modelData.items
                        read: false
                        font.weight: Font.Medium
                    }
                    Label {
                        Layout.fillWidth: true
                        text: order.modelData.when + " · " + Stock.money(order.modelData.total)
                        read: false
                        role: Label.Role.Small
                        soft: true
                    }
                }
            }
            PushButton {
                quiet: true
                text: order.modelData.underWay ? qsTr("Track") : qsTr("Order again")
                Accessible.name: text + ", " + order.modelData.items
                onClicked: page.open(order.modelData.underWay ? "parcel" : "refill", { order: order.modelData.id })
            }
        }
    }
}
