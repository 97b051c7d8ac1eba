import QtQuick
import Zelvora.Private

/// A round button with a symbol.
PlainButton {
    id: button

    property Theme theme
    property string symbol
    property bool filled: false

    implicitWidth: 44
    implicitHeight: 44
    focusColor: filled ? theme.text : theme.accentText

    contentItem: Plate {
        fill: button.filled ? button.theme.accentText : "transparent"
        symbol: button.symbol
        symbolSize: 22
        color: button.filled ? button.theme.surface : button.theme.accentText
        theme: button.theme
    }
}
