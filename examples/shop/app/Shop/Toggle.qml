import QtQuick
import QtQuick.Templates as T

/// A switch.
T.Switch {
    id: toggle

    implicitWidth: 52
    implicitHeight: Theme.touch
    Accessible.name: text
    Accessible.onPressAction: {
        toggle.toggle()
        toggle.toggled()
    }

    indicator: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 52
        height: 32
        radius: 16
        color: toggle.checked ? Theme.accent : Theme.sunken
        border.width: toggle.visualFocus ? 2 : 1
        border.color: toggle.visualFocus ? Theme.ink : toggle.checked ? Theme.accent : Theme.line

        Rectangle {
            x: 3 + toggle.visualPosition * 20
            anchors.verticalCenter: parent.verticalCenter
            width: 26
            height: 26
            radius: 13
            color: toggle.checked ? Theme.accentInk : "#FFFFFF"
        }
    }
}
