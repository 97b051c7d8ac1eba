pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Where the shops are.
Page {
    id: page

    readonly property var stores: [
        { name: qsTr("Meadow Harbour"), detail: qsTr("4 Quay Road, open until 20:00"), far: 0.6, x: 0.30, y: 0.42 },
        { name: qsTr("Meadow Market"), detail: qsTr("21 Market Square, open until 19:00"), far: 1.9, x: 0.66, y: 0.28 },
        { name: qsTr("Meadow Hill"), detail: qsTr("8 Upper Street, open until 18:00"), far: 3.2, x: 0.78, y: 0.70 }
    ]

    Rectangle {
        id: map

        Layout.fillWidth: true
        implicitHeight: Math.min(240, page.height * 0.5)
        radius: 24
        color: Theme.dark ? "#1C2622" : "#E6EDE2"
        clip: true
        Accessible.ignored: true

        Repeater {
            model: [[0.55, 14], [0.16, 8], [0.84, 8]]

            Rectangle {
                required property var modelData

                y: map.height * modelData[0]
                width: map.width
                height: modelData[1]
                color: Theme.dark ? "#2D3833" : "#FFFFFF"
            }
        }
        Repeater {
            model: [0.18, 0.52, 0.84]

            Rectangle {
                required property real modelData

                x: map.width * modelData
                width: 9
                height: map.height
                color: Theme.dark ? "#2D3833" : "#FFFFFF"
            }
        }
        Repeater {
            model: page.stores

            Rectangle {
                required property var modelData

                x: map.width * modelData.x - 20
                y: map.height * modelData.y - 20
                width: 40
                height: 40
                radius: 20
                color: Theme.accent
                border { width: 3; color: Theme.surface }

                Glyph {
                    anchors.centerIn: parent
                    name: "store"
                    size: 19
                    color: Theme.accentInk
                }
            }
        }
    }
    Card {
        padding: 10
        spacing: 0

        Repeater {
            model: page.stores

            ListRow {
                required property var modelData
                required property int index

                glyph: "pin"
                text: modelData.name
                detail: modelData.detail + " · " + qsTr("%1\u00A0km").arg(Stock.decimal(modelData.far, 1))
                last: index === page.stores.length - 1
                onClicked: page.open("hours", {})
            }
        }
    }
}
