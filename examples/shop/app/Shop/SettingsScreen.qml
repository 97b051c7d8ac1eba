import QtQuick

/// What can be set: sound, look, language.
Page {
    id: page

    required property var replies

    Label {
        text: qsTr("Sound and look")
        role: Label.Role.Heading
    }
    Card {
        width: parent.width
        padding: 10
        spacing: 0

        ListRow {
            width: parent.width
            glyph: page.replies.muted ? "muted" : "speaker"
            text: qsTr("Spoken replies")
            detail: qsTr("Answers are read aloud")
            trailing: Toggle {
                text: qsTr("Spoken replies")
                checked: !page.replies.muted
                onToggled: page.replies.muted = !checked
            }
        }
        ListRow {
            width: parent.width
            glyph: "moon"
            text: qsTr("Dark")
            last: true
            trailing: Toggle {
                text: qsTr("Dark")
                checked: Theme.dark
                onToggled: Theme.dark = checked
            }
        }
    }
    Label {
        text: qsTr("Language")
        role: Label.Role.Heading
        color: page.params.section === "language" ? Theme.accent : Theme.ink
    }
    Card {
        width: parent.width
        padding: 10
        spacing: 0
        border.color: page.params.section === "language" ? Theme.accent : Theme.line

        ListRow {
            width: parent.width
            glyph: "globe"
            text: "English"
            detail: qsTr("This phone's language")
            trailing: Glyph {
                name: "check"
                color: Theme.accent
            }
        }
        ListRow {
            width: parent.width
            glyph: "globe"
            text: "עברית"
            detail: "Hebrew"
            last: true
        }
    }
    Card {
        width: parent.width
        padding: 10
        spacing: 0

        ListRow {
            width: parent.width
            glyph: "bell"
            text: qsTr("Notifications")
            leads: true
            onClicked: page.open("inbox", {})
        }
        ListRow {
            width: parent.width
            glyph: "shield"
            text: qsTr("Privacy")
            leads: true
            last: true
            onClicked: page.open("consent", {})
        }
    }
}
