pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/// All groups of products.
Page {
    id: page

    Grid {
        width: parent.width
        columns: 2
        spacing: 14

        Repeater {
            model: Stock.categories

            T.AbstractButton {
                id: tile

                required property var modelData

                implicitWidth: (page.width - 2 * Theme.margin - 14) / 2
                implicitHeight: 132
                text: modelData.title
                Accessible.name: text
                Accessible.onPressAction: clicked()
                onClicked: page.open("results", { category: modelData.id })

                background: Rectangle {
                    radius: 22
                    color: Theme.tint(tile.modelData.hue)
                    opacity: tile.down ? 0.8 : 1
                }
                contentItem: Item {
                    Label {
                        x: 16
                        y: 16
                        text: tile.text
                        font.pixelSize: 17
                        font.weight: Font.DemiBold
                    }
                    Art {
                        anchors.right: parent.right
                        anchors.bottom: parent.bottom
                        anchors.margins: 6
                        side: 88
                        name: tile.modelData.art
                    }
                }
            }
        }
    }
}
