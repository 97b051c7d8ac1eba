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

    Private.PlainButton {
        id: pill

        objectName: "pill"
        text: ["Speak", "Listening\u2026", "Thinking\u2026"][root.state]
        onClicked: root.tap()

        Private.PillFace {
            objectName: "symbolFrame"
            word: label
            stopPlace: beside
            theme: root.ZelvoraTheme
            material: Private.Plate.Thin
            stroke: "#2effffff"
            blur: 10
            offset: 3
            strength: 0.33
            symbol: ["mic.fill", "waveform", "hourglass"][root.state]
            symbolSize: 22
            backdrop: root.backdrop
        }
        Text {
            id: label

            objectName: "word"
            text: pill.text
            font { pixelSize: 15 * root.ZelvoraTheme.textScale; weight: Font.DemiBold }
        }
        Private.OnDemand {
            wanted: typeof root.badge === "number"
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

    Item {
        id: beside

        objectName: "stopPlace"
        width: 29
        height: 29

        Private.OnDemand {
            state: root.state
            shownIn: ZelvoraFloatingMic.Listening
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
