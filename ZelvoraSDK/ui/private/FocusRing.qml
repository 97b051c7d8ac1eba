import QtQuick

/// Shows which button the keyboard presses.
Rectangle {
    objectName: "focusRing"
    color: "transparent"
    border { width: 2; color: palette.highlight }
}
