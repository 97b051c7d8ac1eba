pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// Frequent questions, and who answers the others.
Page {
    id: page

    property int unfolded: 0

    Label {
        Layout.fillWidth: true
        text: qsTr("How can we help?")
        role: Label.Role.Title
    }
    Repeater {
        model: [
            { asked: qsTr("How do I return something?"), answer: qsTr("Within 30 days, unworn. Say “return a product” and see what can go back.") },
            { asked: qsTr("When does my order arrive?"), answer: qsTr("Within three working days. Say “where is my package” at any time.") },
            { asked: qsTr("What can I say to the shop?"), answer: qsTr("Where you want to go, in your own words: “show me running shoes”, “open my cart”, “what size am I”.") },
            { asked: qsTr("How do I pay with a gift card?"), answer: qsTr("You need not do anything: your gift cards are used up first.") }
        ]

        Card {
            id: question

            required property var modelData
            required property int index
            readonly property bool unfolded: page.unfolded === index

            padding: 10
            spacing: 0

            ListRow {
                text: question.modelData.asked
                last: true
                endGlyph: question.unfolded ? "minus" : "plus"
                Accessible.name: text + ", " + (question.unfolded ? qsTr("unfolded") : qsTr("folded"))
                onClicked: page.unfolded = question.unfolded ? -1 : question.index
            }
            Label {
                Layout.fillWidth: true
                Layout.leftMargin: 6
                Layout.bottomMargin: 8
                visible: question.unfolded
                text: question.modelData.answer
                soft: true
                lineHeight: 1.35
            }
        }
    }
    GridLayout {
        Layout.fillWidth: true
        columns: page.innerWidth < 280 * Theme.textScale ? 1 : 2
        columnSpacing: 12
        rowSpacing: 12

        PushButton {
            Layout.preferredWidth: 10
            glyph: "chat"
            text: qsTr("Chat")
            onClicked: page.open("conversation", {})
        }
        PushButton {
            Layout.preferredWidth: 10
            quiet: true
            glyph: "phone"
            text: qsTr("Call us")
            onClicked: page.open("hotline", {})
        }
    }
}
