pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// All groups of products.
Page {
    id: page

    widest: 960

    GridLayout {
        Layout.fillWidth: true
        columns: Math.max(1, Math.floor(page.innerWidth / (130 * Math.max(1, Theme.textScale))))
        columnSpacing: 14
        rowSpacing: 14

        Repeater {
            model: Stock.categories

            Pressable {
                id: tile

                required property var modelData

                Layout.fillWidth: true
                Layout.preferredWidth: 10
                corner: 22
                padding: 16
                text: modelData.title
                onClicked: page.open("results", { category: modelData.id })

                background: Rectangle {
                    radius: 22
                    color: Theme.tint(tile.modelData.hue)
                    opacity: tile.down ? 0.8 : 1
                }
                contentItem: ColumnLayout {
                    spacing: 4

                    Label {
                        Layout.fillWidth: true
                        text: tile.text
                        read: false
                        font.pixelSize: 17 * Theme.textScale
                        font.weight: Font.DemiBold
                    }
                    Art {
                        Layout.alignment: Qt.AlignRight
                        Layout.preferredWidth: side
                        Layout.preferredHeight: side
                        side: 84
                        name: tile.modelData.art
                    }
                }
            }
        }
    }
}
