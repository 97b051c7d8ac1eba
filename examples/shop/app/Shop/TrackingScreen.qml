pragma ComponentBehavior: Bound

import QtQuick

/// Where an order is.
Page {
    id: page

    readonly property var steps: [
        { title: qsTr("Ordered"), detail: qsTr("Monday, 18:20"), done: true },
        { title: qsTr("Packed"), detail: qsTr("Tuesday, 9:05"), done: true },
        { title: qsTr("On its way"), detail: qsTr("Left the depot in Haifa at 7:40"), done: true },
        { title: qsTr("Delivered"), detail: qsTr("Expected on Thursday"), done: false }
    ]

    Rectangle {
        width: parent.width
        height: 150
        radius: 24
        color: Theme.accentSoft

        Column {
            x: 20
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            Label {
                text: qsTr("Order M-2041")
                role: Label.Role.Small
                soft: true
            }
            Label {
                text: qsTr("Arrives Thursday")
                font.pixelSize: 24
                font.weight: Font.Bold
                font.letterSpacing: -0.4
            }
            Label {
                text: qsTr("between 14:00 and 16:00")
                soft: true
            }
        }
        Glyph {
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            name: "truck"
            size: 60
            color: Theme.accent
        }
    }
    Card {
        width: parent.width
        padding: 20
        spacing: 0

        Repeater {
            model: page.steps

            Item {
                id: step

                required property var modelData
                required property int index
                readonly property bool last: index === page.steps.length - 1

                width: parent.width
                height: last ? 44 : 68

                Rectangle {
                    visible: !step.last
                    x: 12
                    y: 26
                    width: 2
                    height: parent.height - 26
                    color: page.steps[step.index + 1]?.done ? Theme.accent : Theme.line
                }
                Rectangle {
                    width: 26
                    height: 26
                    radius: 13
                    color: step.modelData.done ? Theme.accent : Theme.sunken

                    Glyph {
                        anchors.centerIn: parent
                        visible: step.modelData.done
                        name: "check"
                        size: 15
                        color: Theme.accentInk
                    }
                }
                Column {
                    x: 42
                    y: 2
                    spacing: 1

                    Label {
                        text: step.modelData.title
                        font.weight: Font.Medium
                        soft: !step.modelData.done
                    }
                    Label {
                        text: step.modelData.detail
                        role: Label.Role.Small
                        soft: true
                    }
                }
            }
        }
    }
    PushButton {
        width: parent.width
        quiet: true
        glyph: "chat"
        text: qsTr("Ask about this order")
        onClicked: page.open("conversation", {})
    }
}
