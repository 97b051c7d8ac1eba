import QtQuick
import Zelvora

/// A round microphone button at the bottom trailing corner of whatever contains it.
Item {
    id: root

    /// A ZelvoraMicState. It stands in for Item's own `state`, which names a State of QML.
    property int state: ZelvoraMicState.Idle
    property zelvoraMicStyle style
    /// Takes the place of the round face when set.
    property Component content: null
    /// The item behind the button, for a material that blurs it.
    property Item backdrop: null
    /// On, the halo stands still.
    property bool reducedMotion: false
    /// Enlarges the caption.
    property real textScale: 1

    signal tap()

    width: parent ? parent.width : implicitWidth
    height: parent ? parent.height : implicitHeight
    implicitWidth: button.implicitWidth + style.trailingPadding
    implicitHeight: button.implicitHeight + style.bottomPadding

    PlainButton {
        id: button

        objectName: "button"
        anchors {
            right: parent.right; rightMargin: root.style.trailingPadding
            bottom: parent.bottom; bottomMargin: root.style.bottomPadding
        }
        text: [root.style.idleLabel, root.style.listeningLabel,
               root.style.processingLabel][root.state]
        focusRadius: root.style.showsText ? 12 : width / 2
        onClicked: root.tap()

        contentItem: Column {
            spacing: 6

            MicFace {
                objectName: "face"
                anchors.horizontalCenter: parent.horizontalCenter
                voiceState: root.state
                size: root.style.size
                pulses: root.style.showsPulseWhileListening
                content: root.content
                backdrop: root.backdrop
                reducedMotion: root.reducedMotion
            }
            Text {
                objectName: "caption"
                anchors.horizontalCenter: parent.horizontalCenter
                visible: root.style.showsText
                text: button.text
                color: root.palette.windowText
                opacity: 0.6
                font.pixelSize: 13 * root.textScale
                Accessible.ignored: true
            }
        }
    }
}
