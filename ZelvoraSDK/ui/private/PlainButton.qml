import QtQuick
import QtQuick.Templates as T
import Zelvora.Private

/// A button that looks like its content alone. Its `text` is what a screen reader says.
T.AbstractButton {
    property alias focusRadius: manners.focusRadius
    property alias focusMargin: manners.focusMargin
    property alias focusColor: manners.focusColor

    opacity: down ? 0.6 : 1

    Manners { id: manners }
}
