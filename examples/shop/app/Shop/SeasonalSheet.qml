import QtQuick

/// The spring promotion.
Column {
    id: promotion

    signal open(string screenId, var params)
    signal done()

    spacing: 16

    Rectangle {
        width: parent.width
        height: 190
        radius: 24
        color: Theme.dark ? "#1F523E" : "#137453"

        Rectangle {
            anchors.centerIn: parent
            width: 168
            height: 168
            radius: 84
            color: "#FFFFFF"
            opacity: 0.12
        }
        Row {
            anchors.centerIn: parent
            spacing: -8

            Repeater {
                model: ["shoe", "dress", "backpack"]

                Art {
                    required property string modelData

                    side: 116
                    name: modelData
                }
            }
        }
    }
    Label {
        text: qsTr("Spring is here")
        role: Label.Role.Title
    }
    Label {
        width: parent.width
        text: qsTr("Up to 25 % off shoes, dresses and bags. Until the end of May, in all stores and here.")
        soft: true
        lineHeight: 1.3
    }
    PushButton {
        width: parent.width
        text: qsTr("See all deals")
        onClicked: promotion.open("results", { filter: "on_sale" })
    }
    PushButton {
        width: parent.width
        quiet: true
        text: qsTr("Later")
        onClicked: promotion.done()
    }
}
