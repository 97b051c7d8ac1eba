import QtQuick

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
        width: parent.width
        text: qsTr("Today")
        role: Label.Role.Small
        soft: true
        horizontalAlignment: Text.AlignHCenter
    }
    Repeater {
        model: page.said

        Item {
            id: line

            required property var modelData

            width: parent.width
            implicitHeight: bubble.height

            Rectangle {
                id: bubble

                anchors.right: line.modelData.mine ? parent.right : undefined
                anchors.left: line.modelData.mine ? undefined : parent.left
                width: Math.min(words.implicitWidth + 32, parent.width * 0.78)
                height: words.height + 24
                radius: 20
                color: line.modelData.mine ? Theme.accent : Theme.surface
                border.color: line.modelData.mine ? Theme.accent : Theme.line

                Label {
                    id: words

                    x: 16
                    y: 12
                    width: parent.width - 32
                    text: line.modelData.text
                    lineHeight: 1.25
                    color: line.modelData.mine ? Theme.accentInk : Theme.ink
                }
            }
        }
    }
}
