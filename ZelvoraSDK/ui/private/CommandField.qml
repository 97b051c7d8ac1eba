import QtQuick
import Zelvora.Private

/// The surface at rest: a field for a command, and a button to speak it.
Item {
    id: bar

    required property Theme theme
    property string placeholder
    property bool asking: false
    property bool speaks: true  ///< Whether there is a microphone button.
    property var history: []
    property alias text: field.text
    readonly property bool typing: field.activeFocus
    property int recalled: -1

    signal submitted(string text)
    signal micTapped()

    implicitHeight: Math.max(56, field.implicitHeight + 24, hint.visible ? hint.implicitHeight + 24 : 0)

    function take(text: string) {
        field.text = text
        field.cursorPosition = field.text.length
    }

    function focusField() {
        field.forceActiveFocus(Qt.OtherFocusReason)
    }

    function focusMic() {
        mic.forceActiveFocus(Qt.TabFocusReason)
    }

    function leave() {
        field.clear()
        field.focus = false
        recalled = -1
    }

    function submit() {
        if (field.text.trim() === "")
            return
        const said = field.text
        field.clear()
        recalled = -1
        submitted(said)
    }

    function recall(step: int) : bool {
        const wanted = recalled + step
        if (wanted < -1 || wanted >= history.length)
            return false
        recalled = wanted
        take(wanted < 0 ? "" : history[wanted])
        return true
    }

    Plate {
        anchors.fill: parent
        radius: 28
        fill: bar.theme.surface
        stroke: field.activeFocus ? bar.theme.accentText : bar.theme.edge
        blur: 14
        offset: 3
        strength: 0.16
    }
    MouseArea {
        anchors.fill: parent
        onClicked: field.forceActiveFocus(Qt.MouseFocusReason)
    }
    TextInput {
        id: field

        objectName: "commandField"
        anchors {
            left: parent.left; leftMargin: 20
            right: buttons.left; rightMargin: 4
            verticalCenter: parent.verticalCenter
        }
        height: Math.max(32, implicitHeight)
        verticalAlignment: TextInput.AlignVCenter
        horizontalAlignment: TextInput.AlignLeft
        wrapMode: TextInput.Wrap
        maximumLength: 1000
        activeFocusOnTab: true
        color: bar.theme.text
        selectionColor: bar.theme.accent
        selectedTextColor: bar.theme.onAccent
        font.pixelSize: 16 * bar.theme.textScale
        selectByMouse: true
        inputMethodHints: Qt.ImhNoPredictiveText
        EnterKey.type: Qt.EnterKeyGo
        Accessible.role: Accessible.EditableText
        Accessible.name: bar.placeholder
        Accessible.editable: true
        onAccepted: bar.submit()
        onTextEdited: bar.recalled = -1
        Keys.onUpPressed: event => event.accepted = bar.recall(1)
        Keys.onDownPressed: event => event.accepted = bar.recall(-1)

        Text {
            id: hint

            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
            visible: field.text === "" && field.preeditText === ""
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            text: bar.placeholder
            color: bar.theme.secondaryText
            font: field.font
            Accessible.ignored: true
        }
    }
    Row {
        id: buttons

        anchors { right: parent.right; rightMargin: 6; verticalCenter: parent.verticalCenter }
        spacing: 4

        RoundButton {
            id: send

            objectName: "send"
            anchors.verticalCenter: parent.verticalCenter
            visible: field.text.trim() !== ""
            theme: bar.theme
            symbol: "arrow.up"
            text: qsTr("Send")
            Accessible.ignored: !visible
            onClicked: bar.submit()
        }
        RoundButton {
            id: mic

            objectName: "speak"
            anchors.verticalCenter: parent.verticalCenter
            visible: bar.speaks
            theme: bar.theme
            filled: true
            symbol: bar.asking ? "hourglass" : "mic.fill"
            text: bar.asking ? qsTr("Waiting for the microphone") : qsTr("Speak a command")
            Accessible.ignored: !visible
            onClicked: bar.micTapped()
        }
    }
}
