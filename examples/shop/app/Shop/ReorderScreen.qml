pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// The last order, to be ordered again.
Page {
    id: page

    readonly property var again: ["trail-running-shoe", "coffee-mug"]

    Label {
        Layout.fillWidth: true
        text: qsTr("The same as last time?")
        role: Label.Role.Title
    }
    Card {
        Repeater {
            model: page.again

            ProductLine {
                required property string modelData

                room: page.innerWidth
                product: Stock.find(modelData)
            }
        }
    }
    PushButton {
        text: qsTr("Put all into the cart")
        glyph: "repeat"
        onClicked: {
            page.again.forEach(id => Basket.add(id, 1))
            page.open("basket", {})
        }
    }
}
