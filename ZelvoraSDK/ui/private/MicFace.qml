import QtQuick
import Zelvora

/// What a mic button shows above its caption: the round face or a view of the application's own, and
/// the halo behind it.
Item {
    id: root

    property int voiceState: ZelvoraMicState.Idle
    property real size: 64
    property bool pulses: true
    property Component content: null
    property Item backdrop: null
    property bool reducedMotion: false

    implicitWidth: custom.item ? (custom.item as Item).width : size
    implicitHeight: custom.item ? (custom.item as Item).height : size

    Loader {
        anchors.fill: parent
        active: root.voiceState === ZelvoraMicState.Listening && root.pulses
        source: "Halo.qml"
        onLoaded: {
            (item as Halo).size = Qt.binding(() => root.size);
            (item as Halo).pulses = Qt.binding(() => !root.reducedMotion);
        }
    }

    Loader {
        id: custom

        anchors.centerIn: parent
        sourceComponent: root.content
    }

    Item {
        anchors.centerIn: parent
        width: root.size
        height: width
        visible: !root.content

        Shadow {
            anchors { fill: parent; margins: -reach }
            reach: 16
            radius: parent.width / 2
            blur: 8
            offset: 2
            strength: 0.2
        }
        Material {
            anchors.fill: parent
            radius: width / 2
            backdrop: root.backdrop
        }
        StateSymbol {
            objectName: "symbol"
            anchors.centerIn: parent
            voiceState: root.voiceState
            pixelSize: root.size * 0.4
        }
    }
}
