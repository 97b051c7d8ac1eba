pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Where an order is.
Page {
    id: page

    readonly property var steps: [
        { title: qsTr("Ordered"), detail: qsTr("Monday, 18:20"), done: true },
        { title: qsTr("Packed"), detail: qsTr("Tuesday, 9:05"), done: true },
        { title: qsTr("On its way"), detail: qsTr("Left the depot in Haifa at 7:40"), done: true },
        { title: qsTr("Delivered"), detail: qsTr("Expected on Thursday"), done: false }
    ]

    Greeting {
        small: qsTr("Order %1").arg("M-2041")
        large: qsTr("Arrives Thursday")
        detail: qsTr("between 14:00 and 16:00")
        glyph: "truck"
    }
    Card {
        padding: 20
        spacing: 0

        Repeater {
            model: page.steps

            RowLayout {
                id: step

                required property var modelData
                required property int index
                readonly property bool last: index === page.steps.length - 1

                spacing: 16
                Accessible.role: Accessible.StaticText
                Accessible.name: qsTr("%1, %2, %3").arg(modelData.title).arg(modelData.detail).arg(modelData.done ? qsTr("done") : qsTr("to come"))

                Item {
                    Layout.fillHeight: true
                    implicitWidth: 26
                    implicitHeight: 44

                    Rectangle {
                        visible: !step.last
                        x: 12
                        y: 26
                        width: 2
                        height: parent.height - 26
                        color: page.steps[step.index + 1]?.done ? Theme.accent : Theme.edge
                    }
                    Rectangle {
                        width: 26
                        height: 26
                        radius: 13
                        color: step.modelData.done ? Theme.accent : Theme.surface
                        border { width: 2; color: step.modelData.done ? Theme.accent : Theme.edge }

                        Glyph {
                            anchors.centerIn: parent
                            visible: step.modelData.done
                            name: "check"
                            size: 15
                            color: Theme.accentInk
                        }
                    }
                }
                ColumnLayout {
                    Layout.bottomMargin: step.last ? 0 : 18
                    Layout.alignment: Qt.AlignTop
                    spacing: 1

                    Label {
                        Layout.fillWidth: true
                        text: step.modelData.title
                        read: false
                        font.weight: Font.Medium
                        soft: !step.modelData.done
                    }
                    Label {
                        Layout.fillWidth: true
                        text: step.modelData.detail
                        read: false
                        role: Label.Role.Small
                        soft: true
                    }
                }
            }
        }
    }
    PushButton {
        quiet: true
        glyph: "chat"
        text: qsTr("Ask about this order")
        onClicked: page.open("conversation", {})
    }
}
