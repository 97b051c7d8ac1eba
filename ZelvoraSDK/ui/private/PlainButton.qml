import QtQuick
import QtQuick.Templates as T
import Zelvora.Private

/// A button that looks like its content alone. Its `text` is what a screen reader says.
T.AbstractButton {
    id: button

    property alias focusRadius: manners.focusRadius
    property alias focusMargin: manners.focusMargin
    property alias focusColor: manners.focusColor

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    opacity: down ? 0.6 : 1
    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()

    Manners { id: manners }
}
