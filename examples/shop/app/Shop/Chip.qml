import QtQuick
import QtQuick.Templates as T

/// A word to be picked.
T.AbstractButton {
    id: chip

    implicitHeight: Theme.touch
    implicitWidth: word.implicitWidth + 32
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()

    background: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: 36
            radius: 18
            color: chip.checked ? Theme.accent : Theme.surface
            border.color: chip.checked || chip.visualFocus ? Theme.accent : Theme.line
        }
    }
    contentItem: Item {  // qmllint disable deferred-property-id
        Label {
            id: word

            anchors.centerIn: parent
            text: chip.text
            role: Label.Role.Small
            font.weight: Font.Medium
            color: chip.checked ? Theme.accentInk : Theme.ink
        }
    }
}
