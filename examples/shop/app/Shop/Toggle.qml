import QtQuick

/// How a row shows that it is switched on or off.
Rectangle {
    id: toggle

    property bool on: false

    implicitWidth: 52
    implicitHeight: 32
    radius: 16
    color: on ? Theme.accent : Theme.surface
    border { width: 2; color: on ? Theme.accent : Theme.edge }
    Accessible.ignored: true

    Rectangle {
        anchors {
            left: toggle.on ? undefined : parent.left
            right: toggle.on ? parent.right : undefined
            margins: 5
            verticalCenter: parent.verticalCenter
        }
        width: 22
        height: 22
        radius: 11
        color: toggle.on ? Theme.accentInk : Theme.edge
    }
}
