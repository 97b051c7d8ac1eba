pragma ComponentBehavior: Bound

import QtQuick

/// Which size fits.
Column {
    id: guide

    signal open(string screenId, var params)
    signal done()

    readonly property var rows: [
        ["EU", "UK", "cm"], ["38", "5", "24.0"], ["39", "6", "24.7"], ["40", "6½", "25.3"], ["41", "7½", "26.0"], ["42", "8", "26.7"]
    ]

    spacing: 16

    Label {
        text: qsTr("Size guide")
        role: Label.Role.Title
    }
    Label {
        width: parent.width
        text: qsTr("Stand on a sheet of paper and measure from heel to toe.")
        soft: true
    }
    Card {
        width: parent.width
        padding: 10
        spacing: 0

        Repeater {
            model: guide.rows

            Rectangle {
                id: row

                required property var modelData
                required property int index

                width: parent.width
                height: 42
                radius: 12
                color: index === 3 ? Theme.accentSoft : "transparent"

                Repeater {
                    model: row.modelData

                    Label {
                        required property string modelData
                        required property int index

                        x: row.width / 3 * index
                        width: row.width / 3
                        height: row.height
                        horizontalAlignment: Text.AlignHCenter
                        verticalAlignment: Text.AlignVCenter
                        text: modelData
                        soft: row.index === 0
                        font.weight: row.index === 3 ? Font.DemiBold : Font.Normal
                    }
                }
            }
        }
    }
    PushButton {
        width: parent.width
        text: qsTr("My size is 40")
        onClicked: guide.done()
    }
}
