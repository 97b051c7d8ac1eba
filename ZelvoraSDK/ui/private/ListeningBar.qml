import QtQuick
import Zelvora.Private

/// The surface while it listens and while it thinks: the words, and a wave of the voice.
Item {
    id: bar

    required property Theme theme
    property string words
    property bool thinking: false
    property real level: 0
    property real mostHeight: 400

    /// A screen reader announces an alert that appears, but not one that was there from the beginning.
    property bool complete: false

    signal stopped()

    component State: Text {
        id: state

        required property Theme theme

        width: parent?.width ?? 0
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        color: state.theme.secondaryText
        font { pixelSize: 13 * state.theme.textScale; weight: Font.Medium }
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
        Accessible.ignored: !visible
    }

    function focusStop() {
        stop.forceActiveFocus(Qt.TabFocusReason)
    }

    Component.onCompleted: complete = true
    implicitHeight: Math.min(column.implicitHeight + 32, mostHeight)

    Plate {
        anchors.fill: parent
        radius: 28
        fill: bar.theme.surface
        stroke: bar.theme.edge
        blur: 14
        offset: 3
        strength: 0.16
    }
    MouseArea { anchors.fill: parent }
    Flickable {
        id: view

        anchors { left: parent.left; right: stop.left; top: parent.top; bottom: parent.bottom }
        anchors { leftMargin: 20; rightMargin: 12; topMargin: 16; bottomMargin: 16 }
        contentHeight: column.implicitHeight
        // Keeps the newest words in sight.
        contentY: Math.max(0, contentHeight - height)
        interactive: contentHeight > height
        clip: interactive
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            width: parent.width
            spacing: 8

            State {
                objectName: "listeningState"
                theme: bar.theme
                text: "Listening\u2026"
                visible: bar.complete && !bar.thinking
            }
            State {
                objectName: "thinkingState"
                theme: bar.theme
                text: "Thinking\u2026"
                visible: bar.complete && bar.thinking
            }
            Text {
                objectName: "liveWords"
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                text: bar.words
                textFormat: Text.PlainText
                color: bar.theme.text
                font { pixelSize: 20 * bar.theme.textScale; weight: Font.Medium }
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.ignored: !visible
            }
            Wave {
                objectName: "wave"
                width: parent.width
                height: 40
                visible: !bar.thinking
                running: !bar.thinking
                level: bar.level
                color: bar.theme.accent
                reducedMotion: bar.theme.reducedMotion
            }
        }
    }
    RoundButton {
        id: stop

        objectName: "stopListening"
        anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
        width: 52
        height: 52
        filled: true
        enabled: !bar.thinking
        theme: bar.theme
        symbol: bar.thinking ? "hourglass" : "stop.fill"
        text: bar.thinking ? "Thinking\u2026" : qsTr("Stop listening")
        onClicked: bar.stopped()
    }
}
