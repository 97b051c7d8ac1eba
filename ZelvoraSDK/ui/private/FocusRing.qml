import QtQuick
import Zelvora.Private

/// Shows which button the keyboard presses.
Rectangle {
    id: ring

    required property Item button
    required property Manners manners

    objectName: "focusRing"
    x: -manners.focusMargin
    y: -manners.focusMargin
    width: button.width + 2 * manners.focusMargin
    height: button.height + 2 * manners.focusMargin
    radius: manners.focusRadius < 0 ? Math.min(width, height) / 2 : manners.focusRadius + manners.focusMargin
    color: "transparent"
    border { width: 2; color: manners.focusColor.valid ? manners.focusColor : button.Theme.accent }
}
