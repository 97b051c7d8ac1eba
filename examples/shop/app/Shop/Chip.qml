import QtQuick

/// A word to pick.
Pressable {
    id: chip

    leftPadding: 16
    rightPadding: 16
    corner: 22
    Accessible.role: checkable ? Accessible.RadioButton : Accessible.Button
    Accessible.checkable: checkable
    Accessible.checked: checked

    background: Rectangle {
        radius: Math.min(height / 2, 22)
        color: chip.checked ? Theme.accent : Theme.surface
        border.color: chip.checked ? Theme.accent : Theme.edge
    }
    contentItem: Label {
        text: chip.text
        read: false
        verticalAlignment: Text.AlignVCenter
        horizontalAlignment: Text.AlignHCenter
        font.weight: Font.Medium
        color: chip.checked ? Theme.accentInk : Theme.ink
    }
}
