import QtQuick
import Zelvora.Private

/// The small round button beside a pill that listens.
PlainButton {
    id: root

    property Item backdrop: null

    objectName: "stop"
    text: qsTr("Stop")
    padding: 6
    focusRadius: height / 2
    focusColor: Theme.accent

    background: Plate {
        fill: root.Theme.dark ? Qt.rgba(0.2, 0.2, 0.21, 0.64) : Qt.rgba(0.86, 0.86, 0.89, 0.64)
        stroke: Qt.rgba(1, 1, 1, 0.18)
        backdrop: root.backdrop
    }
    contentItem: Plate {
        implicitWidth: 17
        implicitHeight: 17
        symbol: "stop.fill"
        symbolSize: 17
        color: root.Theme.text
        icons: root.Theme.icons
    }
}
