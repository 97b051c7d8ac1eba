pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// A talk with the shop's people.
Page {
    id: page

    readonly property var said: [
        { mine: false, text: qsTr("Hello Noa, this is Tal. What can I do for you?") },
        { mine: true, text: qsTr("My parcel was to come yesterday.") },
        { mine: false, text: qsTr("I have looked it up: it left the depot this morning and is with you on Thursday before four.") },
        { mine: true, text: qsTr("Perfect, thank you!") }
    ]

    spacing: 10

    Label {
        Layout.fillWidth: true
        text: qsTr("Today")
        role: Label.Role.Small
        soft: true
        horizontalAlignment: Text.AlignHCenter
    }
    Repeater {
        model: page.said

        Rectangle {
            id: bubble

            required property var modelData

            Layout.alignment: modelData.mine ? Qt.AlignRight : Qt.AlignLeft
            Layout.maximumWidth: page.innerWidth * 0.86
            implicitWidth: words.implicitWidth + 32
            implicitHeight: words.height + 24
            radius: 20
            color: modelData.mine ? Theme.accent : Theme.surface
            border.color: modelData.mine ? Theme.accent : Theme.line

            Label {
                id: words

                anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: 16; rightMargin: 16; topMargin: 12 }
                text: bubble.modelData.text
                lineHeight: 1.25
                color: bubble.modelData.mine ? Theme.accentInk : Theme.ink
                Accessible.name: (bubble.modelData.mine ? qsTr("You: %1") : qsTr("Tal: %1")).arg(text)
            }
        }
    }
}
