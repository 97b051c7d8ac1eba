import QtQuick

/// When the shop is open.
Page {
    id: page

    Rectangle {
        width: parent.width
        height: 112
        radius: 24
        color: Theme.accentSoft

        Column {
            x: 20
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            Label {
                text: qsTr("Open now")
                font.pixelSize: 24
                font.weight: Font.Bold
                font.letterSpacing: -0.4
                color: Theme.accent
            }
            Label {
                text: qsTr("Meadow Harbour, until 20:00")
                soft: true
            }
        }
        Glyph {
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            name: "clock"
            size: 48
            color: Theme.accent
        }
    }
    Card {
        width: parent.width
        padding: 20

        Repeater {
            model: [
                { day: qsTr("Sunday"), hours: "10:00 – 20:00" },
                { day: qsTr("Monday"), hours: "10:00 – 20:00" },
                { day: qsTr("Tuesday"), hours: "10:00 – 20:00" },
                { day: qsTr("Wednesday"), hours: "10:00 – 20:00" },
                { day: qsTr("Thursday"), hours: "10:00 – 22:00" },
                { day: qsTr("Friday"), hours: "9:00 – 14:00" },
                { day: qsTr("Saturday"), hours: qsTr("Closed") }
            ]

            Item {
                id: line

                required property var modelData
                required property int index

                width: parent.width
                height: 26

                Label {
                    text: line.modelData.day
                    font.weight: line.index === 2 ? Font.DemiBold : Font.Normal
                }
                Label {
                    anchors.right: parent.right
                    text: line.modelData.hours
                    soft: line.index !== 2
                    font.weight: line.index === 2 ? Font.DemiBold : Font.Normal
                }
            }
        }
    }
}
