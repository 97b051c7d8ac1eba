pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Which size fits, and which one is the customer's.
ColumnLayout {
    id: guide

    signal open(string screenId, var params)
    signal done()

    readonly property var rows: [["38", "5", 24.0], ["39", "6", 24.7], ["40", "6½", 25.3], ["41", "7½", 26.0], ["42", "8", 26.7]]

    component Line: RowLayout {
        id: line

        required property var cells
        property bool soft: false
        property bool strong: false

        Repeater {
            model: line.cells

            Label {
                required property string modelData

                Layout.fillWidth: true
                Layout.preferredWidth: 10
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.NoWrap
                text: modelData
                read: false
                soft: line.soft
                font.weight: line.strong ? Font.DemiBold : Font.Normal
            }
        }
    }

    spacing: 16

    Label {
        Layout.fillWidth: true
        text: qsTr("Size guide")
        role: Label.Role.Title
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("Stand on a sheet of paper, measure from heel to toe, and pick your line.")
        soft: true
    }
    Card {
        padding: 10
        spacing: 0

        Line {
            Layout.leftMargin: 10
            Layout.rightMargin: 10
            Layout.topMargin: 6
            cells: ["EU", "UK", qsTr("cm")]
            soft: true
        }
        Repeater {
            model: guide.rows

            Pressable {
                id: row

                required property var modelData
                readonly property string length: Stock.decimal(modelData[2], 1)
                readonly property bool chosen: Basket.shoeSize === Number(modelData[0])

                objectName: "size-" + modelData[0]
                Layout.fillWidth: true
                corner: 12
                leftPadding: 10
                rightPadding: 10
                checkable: true
                checked: chosen
                autoExclusive: true
                text: qsTr("Size %1, %2 in Britain, %3 centimetres").arg(modelData[0]).arg(modelData[1]).arg(length)
                Accessible.role: Accessible.RadioButton
                onClicked: Basket.shoeSize = Number(modelData[0])

                background: Rectangle {
                    radius: 12
                    color: row.chosen ? Theme.accentSoft : "transparent"
                    border { width: row.chosen ? 2 : 0; color: Theme.accent }
                }
                contentItem: Line {
                    cells: [row.modelData[0], row.modelData[1], row.length]
                    strong: row.chosen
                }
            }
        }
    }
    PushButton {
        text: Basket.shoeSize > 0 ? qsTr("Keep %1 as my size").arg(Basket.shoeSize) : qsTr("Close")
        onClicked: guide.done()
    }
}
