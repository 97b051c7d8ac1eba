pragma ComponentBehavior: Bound

import QtQuick

/// What was ordered before.
Page {
    id: page

    Repeater {
        model: Stock.orders

        Card {
            id: order

            required property var modelData
            readonly property bool underWay: modelData.state !== qsTr("Delivered")

            width: parent.width

            Item {
                width: parent.width
                height: 72

                Picture {
                    id: picture

                    width: 72
                    height: 72
                    radius: 16
                    art: order.modelData.art
                    hue: order.modelData.hue
                }
                Column {
                    anchors.left: picture.right
                    anchors.leftMargin: 14
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 2

                    Label {
                        text: order.modelData.state
                        role: Label.Role.Small
                        font.weight: Font.DemiBold
                        color: order.underWay ? Theme.accent : Theme.soft
                    }
                    Label {
                        width: parent.width
                        text: order.modelData.items
                        font.weight: Font.Medium
                    }
                    Label {
                        text: order.modelData.when + " · " + Stock.money(order.modelData.total)
                        role: Label.Role.Small
                        soft: true
                    }
                }
            }
            PushButton {
                width: parent.width
                implicitHeight: Theme.touch
                quiet: true
                text: order.underWay ? qsTr("Track") : qsTr("Order again")
                onClicked: page.open(order.underWay ? "parcel" : "refill", { order: order.modelData.id })
            }
        }
    }
}
