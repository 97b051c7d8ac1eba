import QtQuick

/// The last order once more.
Page {
    id: page

    readonly property var again: ["trail-running-shoe", "coffee-mug"]

    Label {
        width: parent.width
        text: qsTr("The same as last time?")
        role: Label.Role.Title
    }
    Card {
        width: parent.width
        spacing: 4

        Repeater {
            model: page.again

            ProductLine {
                required property string modelData

                width: parent.width
                product: Stock.find(modelData)
            }
        }
    }
    PushButton {
        width: parent.width
        text: qsTr("Put all into the cart")
        glyph: "repeat"
        onClicked: {
            page.again.forEach(id => Basket.add(id, 1))
            page.open("basket", {})
        }
    }
}
