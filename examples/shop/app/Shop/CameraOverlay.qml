pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Finds a product by its bar code. This example has no camera, so it offers three codes to pick.
ColumnLayout {
    id: scanner

    signal open(string screenId, var params)
    signal done()

    spacing: 16

    Label {
        Layout.fillWidth: true
        text: qsTr("Scan a bar code")
        role: Label.Role.Title
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("There is no camera in this example. Pick a code as if you had held it up.")
        soft: true
    }
    Card {
        padding: 10
        spacing: 0

        Repeater {
            model: [
                { code: "4 006381 333931", product: "rain-jacket" },
                { code: "7 290001 234560", product: "coffee-mug" },
                { code: "5 901234 123457", product: "wooden-train" }
            ]

            ListRow {
                required property var modelData
                required property int index

                glyph: "scan"
                text: modelData.code
                last: index === 2
                onClicked: scanner.open("detail", { product: modelData.product })
            }
        }
    }
    PushButton {
        quiet: true
        text: qsTr("Cancel")
        onClicked: scanner.done()
    }
}
