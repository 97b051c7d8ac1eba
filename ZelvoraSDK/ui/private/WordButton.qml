import QtQuick
import Zelvora.Private

/// A button with words on the accent, or in it. The accent is the one for words: if it can be read on the
/// surface, the surface can be read on it.
PlainButton {
    id: button

    property Theme theme
    property bool primary: false

    implicitWidth: Math.min(implicitContentWidth, parent?.width ?? 400)
    implicitHeight: Math.max(44, implicitContentHeight)
    focusRadius: Math.min(height / 2, 22)
    focusColor: theme.text
    onActiveFocusChanged: if (activeFocus) Reveal.show(button)

    background: Rectangle {
        radius: Math.min(height / 2, 22)
        color: button.primary ? button.theme.accentText : "transparent"
        border { width: button.primary ? 0 : 1; color: button.theme.edge }
    }
    contentItem: Words {
        theme: button.theme
        text: button.text
        color: button.primary ? button.theme.surface : button.theme.accentText
        strong: true
        margin: 20
    }
}
