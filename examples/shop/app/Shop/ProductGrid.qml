pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Products side by side, as many as there is room for.
GridLayout {
    id: grid

    property var products: []

    signal open(string screenId, var params)

    columns: Math.max(1, Math.floor((width + columnSpacing) / (140 * Math.max(1, Theme.textScale * 0.9) + columnSpacing)))
    columnSpacing: 14
    rowSpacing: 18
    Layout.fillWidth: true

    Repeater {
        model: grid.products

        ProductTile {
            required property var modelData

            product: modelData
            Layout.fillWidth: true
            Layout.preferredWidth: 10
            Layout.alignment: Qt.AlignTop
            Layout.maximumWidth: 300
            onClicked: grid.open("detail", { product: modelData.id })
        }
    }
}
