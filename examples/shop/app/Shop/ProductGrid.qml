pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Products side by side, as many as there is room for.
Grid {
    id: grid

    property var products: []
    /// The page's width. A layout that asks for its own width while it is laid out never finishes.
    required property real room
    readonly property int across: Math.max(1, Math.min(columns, products.length))

    signal open(string screenId, var params)

    columns: Math.max(1, Math.floor((room + columnSpacing) / (140 * Math.max(1, Theme.textScale * 0.9) + columnSpacing)))
    columnSpacing: 14
    rowSpacing: 18
    Layout.fillWidth: true

    Repeater {
        model: grid.products

        ProductTile {
            required property var modelData

            product: modelData
            width: Math.min(300, (grid.room - (grid.across - 1) * grid.columnSpacing) / grid.across)
            onClicked: grid.open("detail", { product: modelData.id })
        }
    }
}
