import QtQuick
import Zelvora

/// The small round button beside a pill that listens.
PlainButton {
    id: root

    property Item backdrop: null

    objectName: "stop"
    text: "Stop"
    padding: 6
    focusRadius: height / 2

    background: Material {
        radius: height / 2
        ultraThin: true
        border { width: 1; color: Qt.rgba(1, 1, 1, 0.18) }
        backdrop: root.backdrop
    }
    contentItem: Symbol {
        implicitWidth: 17
        implicitHeight: 17
        name: "stop.fill"
        color: root.palette.windowText
    }
}
