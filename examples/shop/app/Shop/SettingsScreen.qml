pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// What can be set: sound, look, size of text, language.
Page {
    id: page

    required property var shop

    Label {
        Layout.fillWidth: true
        text: qsTr("Sound and look")
        role: Label.Role.Heading
    }
    Card {
        padding: 10
        spacing: 0

        ListRow {
            glyph: page.shop.replies.muted ? "muted" : "speaker"
            text: qsTr("Spoken replies")
            detail: qsTr("Answers are read aloud")
            checkable: true
            checked: !page.shop.replies.muted
            onClicked: page.shop.replies.muted = !page.shop.replies.muted
        }
        ListRow {
            glyph: "moon"
            text: qsTr("Dark")
            checkable: true
            checked: Theme.dark
            onClicked: page.shop.dark = !page.shop.dark
        }
        ListRow {
            glyph: "ruler"
            text: qsTr("Large text")
            checkable: true
            checked: Theme.textScale > 1
            last: true
            onClicked: page.shop.textScale = Theme.textScale > 1 ? 1 : 1.6
        }
    }
    Label {
        Layout.fillWidth: true
        text: qsTr("Language")
        role: Label.Role.Heading
        color: page.params.section === "language" ? Theme.accent : Theme.ink
    }
    Card {
        padding: 10
        spacing: 0
        border.color: page.params.section === "language" ? Theme.accent : Theme.line

        Repeater {
            model: [["en", "English"], ["de", "Deutsch"], ["he", "עברית"]]

            ListRow {
                required property var modelData
                required property int index
                readonly property bool chosen: page.shop.language.code === modelData[0]

                objectName: "language-" + modelData[0]
                glyph: "globe"
                text: modelData[1]
                detail: chosen ? qsTr("Chosen") : ""
                endGlyph: chosen ? "check" : ""
                last: index === 2
                onClicked: page.shop.language.code = modelData[0]
            }
        }
    }
    Card {
        padding: 10
        spacing: 0

        ListRow {
            glyph: "bell"
            text: qsTr("Notifications")
            onClicked: page.open("inbox", {})
        }
        ListRow {
            glyph: "shield"
            text: qsTr("Privacy")
            last: true
            onClicked: page.open("consent", {})
        }
    }
}
