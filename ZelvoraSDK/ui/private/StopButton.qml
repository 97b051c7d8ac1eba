import QtQuick
import Zelvora.Private

/// The small round button beside a pill that listens.
PlainButton {
    id: root

    property Item backdrop: null

    objectName: "stop"
    text: qsTr("Stop")
    padding: 6
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    background: Plate {
        theme: root.Theme
        material: Plate.UltraThin
        stroke: Qt.rgba(1, 1, 1, 0.18)
        backdrop: root.backdrop
    }
    contentItem: Plate {
        implicitWidth: 17
        implicitHeight: 17
        symbol: "stop.fill"
        symbolSize: 17
        theme: root.Theme
    }
}
