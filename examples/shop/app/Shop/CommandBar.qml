import QtQuick
import Zelvora

/// Where the customer types a command, or says one.
Rectangle {
    id: bar

    required property ZelvoraAssistant assistant
    readonly property bool listening: assistant.state === ZelvoraMicState.Listening

    implicitHeight: 96
    color: Theme.surface

    function submit() {
        if (field.text.trim() === "") return
        assistant.route(field.text)
        field.clear()
        field.focus = false
    }

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Rectangle {
        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.right: parent.right
        anchors.rightMargin: 94
        anchors.verticalCenter: parent.verticalCenter
        height: 52
        radius: 26
        color: Theme.sunken
        border.width: field.activeFocus || bar.listening ? 2 : 0
        border.color: Theme.accent

        Rectangle {
            x: 26
            y: parent.height - 7
            width: (parent.width - 52) * Math.min(1, 4 * bar.assistant.audioLevel)
            height: 3
            radius: 1.5
            visible: bar.listening
            color: Theme.accent
        }
        TextInput {
            id: field

            objectName: "commandField"
            anchors.left: parent.left
            anchors.leftMargin: 20
            anchors.right: send.left
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            height: Theme.touch
            verticalAlignment: TextInput.AlignVCenter
            enabled: !bar.listening
            color: Theme.ink
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentInk
            font.pixelSize: Theme.bodySize
            clip: true
            Accessible.name: qsTr("Type a command")
            onAccepted: bar.submit()

            Label {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                visible: field.text === ""
                text: bar.listening ? bar.assistant.partialText || qsTr("I am listening …")
                                    : qsTr("Where would you like to go?")
                soft: !bar.listening || bar.assistant.partialText === ""
                wrapMode: Text.NoWrap
                elide: bar.listening ? Text.ElideLeft : Text.ElideRight
            }
        }
        GlyphButton {
            id: send

            anchors.right: parent.right
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            visible: field.text.trim() !== ""
            width: visible ? Theme.touch : 8
            glyph: "send"
            text: qsTr("Send")
            color: Theme.accentInk
            ground: Theme.accent
            onClicked: bar.submit()
        }
    }
    ZelvoraMicButton {
        objectName: "mic"
        state: bar.assistant.state
        style.bottomPadding: 16
        palette.windowText: Theme.accent
        onTap: bar.assistant.tapMic()
    }
}
