pragma ComponentBehavior: Bound

import QtQuick

/// Questions that are often asked, and who answers the others.
Page {
    id: page

    property int unfolded: 0

    Label {
        width: parent.width
        text: qsTr("How can we help?")
        role: Label.Role.Title
    }
    Repeater {
        model: [
            { asked: qsTr("How do I return something?"), answer: qsTr("Within 30 days, unworn. Say “return a product” and we send you the label.") },
            { asked: qsTr("When does my order arrive?"), answer: qsTr("Within three working days. Say “where is my package” at any time.") },
            { asked: qsTr("What can I say to the shop?"), answer: qsTr("Where you want to go, in your own words: “show me running shoes”, “open my cart”, “what size am I”.") },
            { asked: qsTr("How do I pay with a gift card?"), answer: qsTr("Add its code under “Gift cards”; it is used up first.") }
        ]

        Card {
            id: question

            required property var modelData
            required property int index
            readonly property bool unfolded: page.unfolded === index

            width: parent.width
            padding: 10
            spacing: 0

            ListRow {
                width: parent.width
                text: question.modelData.asked
                last: true
                trailing: Glyph {
                    name: question.unfolded ? "minus" : "plus"
                    size: 18
                    color: Theme.soft
                }
                onClicked: page.unfolded = question.unfolded ? -1 : question.index
            }
            Label {
                x: 6
                width: parent.width - 12
                visible: question.unfolded
                text: question.modelData.answer
                soft: true
                lineHeight: 1.35
                bottomPadding: 12
            }
        }
    }
    Row {
        width: parent.width
        spacing: 12

        PushButton {
            width: (parent.width - 12) / 2
            glyph: "chat"
            text: qsTr("Chat")
            onClicked: page.open("conversation", {})
        }
        PushButton {
            width: (parent.width - 12) / 2
            quiet: true
            glyph: "phone"
            text: qsTr("Call us")
            onClicked: page.open("hotline", {})
        }
    }
}
