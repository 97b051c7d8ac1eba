pragma ComponentBehavior: Bound

import QtQuick
import Zelvora
import Zelvora.Private as Private

/// A round microphone button at the bottom trailing corner of whatever contains it.
Item {
    id: root

    /// A ZelvoraMicState. It shadows Item's own `state`, which names a State of QML.
    property int state: ZelvoraMicState.Idle
    property zelvoraMicStyle style
    /// Takes the place of the round face when set.
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
        anchors {
            right: parent.right; rightMargin: root.style.trailingPadding
            bottom: parent.bottom; bottomMargin: root.style.bottomPadding
        }
        text: [root.style.idleLabel, root.style.listeningLabel,
               root.style.processingLabel][root.state]
        focusRadius: root.style.showsText ? 12 : width / 2
        focusColor: root.ZelvoraTheme.accent
        onClicked: root.tap()

        // A caption wider than the face stands out on both sides, so that the face stays where it is.
        implicitWidth: face.width
        implicitHeight: face.height + (caption.item ? 6 + caption.item.height : 0)

        Item {
            anchors.fill: parent

            Private.Plate {
                id: face

                objectName: "face"
                anchors.horizontalCenter: parent.horizontalCenter
                width: custom.item ? custom.item.width : root.style.size
                height: custom.item ? custom.item.height : root.style.size
                fill: root.content ? "transparent"
                    : root.ZelvoraTheme.dark ? Qt.rgba(0.2, 0.2, 0.21, 0.8) : Qt.rgba(0.98, 0.98, 0.99, 0.8)
                blur: 8
                offset: 2
                strength: root.content ? 0 : 0.2
                symbol: root.content ? "" : ["mic.fill", "waveform", "hourglass"][root.state]
                symbolSize: Math.round(root.style.size * 0.48)
                color: root.ZelvoraTheme.text
                icons: root.ZelvoraTheme.icons
                backdrop: root.backdrop

                Private.OnDemand {
                    wanted: root.state === ZelvoraMicState.Listening && root.style.showsPulseWhileListening
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

                    wanted: root.content !== null
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
}
