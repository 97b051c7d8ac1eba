pragma ComponentBehavior: Bound

import QtQuick
import Zelvora
import Zelvora.Private as Private

/// A pill with the voice state and a word for it, a stop button while listening, and a badge.
Item {
    id: root

    enum State { Idle, Listening, Processing }

    /// It shadows Item's own `state`, which names a State of QML.
    property int state: ZelvoraFloatingMic.Idle
    /// A ZelvoraBadgeType; null for no badge.
    property var badge: null
    /// The item behind the pill, for a material that blurs it.
    property Item backdrop: null

    signal tap()
    signal stopTap()

    implicitWidth: pill.implicitWidth + 10 + stopPlace.width
    implicitHeight: pill.implicitHeight

    Private.PlainButton {
        id: pill

        objectName: "pill"
        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        text: ["Speak", "Listening\u2026", "Thinking\u2026"][root.state]
        implicitWidth: 14 + 28 + 10 + word.implicitWidth + 14
        implicitHeight: 12 + Math.max(28, word.implicitHeight) + 12
        focusRadius: height / 2
        focusColor: root.ZelvoraTheme.accent
        onClicked: root.tap()

        background: Private.Plate {
            fill: root.ZelvoraTheme.dark ? Qt.rgba(0.2, 0.2, 0.21, 0.8) : Qt.rgba(0.98, 0.98, 0.99, 0.8)
            stroke: Qt.rgba(1, 1, 1, 0.18)
            blur: 10
            offset: 3
            strength: 0.33
            backdrop: root.backdrop
        }
        Item {
            anchors.fill: parent

            Private.Plate {
                id: frame

                objectName: "symbolFrame"
                anchors { left: parent.left; leftMargin: 14; verticalCenter: parent.verticalCenter }
                width: 28
                height: 28
                symbol: ["mic.fill", "waveform", "hourglass"][root.state]
                symbolSize: 22
                color: root.ZelvoraTheme.text
                icons: root.ZelvoraTheme.icons
            }
            Text {
                id: word

                objectName: "word"
                anchors { left: frame.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
                text: pill.text
                color: root.ZelvoraTheme.text
                font { pixelSize: 15 * root.ZelvoraTheme.textScale; weight: Font.DemiBold }
                Accessible.ignored: true
            }
        }

        Private.OnDemand {
            wanted: Number.isInteger(root.badge)
            component: Component {
                ZelvoraBadgeView {
                    anchors {
                        horizontalCenter: parent?.right; horizontalCenterOffset: -8
                        verticalCenter: parent?.top; verticalCenterOffset: 6
                    }
                    type: root.badge ?? 0
                }
            }
        }
    }

    // Keeps its place while there is no button in it, so that the pill does not jump.
    Item {
        id: stopPlace

        objectName: "stopPlace"
        anchors { left: pill.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
        width: 29
        height: 29

        Private.OnDemand {
            wanted: root.state === ZelvoraFloatingMic.Listening
            component: Component {
                Private.StopButton {
                    anchors.centerIn: parent
                    backdrop: root.backdrop
                    onClicked: root.stopTap()
                }
            }
        }
    }
}
