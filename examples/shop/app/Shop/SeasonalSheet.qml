pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// The spring promotion.
ColumnLayout {
    id: promotion

    signal open(string screenId, var params)
    signal done()

    spacing: 16

    Rectangle {
        Layout.fillWidth: true
        implicitHeight: Math.min(190, width * 0.5)
        radius: 24
        color: Theme.banner

        Row {
            anchors.centerIn: parent
            spacing: -8

            Repeater {
                model: ["shoe", "dress", "backpack"]

                Art {
                    required property string modelData

                    side: Math.min(116, promotion.width / 3.4)
                    name: modelData
                }
            }
        }
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("Spring is here")
        role: Label.Role.Title
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("Up to 25% off shoes, dresses and bags. Until the end of May, in all stores and here.")
        soft: true
        lineHeight: 1.3
    }
    PushButton {
        text: qsTr("See all deals")
        onClicked: promotion.open("results", { filter: "on_sale" })
    }
    PushButton {
        quiet: true
        text: qsTr("Later")
        onClicked: promotion.done()
    }
}
