pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// When the shop is open.
Page {
    id: page

    Greeting {
        large: qsTr("Open now")
        detail: qsTr("Meadow Harbour, until 20:00")
        glyph: "clock"
    }
    Card {
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

            Flow {
                id: line

                required property var modelData
                required property int index

                Layout.fillWidth: true
                spacing: 8
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.day + ", " + modelData.hours

                Label {
                    width: Math.max(implicitWidth, Math.min(parent.width / 2, 220))
                    text: line.modelData.day
                    read: false
                    font.weight: line.index === 2 ? Font.DemiBold : Font.Normal
                }
                Label {
                    text: line.modelData.hours
                    read: false
                    soft: line.index !== 2
                    font.weight: line.index === 2 ? Font.DemiBold : Font.Normal
                }
            }
        }
    }
}
