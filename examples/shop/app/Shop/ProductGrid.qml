pragma ComponentBehavior: Bound

import QtQuick

/// Products two by two.
Grid {
    id: grid

    property var products: []

    signal open(string screenId, var params)

    columns: 2
    columnSpacing: 14
    rowSpacing: 18

    Repeater {
        model: grid.products

        ProductTile {
            required property var modelData

            product: modelData
            implicitWidth: (grid.width - grid.columnSpacing) / 2
            onClicked: grid.open("detail", { product: modelData.id })
        }
    }
}
