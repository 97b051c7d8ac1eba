import QtQuick
import Zelvora

/// A pill with the voice state and a word for it, a stop button while listening, and a badge.
Item {
    id: root

    enum State { Idle, Listening, Processing }

    /// It stands in for Item's own `state`, which names a State of QML.
    property int state: ZelvoraFloatingMic.Idle
    /// A ZelvoraBadgeType; null for no badge.
    property var badge: null
    /// The item behind the pill, for a material that blurs it.
    property Item backdrop: null
    /// Enlarges the word.
    property real textScale: 1

    signal tap()
    signal stopTap()

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 10

        PlainButton {
            id: pill

            objectName: "pill"
            text: ["Speak", "Listening\u2026", "Thinking\u2026"][root.state]
            horizontalPadding: 14
            verticalPadding: 12
            focusRadius: height / 2
            onClicked: root.tap()

            background: Item {
                Shadow {
                    anchors { fill: parent; margins: -reach }
                    radius: parent.height / 2
                    blur: 10
                    offset: 3
                    strength: 0.33
                }
                Material {
                    anchors.fill: parent
                    radius: height / 2
                    border { width: 1; color: Qt.rgba(1, 1, 1, 0.18) }
                    backdrop: root.backdrop
                }
            }

            contentItem: Row {
                spacing: 10

                Item {
                    objectName: "symbolFrame"
                    anchors.verticalCenter: parent.verticalCenter
                    width: 28
                    height: 28

                    StateSymbol {
                        objectName: "symbol"
                        anchors.centerIn: parent
                        voiceState: root.state
                        pixelSize: 18
                    }
                }
                Text {
                    objectName: "word"
                    anchors.verticalCenter: parent.verticalCenter
                    text: pill.text
                    color: root.palette.windowText
                    font { pixelSize: 15 * root.textScale; weight: Font.DemiBold }
                    Accessible.ignored: true
                }
            }

            Loader {
                readonly property var badge: root.badge

                anchors {
                    horizontalCenter: parent.right; horizontalCenterOffset: -8
                    verticalCenter: parent.top; verticalCenterOffset: 6
                }
                objectName: "badge"
                onBadgeChanged: setSource(Number.isInteger(badge) ? "ZelvoraBadgeView.qml" : "",
                                          {type: badge})
            }
        }

        // Keeps its place while there is no button in it, so that the pill does not jump.
        Item {
            objectName: "stopPlace"
            anchors.verticalCenter: parent.verticalCenter
            width: 29
            height: 29

            Loader {
                anchors.centerIn: parent
                active: root.state === ZelvoraFloatingMic.Listening
                source: "private/StopButton.qml"
                onLoaded: {
                    const stop = item as StopButton;
                    stop.backdrop = Qt.binding(() => root.backdrop);
                    stop.clicked.connect(root.stopTap);
                }
            }
        }
    }
}
