import QtQuick
import Zelvora.Private

/// A phrase to be picked.
PlainButton {
    id: chip

    property Theme theme

    implicitWidth: Math.min(implicitContentWidth, parent?.width ?? 400)
    implicitHeight: Math.max(44, implicitContentHeight)
    focusRadius: Math.min(height / 2, 22)
    focusColor: theme.accentText
    onActiveFocusChanged: if (activeFocus) Reveal.show(chip)

    background: Rectangle {
        radius: Math.min(height / 2, 22)
        color: chip.theme.surface
        border { width: 1; color: chip.theme.edge }
    }
    contentItem: Words {
        theme: chip.theme
        text: chip.text
        color: chip.theme.text
    }
}
