pragma ComponentBehavior: Bound

import QtQuick
import Zelvora
import Zelvora.Private as Private

/// A round microphone button at the bottom trailing corner of its parent.
Item {
    id: root

    /// A ZelvoraMicState. It shadows Item's own `state`, which names a State of QML.
    property int state: ZelvoraMicState.Idle
    property zelvoraMicStyle style
    /// Replaces the round face when set.
    property Component content: null
    /// The item behind the button, for a material that blurs it.
    property Item backdrop: null

    signal tap()

    width: parent ? parent.width : implicitWidth
    height: parent ? parent.height : implicitHeight
    implicitWidth: button.implicitWidth + style.trailingPadding
    implicitHeight: button.implicitHeight + style.bottomPadding

    Private.PlainButton {
        id: button

        objectName: "button"
        x: mirrored ? root.style.trailingPadding : root.width - width - root.style.trailingPadding
        y: root.height - height - root.style.bottomPadding
        text: [root.style.idleLabel, root.style.listeningLabel,
               root.style.processingLabel][root.state]
        focusRadius: root.style.showsText ? 12 : -1
        onClicked: root.tap()

        // A caption wider than the face sticks out on both sides, so that the face stays where it is.
        implicitWidth: face.width
        implicitHeight: face.height + (caption.item ? 6 + caption.item.height : 0)

        Private.Plate {
            id: face

            objectName: "face"
            width: custom.item ? custom.item.width : root.style.size
            height: custom.item ? custom.item.height : root.style.size
            theme: root.ZelvoraTheme
            material: root.content ? Private.Plate.None : Private.Plate.Thin
            blur: 8
            offset: 2
            strength: root.content ? 0 : 0.2
            symbol: root.content ? "" : ["mic.fill", "waveform", "hourglass"][root.state]
            symbolSize: Math.round(root.style.size * 0.48)
            backdrop: root.backdrop

            Private.OnDemand {
                state: root.state
                shownIn: ZelvoraMicState.Listening
                wanted: root.style.showsPulseWhileListening
                component: Component {
                    Private.Halo {
                        anchors.fill: parent
                        z: -1
                        size: root.style.size
                        color: root.ZelvoraTheme.accent
                        pulses: !root.ZelvoraTheme.reducedMotion
                    }
                }
            }
            Private.OnDemand {
                id: custom

                component: root.content
            }
        }
        Private.OnDemand {
            id: caption

            wanted: root.style.showsText
            component: Component {
                Text {
                    objectName: "caption"
                    anchors.horizontalCenter: parent?.horizontalCenter
                    y: face.height + 6
                    width: Math.min(implicitWidth, face.width + 2 * root.style.trailingPadding)
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    text: button.text
                    color: root.ZelvoraTheme.secondaryText
                    font.pixelSize: 13 * root.ZelvoraTheme.textScale
                    Accessible.ignored: true
                }
            }
        }
    }
}
