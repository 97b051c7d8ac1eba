import QtQuick
import QtQuick.Templates as T
import Zelvora

/// A round microphone button at the bottom trailing corner of whatever contains it.
Item {
    id: root

    /// A ZelvoraMicState. It takes the place of Item's own `state`, which names a State of QML.
    property int state: ZelvoraMicState.Idle
    property zelvoraMicStyle style

    signal tap()

    readonly property string caption: [style.idleLabel, style.listeningLabel,
                                       style.processingLabel][state]

    width: parent ? parent.width : implicitWidth
    height: parent ? parent.height : implicitHeight

    T.AbstractButton {
        id: button

        objectName: "button"
        anchors {
            right: parent.right; rightMargin: root.style.trailingPadding
            bottom: parent.bottom; bottomMargin: root.style.bottomPadding
        }
        implicitWidth: contentItem.implicitWidth
        implicitHeight: contentItem.implicitHeight
        onClicked: root.tap()

        contentItem: Item {
            implicitWidth: root.style.size
            implicitHeight: root.style.size

            Material { anchors.fill: parent; radius: width / 2 }
            StateSymbol {
                anchors.centerIn: parent
                voiceState: root.state
                pixelSize: root.style.size * 0.4
            }
        }
    }
}
